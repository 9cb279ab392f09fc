#ifndef KELVO_PANTILT_CONTROLLER_POSITION_SCALE_H
#define KELVO_PANTILT_CONTROLLER_POSITION_SCALE_H

#include <cstdint>

namespace kelvo::pantilt {

/// The last position of the common scale.
inline constexpr std::uint32_t full_scale = 65535;

/// The Vetra pan controller's count for a position of the common scale, which runs the other way. The
/// position comes as a float so that each caller's own integer type decides how it is rounded.
std::int32_t pan_count(float pos);

}  // namespace kelvo::pantilt

#endif
