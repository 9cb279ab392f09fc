#ifndef KELVO_SIM_LENS_DC_IRIS_H
#define KELVO_SIM_LENS_DC_IRIS_H

#include <cstdint>

#include "sim/lens/program_values.h"
#include "sim/lens/slide.h"

namespace kelvo::sim::camera {

/// The DC iris of DF033 and T5391, as its Hall sensor sees it. Its loop holds it at the target that a command
/// brings, within its travel, from the end of a boot on. Without the loop or a target it rests at the Hall
/// offset.
class DcIris {
 public:
  /// Values of the Hall sensor that it passes in a second.
  static constexpr std::int64_t per_second = 16'000;

  /// Another lens's iris takes this one's place, at rest.
  void fit(std::uint16_t rest);
  /// A new command value: its target, its travel, its rest, or whether its loop is ready.
  void obey(std::uint8_t command, Time now, const CommandValues& values);
  /// The program ends, or starts anew: the loop is open, and the iris goes to its rest.
  void release(Time now, std::uint16_t rest);

  std::uint16_t hall(Time now) const { return static_cast<std::uint16_t>(place_.value(now)); }

 private:
  bool aimed_ = false;  // there was a target
  Slide place_{per_second};
};

}  // namespace kelvo::sim::camera

#endif
