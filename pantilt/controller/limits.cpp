#include "pantilt/controller/limits.h"

#include <cstdio>

#include "kelvo/pantilt.h"
#include "pantilt/controller/axis.h"
#include "pantilt/controller/hall.h"
#include "pantilt/controller/position_scale.h"
#include "wire/pan_tilt_registers.h"

std::int32_t giTiltLimitEn = 0;
std::int32_t giTiltLimitStart = 0;
std::int32_t giTiltLimitEnd = 0;

namespace {

using kelvo::pantilt::Axis;
using kelvo::pantilt::is_tasmere;
using kelvo::pantilt::pan;
using kelvo::pantilt::pan_count;
using kelvo::pantilt::Payload;
using kelvo::pantilt::read;
using kelvo::pantilt::Reading;
using kelvo::pantilt::send;
using kelvo::pantilt::tilt;
using kelvo::pantilt::tilt_uses_hall;
namespace tasmere = kelvo::wire::tasmere;
namespace vetra = kelvo::wire::vetra;

constexpr std::uint32_t wrap = kelvo::pantilt::full_scale;
constexpr std::uint32_t hall_offset = kelvo::wire::tilt_hall_offset;

std::uint32_t limit_step(std::int32_t speed) {
  if (speed <= 100) return 5;
  return speed <= 400 ? 15 : 30;
}

void set_limit_step(const Axis& axis, const char* line, std::int32_t speed) {
  if (is_tasmere()) return;
  const std::uint32_t step = limit_step(speed);
  std::printf("###%s limit step ispeed:%d iStep:%d\n", line, speed, static_cast<int>(step));
  send(axis, vetra::set_limit_step, Payload().u16(step));
}

/// Any value but 0 and 1 has no travel mode of its own.
std::uint32_t travel_mode(std::int32_t enable) {
  constexpr std::uint32_t continuous = 1;
  constexpr std::uint32_t limited = 2;
  if (enable == 1) return limited;
  return enable == 0 ? continuous : 0;
}

void enable_limits(const Axis& axis, std::int32_t enable) {
  if (is_tasmere()) {
    send(axis, tasmere::set_travel_mode, Payload().u16(travel_mode(enable)));
  } else {
    send(axis, vetra::set_limit_enable, Payload().u8(enable == 1 ? 1 : 0));
  }
}

std::int32_t limits_enabled(const Axis& axis) {
  constexpr std::uint8_t limited = 2;
  if (is_tasmere()) return read(axis, tasmere::travel_mode, 2).bytes[1] == limited ? 1 : 0;
  return read(axis, vetra::limit_enable, 1).u8();
}

/// Start, then length: two transfers.
void send_tasmere_limits(const Axis& axis, std::uint32_t start, std::uint32_t length) {
  send(axis, tasmere::set_limit_start, Payload().u16(start));
  send(axis, tasmere::set_limit_length, Payload().u16(length));
}

std::uint32_t length_between(std::uint32_t start, std::uint32_t end, bool reversed) {
  return end - start + (reversed ? wrap : 0);
}

void read_vetra_limits(const Axis& axis, std::uint32_t* start, std::uint32_t* end) {
  const Reading limits = read(axis, vetra::limits, 4);
  *start = limits.u16();
  *end = limits.u16(2);
}

std::uint32_t to_hall_zero(std::uint32_t pos) {
  const std::uint32_t moved = pos + hall_offset;
  return moved > wrap - 1 ? pos - (wrap - hall_offset) : moved;
}

void read_tasmere_tilt_limits(std::uint32_t* start, std::uint32_t* end) {
  const bool hall = tilt_uses_hall();
  *start = read(tilt, tasmere::limit_start, 4).u16() - (hall ? hall_offset : 0);
  const std::uint32_t length = read(tilt, tasmere::limit_length, 4).u16();
  // Without the Hall sensor the length is read and ignored (deliberate).
  *end = *start + (hall ? length : 0);
}

}  // namespace

std::int32_t PanLimitstep(std::int32_t speed) {
  set_limit_step(pan, "Pan", speed);
  return 0;
}

std::int32_t TiltLimitstep(std::int32_t speed) {
  set_limit_step(tilt, "Tilt", speed);
  return 0;
}

std::int32_t PanLimitEn(std::int32_t enable) {
  enable_limits(pan, enable);
  return 0;
}

std::int32_t TiltLimitEn(std::int32_t enable) {
  giTiltLimitEn = enable;
  enable_limits(tilt, enable);
  return 0;
}

std::int32_t PanLimitSet(std::int32_t start, std::int32_t end) {
  if (is_tasmere()) {
    const auto from = static_cast<std::uint32_t>(start);
    send_tasmere_limits(pan, from,
                        length_between(from, static_cast<std::uint32_t>(end), start > end));
  } else {
    const auto count = [](std::int32_t pos) {
      return static_cast<std::uint32_t>(pan_count(static_cast<float>(pos)));
    };
    send(pan, vetra::set_limits, Payload().u16(count(start)).u16(count(end)));
  }
  return 0;
}

std::int32_t TiltLimit(std::uint32_t start, std::uint32_t end) {
  giTiltLimitStart = static_cast<std::int32_t>(start);
  giTiltLimitEnd = static_cast<std::int32_t>(end);
  if (!is_tasmere()) {
    const std::int32_t from = Tasmere2Vetra(giTiltLimitStart);
    const std::int32_t to = Tasmere2Vetra(giTiltLimitEnd);
    std::printf("Limit S:%d %d E:%d %d\n", giTiltLimitEnd, to, giTiltLimitStart, from);
    // The end goes first, unlike pan: the conversion turns the direction round (deliberate).
    send(tilt, vetra::set_limits,
         Payload().u16(static_cast<std::uint32_t>(to)).u16(static_cast<std::uint32_t>(from)));
    return 0;
  }
  const bool hall = tilt_uses_hall();
  const std::uint32_t from = hall ? to_hall_zero(start) : start;
  const std::uint32_t to = hall ? to_hall_zero(end) : end;
  send_tasmere_limits(tilt, from, length_between(from, to, from > to));
  return 0;
}

std::int32_t GetPanLimitEn() { return limits_enabled(pan); }
std::int32_t GetTiltLimitEn() { return limits_enabled(tilt); }

std::int32_t GetPanLimitPos(std::uint32_t* start, std::uint32_t* end) {
  if (is_tasmere()) {
    *start = read(pan, tasmere::limit_start, 2).u16();
    *end = *start + read(pan, tasmere::limit_length, 2).u16();  // does not wrap
  } else {
    read_vetra_limits(pan, start, end);  // in counts
  }
  return 0;
}

std::int32_t GetTiltLimitPos(std::uint32_t* start, std::uint32_t* end) {
  if (is_tasmere()) {
    read_tasmere_tilt_limits(start, end);
  } else {
    read_vetra_limits(tilt, start, end);
  }
  std::printf("Tilt istart:%d iend:%d \n", static_cast<std::int32_t>(*start),
              static_cast<std::int32_t>(*end));
  return 0;
}
