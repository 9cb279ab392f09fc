#include "sim/camera/lens_program.h"

#include <algorithm>
#include <array>
#include <span>

namespace kelvo::sim::camera {
namespace {

namespace commands = wire::command;
namespace queries = wire::query;

constexpr std::size_t checksum_place = 5;  // in both frames; only zeros follow
constexpr std::uint8_t pt5111_select = 2;  // first argument of a passed-on word

struct Value {
  std::uint8_t code;
  std::uint16_t value;
};

/// What a program sets by itself until calibration values come.
constexpr Value program_settings[] = {
    {commands::polarity, 0x0001},      {commands::hall_offset_x, 0x0800},
    {commands::hall_offset_y, 0x0800}, {commands::hall_gain_x, 0x0400},
    {commands::hall_gain_y, 0x0400},   {commands::travel_min_x, 0x0100},
    {commands::travel_max_x, 0x0F00},  {commands::travel_min_y, 0x0100},
    {commands::travel_max_y, 0x0F00},  {commands::gyro_zero_x, 0x8000},
    {commands::gyro_zero_y, 0x8000},
};

/// What the controller measures: a unit in good order.
constexpr Value measured[] = {
    {queries::hall_noise_x, 0x0003}, {queries::hall_noise_y, 0x0004}, {queries::iris_sine, 0x0212},
    {queries::gyro_noise_x, 0x0005}, {queries::gyro_noise_y, 0x0006},
};

// Reads back a setting whose command code is not its own without the top bit.
constexpr struct {
  std::uint8_t query;
  std::uint8_t command;
} iris_read_backs[] = {
    {queries::iris_travel_min, commands::travel_min_x},
    {queries::iris_travel_max, commands::travel_max_x},
};

/// Whether the checksum is the sum of the bytes before it, modulo 256, and nothing comes after it.
bool judge_form(Exchange& exchange) {
  const std::span<const std::uint8_t> sent = exchange.sent;
  unsigned sum = 0;
  for (const std::uint8_t byte : sent.first(checksum_place)) sum += byte;
  const unsigned wanted = sum % 256;
  const unsigned came = sent[checksum_place];
  if (came != wanted) {
    exchange.violation("checksum %02X, must be %02X", came, wanted);
    return false;
  }
  for (const std::uint8_t byte : sent.subspan(checksum_place + 1)) {
    if (byte == 0) continue;
    exchange.violation("%02X after the checksum, must be 00", byte);
    return false;
  }
  return true;
}

std::uint16_t word(std::uint8_t high, std::uint8_t low) {
  return static_cast<std::uint16_t>(high << 8 | low);
}

}  // namespace

FrameKind LensProgram::receive(Exchange& exchange, Pt5111& pt5111) {
  if (exchange.sent.size() == wire::command_frame_length) {
    command(exchange, pt5111);
    return FrameKind::command;
  }
  if (exchange.sent.size() == wire::query_frame_length) {
    query(exchange);
    return FrameKind::query;
  }
  exchange.violation("a frame of %zu bytes, must be %zu or %zu", exchange.sent.size(),
                     wire::command_frame_length, wire::query_frame_length);
  return FrameKind::malformed;
}

void LensProgram::command(Exchange& exchange, Pt5111& pt5111) {
  const auto& sent = exchange.sent;
  const std::uint8_t code = sent[0];
  if (!judge_form(exchange)) return;
  if (wire::find(commands::table, code, module_) == nullptr) {
    exchange.violation("%s's program has no command %d", name_of(module_), code);
    return;
  }
  const std::uint16_t value = word(sent[3], sent[4]);
  values_[code] = value;
  switch (code) {
    case commands::write_register:
    case commands::write_register_de: motor_block_.write(exchange, sent[2], value); break;
    case commands::pt5111_word: pass_on(exchange, pt5111); break;
    default:
      obey(zoom1_commands, exchange.now, code, values_, zoom1_);
      obey(zoom3_commands, exchange.now, code, values_, zoom3_);
      break;
  }
}

void LensProgram::pass_on(Exchange& exchange, Pt5111& pt5111) const {
  if (exchange.sent[1] != pt5111_select) {
    exchange.violation("a PT5111 word for chip %d, must be %d", exchange.sent[1], pt5111_select);
    return;
  }
  pt5111.receive(exchange.now, word(exchange.sent[2], exchange.sent[3]));
}

void LensProgram::query(Exchange& exchange) const {
  const std::uint8_t code = exchange.sent[0];
  if (!judge_form(exchange)) return;
  if (wire::find(queries::table, code, module_) == nullptr) {
    exchange.violation("%s's program has no query %02X", name_of(module_), code);
    return;
  }
  const std::uint16_t value = answer(code);
  exchange.reply[wire::query_reply_offset + 2] = static_cast<std::uint8_t>(value >> 8);
  exchange.reply[wire::query_reply_offset + 3] = static_cast<std::uint8_t>(value);
}

std::uint16_t LensProgram::answer(std::uint8_t code) const {
  if (code == queries::version || code == queries::version_de) return version();
  for (const Value& row : measured) {
    if (row.code == code) return row.value;
  }
  for (const auto& row : iris_read_backs) {
    if (row.query == code) return values_[row.command];
  }
  return values_[code - wire::first_query];
}

std::uint16_t LensProgram::version() const {
  switch (module_) {
    case LensModule::de015: return 0x0107;
    case LensModule::df033: return 0x0208;
    case LensModule::t5391: return 0x0309;
  }
  return 0;
}

void LensProgram::start(LensModule module) {
  module_ = module;
  values_ = {};
  for (const Value& row : program_settings) values_[row.code] = row.value;
}

void LensProgram::stop(Time now) {
  motor_block_.reset(now);
  zoom1_.halt(now);
  zoom3_.halt(now);
}

void LensProgram::fit(LensModule module) {
  motor_block_.fit(module);
  zoom1_.fit(end_stop(module, Output::zoom1_block));
  zoom3_.fit(end_stop(module, Output::zoom3_block));
}

}  // namespace kelvo::sim::camera
