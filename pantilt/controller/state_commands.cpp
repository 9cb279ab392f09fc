#include <cstdint>

#include "kelvo/pantilt.h"
#include "pantilt/controller/axis.h"
#include "wire/pan_tilt_registers.h"

namespace {

using kelvo::pantilt::Axis;
using kelvo::pantilt::is_tasmere;
using kelvo::pantilt::pan;
using kelvo::pantilt::Payload;
using kelvo::pantilt::send;
using kelvo::pantilt::tilt;
namespace tasmere = kelvo::wire::tasmere;
namespace vetra = kelvo::wire::vetra;

std::int32_t reset(const Axis& axis) {
  send(axis, is_tasmere() ? tasmere::reset : vetra::reset);
  return 0;
}

std::int32_t stop_axis(const Axis& axis) {
  if (is_tasmere()) {
    send(axis, tasmere::continuous_move, Payload().u16(0));
  } else {
    send(axis, vetra::stop);
  }
  return 0;
}

/// The empty message wakes the controller up. A success is 1, so that it too reads as -1 (deliberate).
std::int32_t wake_up(const Axis& axis) {
  if (!is_tasmere()) return 0;
  return SendI2C(axis.slave, tasmere::wake_up, nullptr, 0) == 0 ? 0 : -1;
}

std::int32_t set_turbo(const Axis& axis, std::int32_t on) {
  if (is_tasmere()) send(axis, tasmere::turbo, Payload().u8(on != 0 ? 1 : 0));
  return 0;
}

}  // namespace

std::int32_t PanReset() { return reset(pan); }
std::int32_t TiltReset() { return reset(tilt); }

std::int32_t PanStop() { return stop_axis(pan); }
std::int32_t TiltStop() { return stop_axis(tilt); }

std::int32_t SetPanWakeUp() { return wake_up(pan); }
std::int32_t SetTiltWakeUp() { return wake_up(tilt); }

std::int32_t PanTurboMode(std::int32_t on) { return set_turbo(pan, on); }
std::int32_t TiltTurboMode(std::int32_t on) { return set_turbo(tilt, on); }
