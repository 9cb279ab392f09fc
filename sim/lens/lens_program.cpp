#include "sim/lens/lens_program.h"

#include <optional>
#include <span>

#include "wire/motor_channels.h"

namespace kelvo::sim::camera {
namespace {

namespace commands = wire::command;
namespace queries = wire::query;

constexpr std::size_t checksum_place = 5;  // in both frames; only zeros follow
constexpr std::uint8_t pt5111_select = 2;  // first argument of a passed-on word

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

std::uint32_t long_word(std::span<const std::uint8_t> bytes) {
  return std::uint32_t{word(bytes[0], bytes[1])} << 16 | word(bytes[2], bytes[3]);
}

/// Where a query carries its argument depends on its code.
std::uint8_t argument_of(const Exchange& exchange) {
  return queries::argument_first(exchange.sent[0]) ? exchange.sent[1] : exchange.sent[2];
}

}  // namespace

FrameKind LensProgram::receive(Exchange& exchange, Pt5111& pt5111) {
  calibration_.settle(module_, exchange.now, values_);
  if (exchange.sent.size() == wire::command_frame_length) {
    command(exchange, pt5111);
    return FrameKind::command;
  }
  if (exchange.sent.size() == wire::query_frame_length) {
    query(exchange, pt5111);
    return FrameKind::query;
  }
  exchange.violation("a frame of %zu bytes, must be %zu or %zu", exchange.sent.size(),
                     wire::command_frame_length, wire::query_frame_length);
  return FrameKind::malformed;
}

void LensProgram::command(Exchange& exchange, Pt5111& pt5111) {
  const std::uint8_t code = exchange.sent[0];
  if (!judge_form(exchange)) return;
  if (wire::find(commands::table, code, module_) == nullptr) {
    exchange.violation("%s's program has no command %d", name_of(module_), code);
    return;
  }
  values_[code] = long_word(exchange.sent.subspan(1, 4));
  switch (code) {
    case commands::write_register:
    case commands::write_register_de: write_register(exchange, pt5111); break;
    case commands::pt5111_word: pass_on(exchange, pt5111); break;
    default:
      obey(zoom1_commands, exchange.now, code, values_, zoom1_);
      obey(zoom3_commands, exchange.now, code, values_, zoom3_);
      counters_.obey(code, values_[code], motors(exchange.now, pt5111));
      sensors_.obey(exchange, module_);
      stabiliser_.obey(code, values_);
      calibration_.obey(code, exchange.now, values_);
      iris_.obey(code, exchange.now, values_);
      if (code == commands::heater) heater_.set(exchange.now, exchange.sent[4]);
      break;
  }
}

void LensProgram::write_register(Exchange& exchange, const Pt5111& pt5111) {
  const std::uint8_t reg = exchange.sent[2];
  const std::uint16_t value = word(exchange.sent[3], exchange.sent[4]);
  motor_block_.write(exchange, reg, value);
  counters_.write(reg, value, motors(exchange.now, pt5111));
  if (reg == wire::interrupter_supply) sensors_.supply_written();
}

void LensProgram::pass_on(Exchange& exchange, Pt5111& pt5111) const {
  if (exchange.sent[1] != pt5111_select) {
    exchange.violation("a PT5111 word for chip %d, must be %d", exchange.sent[1], pt5111_select);
    return;
  }
  pt5111.receive(exchange.now, word(exchange.sent[2], exchange.sent[3]));
}

void LensProgram::query(Exchange& exchange, const Pt5111& pt5111) const {
  const std::uint8_t code = exchange.sent[0];
  if (!judge_form(exchange)) return;
  if (wire::find(queries::table, code, module_) == nullptr) {
    exchange.violation("%s's program has no query %02X", name_of(module_), code);
    return;
  }
  const std::uint32_t value = answer(exchange, pt5111);
  for (std::size_t i = 0; i < wire::query_reply_length; ++i) {
    exchange.reply[wire::query_reply_offset + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
  }
}

std::uint32_t LensProgram::answer(Exchange& exchange, const Pt5111& pt5111) const {
  const std::uint8_t code = exchange.sent[0];
  const MotorStates states = motors(exchange.now, pt5111);
  if (code == queries::version || code == queries::version_de) return version();
  if (code == queries::read_register || code == queries::read_register_de) {
    return read_register(exchange, states);
  }
  for (const std::optional<std::uint32_t> value :
       {running_answer(code, states), counters_.answer(code, states),
        sensors_.answer(code, argument_of(exchange), view(exchange.now, states, pt5111)),
        calibration_.answer(code), loop_answer(code, exchange.now)}) {
    if (value) return *value;
  }
  return read_back(code, values_).value_or(0);
}

/// What the sensors of the loops see: those of a stabiliser, or the Hall sensor of an iris alone.
std::optional<std::uint32_t> LensProgram::loop_answer(std::uint8_t query, Time now) const {
  const Stabiliser::HallValues swept = calibration_.swept(module_, now);
  if (module_ == LensModule::de015) {
    return stabiliser_.answer(query, {now, values_, swept, variety_});
  }
  const std::uint16_t seen = swept ? (*swept)[0] : iris_.hall(now);
  const std::uint16_t hall =
      noisy(seen, variety_.noise(Subject::hall, 0, now, Stabiliser::hall_noise));
  return stabiliser_.answer(query, {now, values_, {{hall, 0}}, variety_});
}

std::uint32_t LensProgram::read_register(Exchange& exchange, const MotorStates& motors) const {
  const std::uint8_t reg = argument_of(exchange);
  const std::optional<std::uint16_t> value = register_value(reg, motors);
  if (!value) {
    exchange.violation("register %d is not in the map", reg);
    return 0;
  }
  const bool folds = exchange.sent[0] == queries::read_register_de && Counters::has(reg);
  return folds ? folded(*value) : *value;
}

std::optional<std::uint16_t> LensProgram::register_value(std::uint8_t reg,
                                                         const MotorStates& motors) const {
  if (!MotorBlock::has(reg)) return {};
  if (const auto count = counters_.read(reg, motors)) return count;
  if (const auto status = status_register(reg, motors)) return status;
  return motor_block_.read(reg);
}

const Stepper& LensProgram::motor(Output output, const Pt5111& pt5111) const {
  switch (output) {
    case Output::zoom1_block: return zoom1_;
    case Output::zoom3_block: return zoom3_;
    case Output::focus_channel: return motor_block_.focus();
    case Output::zoom_channel: return motor_block_.zoom();
    case Output::pt5111_a: return pt5111.motor_a();
    case Output::pt5111_b: break;
  }
  return pt5111.motor_b();
}

bool LensProgram::energised(Output output, const Pt5111& pt5111) const {
  if (output == Output::zoom1_block) return driven(zoom1_commands, values_);
  if (output == Output::zoom3_block) return driven(zoom3_commands, values_);
  const bool of_chip = output == Output::pt5111_a || output == Output::pt5111_b;
  return of_chip ? pt5111.energised(output) : motor_block_.energised(output);
}

std::optional<Sensors::Interrupter> LensProgram::interrupter(int sensor, Time now,
                                                             const Pt5111& pt5111) const {
  const MotorStates states = motors(now, pt5111);
  return sensors_.interrupter(sensor, view(now, states, pt5111));
}

std::uint16_t LensProgram::converter(std::uint8_t channel, Time now, const Pt5111& pt5111) const {
  const MotorStates states = motors(now, pt5111);
  return Sensors::converted(channel, view(now, states, pt5111));
}

SensorView LensProgram::view(Time now, const MotorStates& motors, const Pt5111& pt5111) const {
  return {module_,
          now,
          motors,
          motor_block_.read(wire::interrupter_supply),
          pt5111.interrupter_supplied(),
          heater_.warmth(now),
          variety_};
}

std::uint16_t LensProgram::version() const {
  switch (module_) {
    case LensModule::de015: return 0x0107;
    case LensModule::df033: return 0x0208;
    case LensModule::t5391: return 0x0309;
  }
  return 0;
}

MotorStates LensProgram::motors(Time now, const Pt5111& pt5111) const {
  MotorStates states;
  states.put(Output::zoom1_block, zoom1_, now);
  states.put(Output::zoom3_block, zoom3_, now);
  states.put(Output::focus_channel, motor_block_.focus(), now);
  states.put(Output::zoom_channel, motor_block_.zoom(), now);
  states.put(Output::pt5111_a, pt5111.motor_a(), now);
  states.put(Output::pt5111_b, pt5111.motor_b(), now);
  return states;
}

void LensProgram::start(LensModule module, Time now, const Pt5111& pt5111) {
  module_ = module;
  values_ = own_values();
  forget_state(now, pt5111);
}

void LensProgram::stop(Time now) {
  motor_block_.reset(now);
  zoom1_.halt(now);
  zoom3_.halt(now);
  heater_.set(now, 0);
  iris_.release(now, low_word(own_values()[commands::hall_offset_x]));
}

void LensProgram::forget(Time now, const Pt5111& pt5111) {
  stop(now);
  values_ = {};
  forget_state(now, pt5111);
}

void LensProgram::forget_state(Time now, const Pt5111& pt5111) {
  heater_.set(now, 0);
  iris_.release(now, low_word(own_values()[commands::hall_offset_x]));
  counters_.clear(motors(now, pt5111));
  sensors_ = {};
  stabiliser_ = {};
  calibration_ = {};
}

void LensProgram::fit(LensModule module, const Variety& variety) {
  variety_ = variety;
  heater_ = {};
  iris_.fit(low_word(own_values()[commands::hall_offset_x]));
  motor_block_.fit(module, variety);
  fit_motor(zoom1_, module, Output::zoom1_block, variety);
  fit_motor(zoom3_, module, Output::zoom3_block, variety);
}

void LensProgram::connect(Time now, bool connected) {
  motor_block_.connect(now, connected);
  zoom1_.connect(now, connected);
  zoom3_.connect(now, connected);
}

void LensProgram::finish_boot() {
  if (wire::find(commands::table, commands::loop_ready, module_) == nullptr) return;
  values_[commands::loop_ready] = 1;
}

Stepper* LensProgram::motor(Output output) {
  if (output == Output::zoom1_block) return &zoom1_;
  return output == Output::zoom3_block ? &zoom3_ : motor_block_.motor(output);
}

}  // namespace kelvo::sim::camera
