#include <cstdint>
#include <cstdio>

#include "kelvo/pantilt.h"
#include "pantilt/controller/axis.h"
#include "pantilt/controller/block.h"
#include "wire/pan_tilt_registers.h"

namespace {

using kelvo::pantilt::Axis;
using kelvo::pantilt::bytes;
using kelvo::pantilt::fits;
using kelvo::pantilt::is_tasmere;
using kelvo::pantilt::pan;
using kelvo::pantilt::Payload;
using kelvo::pantilt::send;
using kelvo::pantilt::tilt;
namespace tasmere = kelvo::wire::tasmere;
namespace vetra = kelvo::wire::vetra;

/// A Tasmere controller has no current to be set but two profiles for each axis.
struct ProfileRow {
  std::uint8_t reg;
  Payload pan_a;
  Payload pan_b;
  Payload tilt_a;
  Payload tilt_b;
};
using Profile = Payload ProfileRow::*;

// clang-format off
constexpr ProfileRow profiles[] = {
    // register          pan A                          pan B                          tilt A                         tilt B
    {tasmere::set_p,       bytes(0x10, 0x00),             bytes(0x08, 0x00),             bytes(0x10, 0x00),             bytes(0x08, 0x00)},
    {tasmere::set_i,       bytes(0x00, 0x01),             bytes(0x00, 0x0B),             bytes(0x00, 0x01),             bytes(0x00, 0x01)},
    {tasmere::set_d,       bytes(0x40, 0x00),             bytes(0x28, 0x00),             bytes(0x40, 0x00),             bytes(0x18, 0x00)},
    {tasmere::drive_8,     bytes(0x00, 0xC0),             bytes(0x00, 0xC0),             bytes(0x00, 0xC0),             bytes(0x00, 0xC0)},
    {tasmere::drive_76,    bytes(0x04),                   bytes(0x01),                   bytes(0x04),                   bytes(0x01)},
    {tasmere::drive_67,    bytes(0x00),                   bytes(0x00),                   bytes(0x00),                   bytes(0x00)},
    {tasmere::drive_70,    bytes(0x01, 0x00),             bytes(0x02, 0x66),             bytes(0x01, 0x00),             bytes(0x02, 0x66)},
    {tasmere::drive_88,    bytes(0x00, 0xF3, 0x33, 0x33), bytes(0x00, 0xF3, 0x33, 0x33), bytes(0x00, 0xF3, 0x33, 0x33), bytes(0x00, 0xF3, 0x33, 0x33)},
    {tasmere::drive_151,   bytes(0x01),                   bytes(0x01),                   bytes(0x01),                   bytes(0x01)},
    {tasmere::drive_149,   bytes(0x01, 0x00, 0x01, 0x00), bytes(0x01, 0x00, 0x01, 0x00), bytes(0x01, 0x00, 0x01, 0x00), bytes(0x01, 0x00, 0x01, 0x00)},
    {tasmere::max_current, bytes(0x07, 0x00),             bytes(0x07, 0x00),             bytes(0x07, 0x00),             bytes(0x03, 0x80)},
    {tasmere::drive_86,    bytes(0x01),                   bytes(0x01),                   bytes(0x01),                   bytes(0x01)},
    {tasmere::drive_131,   bytes(0x01),                   bytes(0x01),                   bytes(0x01),                   bytes(0x01)},
    {tasmere::turbo,       bytes(0x01),                   bytes(0x01),                   bytes(0x01),                   bytes(0x01)},
};
// clang-format on

constexpr bool profiles_fit() {
  for (const ProfileRow& row : profiles) {
    for (const Profile profile :
         {&ProfileRow::pan_a, &ProfileRow::pan_b, &ProfileRow::tilt_a, &ProfileRow::tilt_b}) {
      if (!fits(row.reg, row.*profile)) return false;
    }
  }
  return true;
}
static_assert(profiles_fit());

void send_profile(const Axis& axis, Profile profile) {
  for (const ProfileRow& row : profiles) send(axis, row.reg, row.*profile);
}

constexpr std::uint32_t profile_a = 1;  // anything else is profile B

void send_vetra_current(const Axis& axis, std::uint32_t current) {
  send(axis, vetra::set_current, Payload().u16(current));
}

}  // namespace

std::int32_t SetPanCurrent(std::int32_t current) {
  const auto value = static_cast<std::uint32_t>(current);
  if (is_tasmere()) {
    send_profile(pan, value == profile_a ? &ProfileRow::pan_a : &ProfileRow::pan_b);
  } else {
    std::printf("Current :%d\n", current);  // tilt prints nothing (deliberate)
    send_vetra_current(pan, value);
  }
  return 0;
}

std::int32_t SetTILTCurrent(std::uint32_t current) {
  if (is_tasmere()) {
    send_profile(tilt, current == profile_a ? &ProfileRow::tilt_a : &ProfileRow::tilt_b);
  } else {
    send_vetra_current(tilt, current);
  }
  return 0;
}
