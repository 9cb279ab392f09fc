#include "sim/camera/camera.h"

#include <algorithm>
#include <cerrno>

namespace kelvo::sim::camera {
namespace {

constexpr std::size_t pt5111_word_length = 2;

void deliver(const Exchange& exchange, std::span<std::uint8_t> received) {
  std::fill(received.begin(), received.end(), std::uint8_t{0});
  std::copy_n(exchange.reply.begin(), std::min(exchange.reply.size(), received.size()),
              received.begin());
}

/// Nobody drives the wire.
int deliver_nothing(std::span<std::uint8_t> received) {
  std::fill(received.begin(), received.end(), std::uint8_t{0});
  return 0;
}

bool is_run_time(FrameKind kind) { return kind == FrameKind::command || kind == FrameKind::query; }

}  // namespace

void Camera::set_caller(const Caller& caller) {
  judge_.set_caller(caller);
  violations_.blame(caller.process);
}

int Camera::transfer_lens(std::span<const std::uint8_t> sent, std::span<std::uint8_t> received,
                          CarriedImages images) {
  if (!powered_) return deliver_nothing(received);
  Exchange exchange{clock.now(), Unit::lens_controller, sent, violations_};
  BootRecord& boot = boots_.current(clock.now());
  const std::uint64_t violations_before = violations_.total();
  judge_.lens_frame(exchange, lens_.module());
  const FrameKind kind = lens_.receive(exchange, images, boot, pt5111_);
  ++boot.count(kind);
  boot.settled = boot.settled || (boot.started && is_run_time(kind));
  boot.violations += violations_.total() - violations_before;
  deliver(exchange, received);
  return 0;
}

int Camera::transfer_pt5111(std::span<const std::uint8_t> sent, std::span<std::uint8_t> received) {
  if (!powered_) return deliver_nothing(received);
  Exchange exchange{clock.now(), Unit::pt5111, sent, violations_};
  ++pt5111_words_;
  judge_.pt5111_word(exchange);
  if (sent.size() != pt5111_word_length) {
    exchange.violation("a word of %zu bytes, must be %zu", sent.size(), pt5111_word_length);
  } else if (pt5111_owner().value_or(LensModule::de015) != LensModule::de015) {
    exchange.violation("this module has no PT5111 on a device of its own");
  } else {
    pt5111_.receive(clock.now(), static_cast<std::uint16_t>(sent[0] << 8 | sent[1]));
  }
  deliver(exchange, received);
  return 0;
}

int Camera::transfer_pan_tilt(std::span<const BusMessage> messages) {
  if (!powered_) return -ENXIO;
  const BusMessage& first = messages[0];
  const bool pans = first.slave == wire::pan_slave;
  if (messages.size() == 1 && !first.reads && (pans || first.slave == wire::tilt_slave)) {
    Exchange exchange{clock.now(), pans ? Unit::pan_controller : Unit::tilt_controller, first.bytes,
                      violations_};
    judge_.head_write(exchange, head_.family());
  }
  return head_.transfer(clock.now(), messages, violations_);
}

int Camera::shell(std::string_view command) {
  if (!powered_) return ResetLine::refused;
  const bool was_high = reset_line_.high();
  const std::optional<int> status = reset_line_.run(command);
  if (!status) {
    violations_.record(clock.now(), Unit::reset_line, {}, "unknown shell command: %.*s",
                       static_cast<int>(command.size()), command.data());
    return ResetLine::refused;
  }
  const bool is_high = reset_line_.high();
  if (was_high && !is_high) {
    reset_at_ = clock.now();
    Exchange exchange{clock.now(), Unit::reset_line, {}, violations_};
    judge_.reset(exchange);
    lens_.hold_in_reset(clock.now());
  }
  if (!was_high && is_high) {
    boots_.attempt(reset_at_, lens_summary());
    lens_.release_from_reset();
    judge_.released(clock.now());
  }
  return *status;
}

void Camera::refuse(Unit unit, const char* what) {
  violations_.record(clock.now(), unit, {}, "%s is refused: the driver does not serve it", what);
}

void Camera::reset_lens() {
  reset_at_ = clock.now();
  lens_.hold_in_reset(reset_at_);
  boots_.attempt(reset_at_, lens_summary());
  lens_.release_from_reset();
}

void Camera::unlock_for_another() {
  Exchange exchange{clock.now(), Unit::bus_lock, {}, violations_};
  judge_.foreign_unlock(exchange);
}

Parts Camera::parts_at_risk() {
  Parts parts;
  const std::span<std::byte> all = std::as_writable_bytes(std::span(this, 1));
  std::byte* place = all.data();
  for (const std::span<std::byte> log : {violations_.entries(), boots_.entries()}) {
    parts.add({place, log.data()});
    place = log.data() + log.size();
  }
  parts.add({place, all.data() + all.size()});
  boots_.add_entries_at_risk(parts);
  return parts;
}

Positions Camera::positions() const { return lens_summary().positions; }

LensSummary Camera::lens_summary() const {
  return summarise(lens_.program(), pt5111_, clock.now());
}

LensSummary Camera::lens_summary(std::uint32_t boot) const {
  return boot == boots_.total() ? lens_summary() : boots_.boot(boot).lens;
}

}  // namespace kelvo::sim::camera
