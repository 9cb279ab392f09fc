#include "sim/judge/judge.h"

#include <signal.h>

#include <cerrno>

namespace kelvo::sim::camera {
namespace {

namespace commands = wire::command;

std::uint32_t word_at(std::span<const std::uint8_t> bytes, std::size_t place) {
  return std::uint32_t{bytes[place]} << 8 | bytes[place + 1];
}

std::uint8_t register_command(wire::LensModule module) {
  return module == wire::LensModule::de015 ? commands::write_register_de : commands::write_register;
}

Source source_of(wire::HeadFamily family, Unit unit) {
  const bool pans = unit == Unit::pan_controller;
  if (family == wire::HeadFamily::vetra) return pans ? Source::vetra_pan : Source::vetra_tilt;
  return pans ? Source::tasmere_pan : Source::tasmere_tilt;
}

}  // namespace

bool gone(std::int32_t process) { return kill(process, 0) != 0 && errno == ESRCH; }

/// Queries take no lock and disturb no sequence.
void Judge::lens_frame(Exchange& exchange, std::optional<wire::LensModule> program) {
  if (caller_.process == 0) return;
  busy_times_.judge(exchange);
  const std::size_t length = exchange.sent.size();
  if (length == wire::query_frame_length) return;
  judge_lock(exchange);
  const bool boots = length == wire::boot_loader::frame_length;
  sequences_.judge(exchange, caller_.process, Source::boot, boots ? exchange.sent[0] : any_frame);
  if (program && length == wire::command_frame_length) judge_command(exchange, *program);
}

void Judge::judge_lock(Exchange& exchange) const {
  const std::int32_t holder = caller_.lock_holder;
  const bool another_holds = holder != 0 && holder != caller_.process && !gone(holder);
  if (caller_.holds_bus_lock && !another_holds) return;
  if (another_holds) {
    exchange.violation("without the bus lock, which process %d holds", static_cast<int>(holder));
  } else {
    exchange.violation("without the bus lock");
  }
}

void Judge::judge_command(Exchange& exchange, wire::LensModule program) {
  const std::span<const std::uint8_t> sent = exchange.sent;
  const std::uint8_t code = sent[0];
  if (code == register_command(program)) {
    const std::uint32_t key = std::uint32_t{sent[2]} << 16 | word_at(sent, 3);
    return sequences_.judge(exchange, caller_.process, Source::reg, key);
  }
  if (code == commands::pt5111_word) {
    return sequences_.judge(exchange, caller_.process, Source::word, word_at(sent, 2));
  }
  if (wire::find(commands::table, code, program) == nullptr) return;
  sequences_.judge(exchange, caller_.process, Source::command,
                   std::uint32_t{code} << 16 | word_at(sent, 3));
}

void Judge::pt5111_word(Exchange& exchange) {
  if (caller_.process == 0 || exchange.sent.size() != 2) return;
  sequences_.judge(exchange, caller_.process, Source::word, word_at(exchange.sent, 0));
}

void Judge::head_write(Exchange& exchange, wire::HeadFamily family) {
  if (caller_.process == 0 || exchange.sent.empty()) return;
  sequences_.judge(exchange, caller_.process, source_of(family, exchange.unit), exchange.sent[0]);
}

void Judge::reset(Exchange& exchange) {
  if (caller_.process != 0) sequences_.reset(exchange, caller_.process);
}

void Judge::foreign_unlock(Exchange& exchange) const {
  if (caller_.lock_holder == 0) return exchange.violation("the bus lock was not taken");
  exchange.violation("the bus lock was taken by process %d", static_cast<int>(caller_.lock_holder));
}

}  // namespace kelvo::sim::camera
