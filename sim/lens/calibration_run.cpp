#include "sim/lens/calibration_run.h"

#include "wire/lens_program.h"

namespace kelvo::sim::camera {
namespace {

constexpr std::uint8_t mode_of_calibration = 1;
constexpr std::uint8_t state_running = 1;

constexpr Time time_of_run(wire::LensModule module) {
  return module == wire::LensModule::de015 ? std::chrono::seconds(12) : std::chrono::seconds(8);
}

/// From one end to the other and back, in two seconds.
std::uint16_t swept_between(std::uint16_t low, std::uint16_t high, Time time) {
  constexpr Time there = std::chrono::seconds(1);
  const Time phase = time % (2 * there);
  const Time rising = phase < there ? phase : 2 * there - phase;
  return static_cast<std::uint16_t>(low + (high - low) * rising.count() / there.count());
}

}  // namespace

void CalibrationRun::obey(std::uint8_t command, Time now, const CommandValues& values) {
  if (command != wire::command::set_mode) return;
  const bool asked_for = values[wire::command::quality_check] == 1;
  const bool starts = values[command] == mode_of_calibration && asked_for;
  state_ = starts ? State::running : State::idle;
  started_ = now;
}

void CalibrationRun::settle(wire::LensModule module, Time now, CommandValues& values) {
  if (state_ != State::running || now - started_ < time_of_run(module)) return;
  state_ = State::finished;
  store_measured(module, values);
}

std::optional<std::array<std::uint16_t, 2>> CalibrationRun::swept(wire::LensModule module,
                                                                  Time now) const {
  namespace commands = wire::command;
  if (state_ != State::running || now - started_ >= time_of_run(module)) return {};
  return std::array{swept_between(measured(module, commands::travel_min_x),
                                  measured(module, commands::travel_max_x), now - started_),
                    swept_between(measured(module, commands::travel_min_y),
                                  measured(module, commands::travel_max_y), now - started_)};
}

std::optional<std::uint32_t> CalibrationRun::answer(std::uint8_t query) const {
  if (query == wire::query::calibration_error) return 0;
  if (query != wire::query::calibration_state) return std::nullopt;
  switch (state_) {
    case State::idle: return wire::calibration_idle;
    case State::running: return state_running;
    case State::finished: return wire::calibration_finished;
  }
  return std::nullopt;
}

}  // namespace kelvo::sim::camera
