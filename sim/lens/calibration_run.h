#ifndef KELVO_SIM_LENS_CALIBRATION_RUN_H
#define KELVO_SIM_LENS_CALIBRATION_RUN_H

#include <array>
#include <cstdint>
#include <optional>

#include "sim/common/clock.h"
#include "sim/lens/program_values.h"

namespace kelvo::sim::camera {

/// The program's calibration of a fitted unit: started by a mode, once it has been asked for, and over
/// after a while with the measured values in the place of the program's own. The unit is in good order:
/// there is no error.
class CalibrationRun {
 public:
  /// A new command value: it starts a run, or leaves it for another mode.
  void obey(std::uint8_t command, Time now, const CommandValues& values);
  /// Stores what the run has measured, when it is over.
  void settle(wire::LensModule module, Time now, CommandValues& values);

  /// What the Hall sensors see while it runs: the lens, or the iris, goes through its travel.
  std::optional<std::array<std::uint16_t, 2>> swept(wire::LensModule module, Time now) const;

  /// The answer to the query for the state or the error code; nothing for any other query.
  std::optional<std::uint32_t> answer(std::uint8_t query) const;

 private:
  enum class State : std::uint8_t { idle, running, finished };

  State state_ = State::idle;
  Time started_{};
};

}  // namespace kelvo::sim::camera

#endif
