#include "sim/camera/motor_block.h"

#include <algorithm>

namespace kelvo::sim::camera {
namespace {

using wire::MotorChannel;

/// What a mode word means: the direction, how many ticks of the step clock make one count, and how far
/// the step clock can be raised.
struct DriveMode {
  std::int16_t word;
  Direction direction;
  std::uint32_t ticks_per_count;
  std::uint32_t top_range;
};

constexpr std::array drive_modes{
    DriveMode{wire::motor_mode::phase_forward, Direction::forward, 1, 7},
    DriveMode{wire::motor_mode::phase_backward, Direction::backward, 1, 7},
    DriveMode{wire::motor_mode::micro_step_forward, Direction::forward, 8, 10},
    DriveMode{wire::motor_mode::micro_step_backward, Direction::backward, 8, 10},
};

TickRate rate_of(std::uint32_t period_word, const DriveMode& mode) {
  const std::uint32_t range = std::min(period_word >> wire::step_range_shift, mode.top_range);
  return step_rate(range, period_word - (range << wire::step_range_shift));
}

constexpr bool belongs_to(const MotorChannel& channel, std::uint8_t reg) {
  return reg == channel.control || reg == channel.mode || reg == channel.count_low ||
         reg == channel.count_high || reg == channel.period || reg == channel.current;
}

}  // namespace

bool MotorBlock::has(std::uint8_t reg) {
  return belongs_to(wire::focus_channel, reg) || belongs_to(wire::zoom_channel, reg) ||
         reg == wire::motor_block_enable.reg || reg == wire::motor_block_clock.reg ||
         reg == wire::motor_block_commit.reg;
}

void MotorBlock::write(Exchange& exchange, std::uint8_t reg, std::uint16_t value) {
  if (!has(reg)) {
    exchange.violation("register %d is not in the map", reg);
    return;
  }
  if (reg == wire::focus_channel.control) control(exchange, wire::focus_channel, focus_, value);
  if (reg == wire::zoom_channel.control) control(exchange, wire::zoom_channel, zoom_, value);
  registers_[reg] = value;
}

void MotorBlock::control(Exchange& exchange, const MotorChannel& channel, Stepper& stepper,
                         std::uint16_t value) const {
  if (value == wire::motor_control::stop) stepper.halt(exchange.now);
  const bool armed = read(channel.control) == wire::motor_control::armed;
  if (value == wire::motor_control::run && armed) run(exchange, channel, stepper);
}

void MotorBlock::run(Exchange& exchange, const MotorChannel& channel, Stepper& stepper) const {
  const std::uint16_t word = read(channel.mode);
  const auto* const mode = std::find_if(drive_modes.begin(), drive_modes.end(),
                                        [&](const DriveMode& row) { return row.word == word; });
  if (mode == drive_modes.end()) {
    exchange.violation("mode word 0x%03X is no drive mode", word);
    return;
  }
  const std::uint32_t counts =
      read(channel.count_high) % 1024 * 1024U + read(channel.count_low) % 1024;
  stepper.start(exchange.now, {mode->direction, counts, mode->ticks_per_count,
                               rate_of(read(channel.period), *mode)});
}

void MotorBlock::reset(Time now) {
  registers_ = {};
  focus_.halt(now);
  zoom_.halt(now);
}

void MotorBlock::fit(LensModule module) {
  focus_.fit(end_stop(module, Output::focus_channel));
  zoom_.fit(end_stop(module, Output::zoom_channel));
}

}  // namespace kelvo::sim::camera
