#include <algorithm>
#include <cstdint>
#include <cstdio>

#include "kelvo/pantilt.h"
#include "pantilt/controller/axis.h"
#include "pantilt/controller/hall.h"
#include "pantilt/controller/limits.h"
#include "pantilt/controller/position_scale.h"
#include "pantilt/motion/tilt_targets.h"
#include "wire/pan_tilt_registers.h"

namespace {

using kelvo::pantilt::Axis;
using kelvo::pantilt::head_family;
using kelvo::pantilt::HeadFamily;
using kelvo::pantilt::pan;
using kelvo::pantilt::Payload;
using kelvo::pantilt::send;
using kelvo::pantilt::tilt;
namespace tasmere = kelvo::wire::tasmere;
namespace vetra = kelvo::wire::vetra;

constexpr std::int32_t top_speed = 7200;
constexpr std::uint32_t full_continuous = 32767;
constexpr std::uint32_t full_absolute = 24575;

/// Neither slow nor negative speeds are looked at.
std::int32_t capped(std::int32_t speed) { return std::min(speed, top_speed); }

/// A fraction of full scale; the product wraps.
std::uint32_t scaled(std::int32_t speed, std::uint32_t full) {
  const std::uint32_t product = static_cast<std::uint32_t>(capped(speed)) * full;
  return static_cast<std::uint32_t>(static_cast<std::int32_t>(product) / top_speed);
}

std::uint32_t ones_complement(std::uint32_t value) { return ~value; }
std::uint32_t twos_complement(std::uint32_t value) { return 0U - value; }

Payload vetra_absolute(std::uint32_t direction, std::int32_t count, std::int32_t speed) {
  return Payload()
      .u8(direction)
      .u16(static_cast<std::uint32_t>(count))
      .u16(static_cast<std::uint32_t>(capped(speed)));
}

void move_continuously(const Axis& axis, HeadFamily family, std::int32_t dir, std::int32_t speed) {
  if (family == HeadFamily::tasmere) {
    const std::uint32_t fraction = scaled(speed, full_continuous);
    // Absolute moves take the two's complement (deliberate).
    const std::uint32_t signed_speed = dir == 1 ? ones_complement(fraction) : fraction;
    send(axis, tasmere::continuous_move, Payload().u16(signed_speed));
    return;
  }
  const std::int32_t direction = dir ^ 1;
  send(axis, vetra::continuous_move,
       Payload()
           .u8(static_cast<std::uint32_t>(direction))
           .u16(static_cast<std::uint32_t>(capped(speed))));
  std::printf("Manaul Dir:%d Speed:%d\n", direction, capped(speed));
}

/// Where a Tasmere tilt axis with a Hall sensor is to go, on the sensor's scale.
std::uint32_t hall_target(std::uint32_t pos, bool limits_hold) {
  const auto start = static_cast<std::uint32_t>(giTiltLimitStart);
  const auto end = static_cast<std::uint32_t>(giTiltLimitEnd);
  std::uint32_t target = pos;
  if (limits_hold && pos < start) {
    target = start;
  } else if (limits_hold && end < pos) {
    target = end;
  }
  return target + static_cast<std::uint32_t>(kelvo::wire::tilt_hall_offset);
}

void tilt_tasmere(std::int32_t dir, std::int32_t speed, std::uint32_t pos, bool limits_hold) {
  const std::uint32_t fraction = scaled(speed, full_absolute);
  Payload payload;
  if (kelvo::pantilt::tilt_uses_hall()) {
    // The sensor counts the other way: direction 0 is the one that is turned round.
    payload.u16(hall_target(pos, limits_hold)).u16(dir == 0 ? ones_complement(fraction) : fraction);
  } else {
    payload.u16(pos).u16(dir == 1 ? twos_complement(fraction) : fraction);
  }
  send(tilt, tasmere::absolute_move, payload);
}

void tilt_vetra(std::int32_t dir, std::int32_t speed, std::uint32_t pos, bool limits_hold) {
  const auto position = static_cast<std::int32_t>(pos);
  const std::int32_t target = kelvo::pantilt::TiltCounts().target(position, limits_hold);
  // The direction goes as it is, unlike pan's (deliberate).
  send(tilt, vetra::absolute_move, vetra_absolute(static_cast<std::uint32_t>(dir), target, speed));
  std::printf("ABS Tilt:%d %d->%04x %d\n", dir, position, static_cast<std::uint32_t>(target),
              capped(speed));
}

/// Shift counts wrap at 32: from the fifth byte on the value begins again (deliberate).
std::int32_t send_value(const Axis& axis, std::uint32_t reg, std::uint32_t value, std::int32_t n) {
  if (n == 0 || n > static_cast<std::int32_t>(Payload::most_bytes)) return 0;
  Payload payload;
  for (std::int32_t left = n - 1; left >= 0; --left) payload.u8(value >> (8 * left % 32));
  // A negative length, too, goes on to the link.
  SendI2C(axis.slave, static_cast<std::uint8_t>(reg), payload.bytes(),
          static_cast<std::uint32_t>(n) + 1U);
  return 0;
}

}  // namespace

std::int32_t PanContinuousMove(std::int32_t dir, std::int32_t speed) {
  const HeadFamily family = head_family();
  Pan_Setup_PID(0, speed, 0);
  std::printf("TServomotor=%d\n", static_cast<int>(family));
  move_continuously(pan, family, dir, speed);
  return 0;
}

std::int32_t TiltContinuousMove(std::int32_t dir, std::int32_t speed) {
  const HeadFamily family = head_family();
  Tilt_Setup_PID(0, speed, 0);
  std::printf("TServomotor=%d\n", static_cast<int>(family));
  // Asked for and not used (deliberate).
  if (family == HeadFamily::tasmere) kelvo::pantilt::tilt_uses_hall();
  move_continuously(tilt, family, dir, speed);
  return 0;
}

std::int32_t PanABSMove(std::int32_t dir, std::int32_t speed, std::uint32_t pos) {
  const HeadFamily family = head_family();
  Pan_Setup_PID(1, speed, static_cast<std::int32_t>(pos));
  if (family == HeadFamily::tasmere) {
    const std::uint32_t fraction = scaled(speed, full_absolute);
    send(pan, tasmere::absolute_move,
         Payload().u16(pos).u16(dir == 1 ? twos_complement(fraction) : fraction));
  } else {
    const std::int32_t count = kelvo::pantilt::pan_count(static_cast<float>(pos));
    send(pan, vetra::absolute_move,
         vetra_absolute(static_cast<std::uint32_t>(dir ^ 1), count, speed));
  }
  return 0;
}

std::int32_t TiltABSMove(std::int32_t dir, std::int32_t speed, std::uint32_t pos) {
  // The limits as they stand at the beginning, and only when both are set and switched on.
  const bool limits_hold = giTiltLimitStart != 0 && giTiltLimitEnd != 0 && giTiltLimitEn == 1;
  const HeadFamily family = head_family();
  Tilt_Setup_PID(1, speed, static_cast<std::int32_t>(pos));
  if (family == HeadFamily::tasmere) {
    tilt_tasmere(dir, speed, pos, limits_hold);
  } else {
    tilt_vetra(dir, speed, pos, limits_hold);
  }
  return 0;
}

std::int32_t Pan_SendI2C_Advanced(std::uint32_t reg, std::uint32_t value, std::int32_t n) {
  return send_value(pan, reg, value, n);
}

std::int32_t Tilt_SendI2C_Advanced(std::uint32_t reg, std::uint32_t value, std::int32_t n) {
  return send_value(tilt, reg, value, n);
}
