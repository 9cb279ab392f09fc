#ifndef KELVO_PANTILT_CONTROLLER_AXIS_H
#define KELVO_PANTILT_CONTROLLER_AXIS_H

#include <cstdint>

#include "wire/pan_tilt.h"

extern "C" {

// Counts of a full range on a Vetra controller: 3600 until the family is known to be Vetra.
extern std::int32_t giPanFullStep;
extern std::int32_t giTiltFullStep;
}

namespace kelvo::pantilt {

using wire::HeadFamily;

/// One axis of the head. Where pan and tilt differ in more than these, the functions say so.
struct Axis {
  std::uint16_t slave;
  const std::int32_t* full_step;
};
inline constexpr Axis pan{wire::pan_slave, &giPanFullStep};
inline constexpr Axis tilt{wire::tilt_slave, &giTiltFullStep};

/// Asks the pan controller the first time.
HeadFamily head_family();
inline bool is_tasmere() { return head_family() == HeadFamily::tasmere; }

/// The data bytes behind a register byte, numbers high byte first.
class Payload {
 public:
  static constexpr std::uint32_t most_bytes = 8;

  constexpr Payload& u8(std::uint32_t value) {
    bytes_[size_++] = static_cast<std::uint8_t>(value);
    return *this;
  }
  constexpr Payload& u16(std::uint32_t value) { return u8(value >> 8).u8(value); }
  constexpr Payload& u32(std::uint32_t value) { return u16(value >> 16).u16(value); }

  constexpr const std::uint8_t* bytes() const { return bytes_; }
  constexpr std::uint32_t size() const { return size_; }

 private:
  std::uint8_t bytes_[most_bytes] = {};
  std::uint32_t size_ = 0;
};

/// Writes a register; how it went is nobody's concern.
void send(const Axis& axis, std::uint8_t reg, const Payload& payload = {});

/// A register's bytes, zeros when it could not be read.
struct Reading {
  std::uint8_t bytes[4] = {};
  std::int32_t status = 0;  // ReadI2C()'s

  std::uint8_t u8() const { return bytes[0]; }
  /// The number at byte 0 or 2.
  std::uint32_t u16(std::uint32_t at = 0) const {
    return static_cast<std::uint32_t>(bytes[at] << 8 | bytes[at + 1]);
  }
};
Reading read(const Axis& axis, std::uint8_t reg, std::int32_t length);

}  // namespace kelvo::pantilt

#endif
