#include "sim/lens/calibration_run.h"

#include "wire/lens_program.h"

namespace kelvo::sim::camera {
namespace {

constexpr std::uint8_t mode_of_calibration = 1;
constexpr std::uint8_t state_running = 1;

constexpr Time time_of_run(wire::LensModule module) {
  return module == wire::LensModule::de015 ? std::chrono::seconds(12) : std::chrono::seconds(8);
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
