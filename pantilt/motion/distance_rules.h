#ifndef KELVO_PANTILT_MOTION_DISTANCE_RULES_H
#define KELVO_PANTILT_MOTION_DISTANCE_RULES_H

#include <cstdint>

namespace kelvo::pantilt {

// Position-loop P of an absolute move by the distance still to go, in counts of a Vetra controller. Each
// is one fused multiply-add, cut towards zero: its single rounding decides where a value changes.

/// A pan move of more than 999 counts: 26 at 1000, one less for each further thousand.
std::int32_t far_pan_gain(std::int32_t distance);
/// A pan move of 1 to 999 counts: 35 up to 100, one less for each further hundred.
std::int32_t near_pan_gain(std::int32_t distance);
/// A tilt move of at most 999 counts: 34 up to 50, one less for each further fifty.
std::int32_t near_tilt_gain(std::int32_t distance);

/// The longest distance that is near.
inline constexpr std::int32_t near_distance = 999;

}  // namespace kelvo::pantilt

#endif
