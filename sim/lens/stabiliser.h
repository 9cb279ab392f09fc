#ifndef KELVO_SIM_LENS_STABILISER_H
#define KELVO_SIM_LENS_STABILISER_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "sim/common/clock.h"
#include "sim/common/variety.h"
#include "sim/lens/program_values.h"

namespace kelvo::sim::camera {

/// The stabiliser of the lens controller's program: on or off, and what its sensors see.
///
/// The camera is held by a steady hand that shakes now and then: in each eight seconds there are six
/// with a slight tremor and two with a strong one. Each gyro sees a triangular swing around its zero; the
/// Hall sensors see the lens at rest at their offset, or, while stabilisation is on and not paused,
/// move against the swing within their travel: by the swing itself at the gyro gain that the program has of
/// its own, by more or less at another, and not at all on an axis whose range is 0.
class Stabiliser {
 public:
  /// A new command value: the switch itself, or the range of both axes, which sets that of each.
  void obey(std::uint8_t command, CommandValues& values);
  bool on() const { return on_; }

  /// What the Hall sensors of both axes see for another reason.
  using HallValues = std::optional<std::array<std::uint16_t, 2>>;
  /// What a camera with a seed sees too much or too little at most.
  static constexpr std::int64_t hall_noise = 2;
  static constexpr std::int64_t gyro_noise = 3;

  struct View {
    Time now;
    const CommandValues& values;
    HallValues hall;
    const Variety& variety;
  };
  /// The answer to a query for gyro or Hall values; nothing for any other query.
  std::optional<std::uint32_t> answer(std::uint8_t query, const View& view) const;

 private:
  std::uint16_t hall(std::size_t axis, const View& view) const;

  bool on_ = false;
};

}  // namespace kelvo::sim::camera

#endif
