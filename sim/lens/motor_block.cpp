#include "sim/lens/motor_block.h"

#include <algorithm>
#include <array>
#include <bit>
#include <span>

namespace kelvo::sim::camera {
namespace {

using wire::MotorChannel;

// The ranges by which a drive can raise the step clock, one bit each.
constexpr std::uint32_t ranges_of_phases = 1U << 0 | 1U << 3 | 1U << 5 | 1U << 7;
constexpr std::uint32_t ranges_of_micro_steps = (1U << 11) - 1;

/// What a mode word means: the direction, how many ticks of the step clock make one count, and its ranges.
struct DriveMode {
  std::int16_t word;
  Direction direction;
  std::uint32_t ticks_per_count;
  std::uint32_t ranges;
};

constexpr std::array drive_modes{
    DriveMode{wire::motor_mode::phase_forward, Direction::forward, 1, ranges_of_phases},
    DriveMode{wire::motor_mode::phase_backward, Direction::backward, 1, ranges_of_phases},
    DriveMode{wire::motor_mode::micro_step_forward, Direction::forward, 8, ranges_of_micro_steps},
    DriveMode{wire::motor_mode::micro_step_backward, Direction::backward, 8, ranges_of_micro_steps},
};

/// The rate of a period word, in the highest of the drive's ranges that it reaches.
TickRate rate_of(std::uint32_t period_word, const DriveMode& mode) {
  const std::uint32_t top = std::min(period_word >> wire::step_range_shift, 30U);
  const std::uint32_t reached = (2U << top) - 1;
  const auto range = static_cast<std::uint32_t>(std::bit_width(mode.ranges & reached)) - 1;
  return step_rate(range, period_word - (range << wire::step_range_shift));
}

constexpr bool writable(const MotorChannel& channel, std::uint8_t reg) {
  return reg == channel.control || reg == channel.mode || reg == channel.count_low ||
         reg == channel.count_high || reg == channel.period || reg == channel.current ||
         reg == channel.counter;
}

constexpr bool is_off(std::uint16_t current) {
  return current == wire::motor_current::off || current == wire::motor_current::off_df033;
}

constexpr bool in_filter_list(std::span<const wire::RegisterValue> list, std::uint8_t reg) {
  return std::any_of(list.begin(), list.end(), [&](const auto& row) { return row.reg == reg; });
}

constexpr bool of_filter(std::uint8_t reg) {
  return reg == wire::filter_direction || in_filter_list(wire::filter_set_up, reg) ||
         in_filter_list(wire::filter_start, reg);
}

}  // namespace

bool MotorBlock::has(std::uint8_t reg) {
  return writable(wire::focus_channel, reg) || writable(wire::zoom_channel, reg) ||
         reads_only(reg) || of_filter(reg) || reg == wire::motor_block_enable.reg ||
         reg == wire::motor_block_clock.reg || reg == wire::motor_block_commit.reg ||
         reg == wire::interrupter_supply;
}

bool MotorBlock::reads_only(std::uint8_t reg) {
  return reg == wire::focus_channel.status || reg == wire::zoom_channel.status;
}

void MotorBlock::write(Exchange& exchange, std::uint8_t reg, std::uint16_t value) {
  if (!has(reg)) {
    exchange.violation("register %d is not in the map", reg);
    return;
  }
  if (reads_only(reg)) {
    exchange.violation("register %d can only be read", reg);
    return;
  }
  const auto channel = [&](const MotorChannel& registers, Stepper& motor) {
    if (reg == registers.control) control(exchange, registers, motor, value);
    if (reg == registers.current && is_off(value)) motor.halt(exchange.now);
  };
  channel(wire::focus_channel, focus_);
  channel(wire::zoom_channel, zoom_);
  if (reg == wire::filter_coil) drive_filter(exchange.now, value);
  registers_[reg] = value;
}

void MotorBlock::drive_filter(Time now, std::uint16_t value) {
  const std::uint16_t direction = read(wire::filter_direction);
  const bool known = direction == wire::filter_drive::into || direction == wire::filter_drive::away;
  if (value == wire::filter_drive::driven && known) {
    filter_.drive(now, direction == wire::filter_drive::into ? FilterPlace::on : FilterPlace::off);
  } else {
    filter_.release(now);
  }
}

void MotorBlock::control(Exchange& exchange, const MotorChannel& channel, Stepper& stepper,
                         std::uint16_t value) const {
  if (value == wire::motor_control::stop) stepper.halt(exchange.now);
  const bool armed = read(channel.control) == wire::motor_control::armed;
  const bool powered = !is_off(read(channel.current));
  if (value == wire::motor_control::run && armed && powered) run(exchange, channel, stepper);
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
  filter_.release(now);
}

void MotorBlock::fit(LensModule module, const Variety& variety) {
  fit_motor(focus_, module, Output::focus_channel, variety);
  fit_motor(zoom_, module, Output::zoom_channel, variety);
  filter_.fit(first_filter_place(variety));
}

void MotorBlock::connect(Time now, bool connected) {
  focus_.connect(now, connected);
  zoom_.connect(now, connected);
  filter_.connect(now, connected);
}

bool MotorBlock::energised(Output output) const {
  const MotorChannel& channel =
      output == Output::focus_channel ? wire::focus_channel : wire::zoom_channel;
  return !is_off(read(channel.current));
}

Stepper* MotorBlock::motor(Output output) {
  if (output == Output::focus_channel) return &focus_;
  return output == Output::zoom_channel ? &zoom_ : nullptr;
}

}  // namespace kelvo::sim::camera
