// The scales of the head's controllers, and numbers as they travel.
#ifndef KELVO_SIM_HEAD_HEAD_SCALE_H
#define KELVO_SIM_HEAD_HEAD_SCALE_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "wire/pan_tilt_registers.h"

namespace kelvo::sim::camera {

inline constexpr std::uint32_t tasmere_circle = 65'536;
inline constexpr std::uint32_t vetra_circle = wire::vetra_full_step;

inline constexpr std::size_t longest_value = 4;

constexpr std::uint32_t number_in(std::span<const std::uint8_t> bytes) {
  std::uint32_t number = 0;
  for (const std::uint8_t byte : bytes) number = number << 8 | byte;
  return number;
}

}  // namespace kelvo::sim::camera

#endif
