#ifndef KELVO_PANTILT_CONTROLLER_BLOCK_H
#define KELVO_PANTILT_CONTROLLER_BLOCK_H

#include <cstdint>
#include <span>

#include "pantilt/controller/axis.h"
#include "wire/pan_tilt_registers.h"

namespace kelvo::pantilt {

/// A register of a Tasmere controller and what is written to it.
struct Write {
  std::uint8_t reg;
  Payload data;
};

template <typename... Bytes>
constexpr Payload bytes(Bytes... values) {
  Payload payload;
  (payload.u8(static_cast<std::uint8_t>(values)), ...);
  return payload;
}

/// Whether the map has the register with this width, for writing.
constexpr bool fits(std::uint8_t reg, const Payload& data) {
  for (const wire::ControllerRegister& row : wire::tasmere::registers) {
    if (row.number == reg) return row.access == wire::Access::w && row.width == data.size();
  }
  return false;
}

}  // namespace kelvo::pantilt

#endif
