#include <unistd.h>

#include <cstdint>

#include "kelvo/bus.h"
#include "kelvo/lens.h"
#include "lens/motors/by_module.h"
#include "lens/motors/motor_state.h"
#include "wire/lens_program.h"
#include "wire/motor_channels.h"

namespace {

using kelvo::lens::ByModule;
using kelvo::lens::Motor;
namespace command = kelvo::wire::command;
namespace motor = kelvo::lens::motor;
namespace wire = kelvo::wire;

using Cut = std::uint32_t (*)();

/// How a module lowers a motor's current, and whether the motor then counts as idle.
struct PowerOff {
  Cut cut = nullptr;
  bool idle = false;
};

template <const wire::MotorChannel& channel, std::int16_t current>
std::uint32_t cut_channel() {
  return reg_wt16_0x0c(channel.current, current);
}

/// The enabled coils are held with less.
std::uint32_t cut_zoom1_block() {
  constexpr useconds_t pause_us = 10'000;
  SendCommand(command::zoom1_enable, 0, 0, 0, 0);
  usleep(pause_us);
  SendCommand(command::zoom1_drive, 0, 0, 0, wire::zoom1_drive_off);
  usleep(pause_us);
  return SendCommand(command::zoom1_enable, 0, 0, 0, 1);
}

std::uint32_t cut_zoom3_block() {
  return SendCommand(command::zoom3_drive, 0, 0, 0, wire::zoom3_drive_off);
}

std::uint32_t cut_pt5111() { return static_cast<std::uint32_t>(PT5111Zoom1OFF()); }

constexpr Cut cut_zoom = cut_channel<wire::zoom_channel, wire::motor_current::off>;
constexpr Cut cut_zoom_df033 = cut_channel<wire::zoom_channel, wire::motor_current::off_df033>;
constexpr Cut cut_focus = cut_channel<wire::focus_channel, wire::motor_current::off>;
constexpr Cut cut_focus_df033 = cut_channel<wire::focus_channel, wire::motor_current::off_df033>;

// Which modules clear the busy bit differs from motor to motor, served or not (deliberate).
// clang-format off
//                                   DE015                    DF033                    T5391              other
constexpr ByModule<PowerOff> zoom1{{cut_zoom1_block, true}, {cut_pt5111,      true}, {cut_zoom,  true}, {nullptr, true}};
constexpr ByModule<PowerOff> zoom2{{cut_zoom,        true}, {cut_zoom_df033,  true}};
constexpr ByModule<PowerOff> zoom3{{nullptr,         true}, {cut_zoom3_block, true}};
constexpr ByModule<PowerOff> focus{{cut_focus,       true}, {cut_focus_df033, true}, {cut_focus, true}};
// clang-format on

std::uint32_t power_off(const Motor& motor, const ByModule<PowerOff>& ways) {
  const PowerOff& way = ways.fitted();
  if (way.idle) motor.mark_idle();
  const std::uint32_t result = way.cut != nullptr ? way.cut() : 0;
  motor.mark_powered_off();
  return result;
}

}  // namespace

std::uint32_t setZoom1PowerOff() { return power_off(motor::zoom1, zoom1); }
std::uint32_t setZoom2PowerOff() { return power_off(motor::zoom2, zoom2); }
std::uint32_t setZoom3PowerOff() { return power_off(motor::zoom3, zoom3); }
std::uint32_t setFocusPowerOff() { return power_off(motor::focus, focus); }

// Part of the interface that never did more.
std::uint32_t setIrisPowerOff(std::uint32_t value) { return value; }
std::uint32_t setICRPowerOff(std::uint32_t value) { return value; }
