#ifndef KELVO_PANTILT_MOTION_TILT_TARGETS_H
#define KELVO_PANTILT_MOTION_TILT_TARGETS_H

#include <cstdint>

#include "kelvo/pantilt.h"
#include "pantilt/controller/limits.h"

namespace kelvo::pantilt {

/// The tilt limits in counts of a Vetra controller. Counts run against the common scale and wrap, so those
/// between start and end are the forbidden side.
struct TiltCounts {
  std::int32_t start = Tasmere2Vetra(giTiltLimitStart);
  std::int32_t end = Tasmere2Vetra(giTiltLimitEnd);

  /// The count for a target on the common scale; on the forbidden side the nearer limit, if they hold.
  std::int32_t target(std::int32_t pos, bool limits_hold) const {
    const std::int32_t count = Tasmere2Vetra(pos);
    const std::int32_t middle = (start + end) / 2;
    if (!limits_hold) return count;
    if (start <= count && count < middle) return start;
    return middle < count && count < end ? end : count;
  }
};

}  // namespace kelvo::pantilt

#endif
