#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <span>

#include "kelvo/pantilt.h"
#include "pantilt/controller/axis.h"
#include "pantilt/controller/block.h"
#include "wire/pan_tilt_registers.h"

namespace {

using kelvo::pantilt::Axis;
using kelvo::pantilt::bytes;
using kelvo::pantilt::is_tasmere;
using kelvo::pantilt::pan;
using kelvo::pantilt::tilt;
using kelvo::pantilt::Write;
using namespace kelvo::wire::tasmere;

/// One-time set-up of a Tasmere controller, in groups.
struct SetUpGroup {
  const char* line;  // printed before the group, or null
  std::span<const Write> writes;
  unsigned rest = 0;  // seconds slept afterwards
};

// Where the two axes differ is deliberate: pan turns for ever and uses its Hall sensor.
constexpr Write turbo_on[] = {{turbo, bytes(0x01)}};
constexpr Write pan_hall[] = {{set_use_hall, bytes(0x01)}};
constexpr Write tilt_hall[] = {{set_use_hall, bytes(0x00)}};
constexpr Write stay_awake[] = {{set_power_up_sleep, bytes(0x00)}};
constexpr Write pan_drive[] = {
    {set_p, bytes(0x0A, 0x00)},       {set_i, bytes(0x00, 0x10)},
    {set_d, bytes(0x30, 0x00)},       {drive_8, bytes(0x00, 0x0A)},
    {drive_76, bytes(0x01)},          {drive_67, bytes(0x00)},
    {drive_70, bytes(0x02, 0x66)},    {drive_88, bytes(0x00, 0xF3, 0x33, 0x33)},
    {drive_151, bytes(0x01)},         {drive_149, bytes(0x01, 0x00, 0x01, 0x00)},
    {max_current, bytes(0x02, 0xA0)}, {drive_86, bytes(0x01)},
    {drive_131, bytes(0x01)},
};
constexpr Write tilt_drive[] = {
    {set_p, bytes(0x08, 0x00)},    {set_i, bytes(0x00, 0x01)},
    {set_d, bytes(0x18, 0x00)},    {drive_8, bytes(0x00, 0xC0)},
    {drive_76, bytes(0x01)},       {drive_67, bytes(0x00)},
    {drive_70, bytes(0x02, 0x66)}, {drive_88, bytes(0x00, 0xF3, 0x33, 0x33)},
    {drive_151, bytes(0x01)},      {drive_149, bytes(0x01, 0x00, 0x01, 0x00)},
    {drive_86, bytes(0x01)},       {drive_131, bytes(0x01)},
};
constexpr Write current_limit[] = {
    {max_current, bytes(0x03, 0x80)},
    {current_117, bytes(0x03, 0x00)},
};
constexpr Write pan_travel[] = {{set_travel_mode, bytes(0x00, 0x01)}};
constexpr Write tilt_travel[] = {
    {set_travel_mode, bytes(0x00, 0x00)},
    {set_limit_start, bytes(0x00, 0x00)},
    {set_limit_length, bytes(0x4E, 0x39)},
};
constexpr Write save_all[] = {{save, bytes()}};
constexpr Write restart[] = {{reset, bytes()}};

constexpr SetUpGroup pan_set_up[] = {
    {"Set Turbo", turbo_on},
    {"Set Hall", pan_hall},
    {"Set sleep on power up mode", stay_awake, 1},
    {"Set PID", pan_drive},
    {"Set Max Current 0.5A", current_limit},
    {"Set continuous", pan_travel},
    {"Save to flash", save_all, 1},
    {"Reset Pan", restart, 1},
};
constexpr SetUpGroup tilt_set_up[] = {
    {nullptr, turbo_on},    {nullptr, tilt_hall},     {nullptr, stay_awake, 1},
    {nullptr, tilt_drive},  {nullptr, current_limit}, {nullptr, tilt_travel},
    {nullptr, save_all, 1}, {nullptr, restart, 1},
};

constexpr bool all_fit(std::span<const SetUpGroup> groups) {
  for (const SetUpGroup& group : groups) {
    for (const Write& write : group.writes) {
      if (!kelvo::pantilt::fits(write.reg, write.data)) return false;
    }
  }
  return true;
}
static_assert(all_fit(pan_set_up) && all_fit(tilt_set_up));

std::int32_t set_up(const Axis& axis, std::span<const SetUpGroup> groups) {
  if (!is_tasmere()) return 0;
  for (const SetUpGroup& group : groups) {
    if (group.line != nullptr) std::puts(group.line);
    for (const Write& write : group.writes) kelvo::pantilt::send(axis, write.reg, write.data);
    if (group.rest != 0) sleep(group.rest);
  }
  return 0;
}

}  // namespace

std::int32_t PanInitParam() { return set_up(pan, pan_set_up); }
std::int32_t TiltInitParam() { return set_up(tilt, tilt_set_up); }
