#include <cstdint>
#include <cstdio>
#include <cstring>

#include "kelvo/pantilt.h"
#include "pantilt/controller/axis.h"
#include "pantilt/motion/freeze.h"
#include "wire/pan_tilt_registers.h"

std::int32_t giMOTOR_Init_Reg[84] = {};
std::int32_t giPID_Debug_En = 0;

namespace {

using kelvo::pantilt::Axis;
using kelvo::pantilt::head_family;
using kelvo::pantilt::HeadFamily;
using kelvo::pantilt::is_tasmere;
using kelvo::pantilt::pan;
using kelvo::pantilt::Payload;
using kelvo::pantilt::Reading;
using kelvo::pantilt::send;
using kelvo::pantilt::tilt;
namespace tasmere = kelvo::wire::tasmere;
namespace vetra = kelvo::wire::vetra;

Payload pair(std::int16_t a, std::int16_t b) {
  return Payload().u16(static_cast<std::uint16_t>(a)).u16(static_cast<std::uint16_t>(b));
}

std::int32_t send_pair(const Axis& axis, std::uint32_t reg, std::int16_t a, std::int16_t b) {
  if (head_family() == HeadFamily::vetra) send(axis, static_cast<std::uint8_t>(reg), pair(a, b));
  return 0;
}

std::int32_t read_pair(const Axis& axis, std::uint32_t reg, std::uint32_t* a, std::uint32_t* b) {
  if (head_family() != HeadFamily::vetra) return 0;
  const Reading reading = kelvo::pantilt::read(axis, static_cast<std::uint8_t>(reg), 4);
  *a = reading.u16();
  *b = reading.u16(2);
  return 0;
}

std::int32_t send_position_gains(const Axis& axis, std::int16_t p, std::int16_t i) {
  // A Tasmere controller has no position loop of its own.
  if (!is_tasmere()) send(axis, vetra::set_position_gains, pair(p, i));
  return 0;
}

void send_speed_gains(const Axis& axis, std::uint32_t p, std::uint32_t i) {
  send(axis, vetra::set_speed_gains, Payload().u16(p).u16(i));
}

void send_triple(const Axis& axis, std::uint32_t p, std::uint32_t i, std::int16_t d) {
  send(axis, tasmere::set_p, Payload().u16(p));
  send(axis, tasmere::set_i, Payload().u16(i));
  send(axis, tasmere::set_d, Payload().u16(static_cast<std::uint16_t>(d)));
}

/// Whatever the family is (deliberate).
std::int32_t send_ramps(const Axis& axis, std::int32_t acc, std::int32_t dec) {
  send(axis, vetra::set_acceleration, Payload().u32(static_cast<std::uint32_t>(acc)));
  send(axis, vetra::set_deceleration, Payload().u32(static_cast<std::uint32_t>(dec)));
  return 0;
}

}  // namespace

std::int32_t Init_Setup_PID(const std::uint8_t* table) {
  std::memcpy(giMOTOR_Init_Reg, table, sizeof giMOTOR_Init_Reg);
  return 0;
}

std::int32_t Debug_PID_En(std::int32_t on) {
  giPID_Debug_En = on == 1 ? 1 : 0;
  return 0;
}

std::int32_t SetVetraPanPID(std::uint32_t reg, std::int16_t a, std::int16_t b) {
  return send_pair(pan, reg, a, b);
}

std::int32_t SetVetraTiltPID(std::uint32_t reg, std::int16_t a, std::int16_t b) {
  return send_pair(tilt, reg, a, b);
}

std::int32_t GetVetraPanPID(std::uint32_t reg, std::uint32_t* a, std::uint32_t* b) {
  return read_pair(pan, reg, a, b);
}

std::int32_t GetVetraTiltPID(std::uint32_t reg, std::uint32_t* a, std::uint32_t* b) {
  return read_pair(tilt, reg, a, b);
}

std::int32_t PanPosPIDsetup(std::int16_t p, std::int16_t i) {
  return send_position_gains(pan, p, i);
}

std::int32_t TiltPosPIDsetup(std::int16_t p, std::int16_t i) {
  return send_position_gains(tilt, p, i);
}

std::int32_t PanPIDsetup(std::uint32_t p, std::uint32_t i, std::int16_t d) {
  if (is_tasmere()) {
    send_triple(pan, p, i, d);
  } else {
    std::printf("P:0x%x I:0x%x\n", p, i);  // tilt prints nothing (deliberate)
    send_speed_gains(pan, p, i);
  }
  return 0;
}

std::int32_t TiltPIDsetup(std::uint32_t p, std::uint32_t i, std::int16_t d) {
  if (is_tasmere()) {
    send_triple(tilt, p, i, d);
  } else {
    send_speed_gains(tilt, p, i);
  }
  return 0;
}

std::int32_t Pan_AccDec_setup(std::int32_t acc, std::int32_t dec) {
  return send_ramps(pan, acc, dec);
}

std::int32_t Tilt_AccDec_setup(std::int32_t acc, std::int32_t dec) {
  return send_ramps(tilt, acc, dec);
}
