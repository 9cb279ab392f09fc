#ifndef KELVO_WIRE_PAN_TILT_H
#define KELVO_WIRE_PAN_TILT_H

#include <cstdint>

namespace kelvo::wire {

// I2C slave addresses of the two motor controllers.
inline constexpr std::uint16_t pan_slave  = 40;
inline constexpr std::uint16_t tilt_slave = 41;

/// Controller families, by the number that the library keeps once it has asked.
enum class HeadFamily : std::int32_t { unknown = -1, vetra = 1, tasmere = 2 };

}  // namespace kelvo::wire

#endif
