#ifndef KELVO_SIM_LENS_STABILISER_H
#define KELVO_SIM_LENS_STABILISER_H

#include <cstddef>
#include <cstdint>
#include <optional>

#include "sim/common/clock.h"
#include "sim/lens/program_values.h"

namespace kelvo::sim::camera {

/// The stabiliser of the lens controller's program: on or off, and what its sensors see.
///
/// The camera is held by a steady hand that shakes now and then: in each eight seconds there are six
/// with a slight tremor and two with a strong one. Each gyro sees a triangular swing around its zero; the
/// Hall sensors see the lens at rest around their offset, or, while stabilisation is on and not paused,
/// move against the swing within their travel.
class Stabiliser {
 public:
  /// A new command value: the switch itself, or the range of both axes, which sets that of each.
  void obey(std::uint8_t command, CommandValues& values);
  bool on() const { return on_; }

  /// The answer to a query for gyro or Hall values; nothing for any other query.
  std::optional<std::uint32_t> answer(std::uint8_t query, Time now,
                                      const CommandValues& values) const;

 private:
  std::uint16_t hall(std::size_t axis, Time now, const CommandValues& values) const;

  bool on_ = false;
};

}  // namespace kelvo::sim::camera

#endif
