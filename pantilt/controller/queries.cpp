#include <cstdint>

#include "kelvo/pantilt.h"
#include "pantilt/controller/axis.h"
#include "pantilt/controller/hall.h"
#include "pantilt/controller/position_scale.h"
#include "pantilt/controller/saturate.h"
#include "pantilt/link/family.h"
#include "wire/pan_tilt_registers.h"

std::int32_t giSerTiltUseHall = -1;

namespace {

using kelvo::pantilt::Axis;
using kelvo::pantilt::HeadFamily;
using kelvo::pantilt::is_tasmere;
using kelvo::pantilt::pan;
using kelvo::pantilt::read;
using kelvo::pantilt::Reading;
using kelvo::pantilt::tilt;
namespace tasmere = kelvo::wire::tasmere;
namespace vetra = kelvo::wire::vetra;

std::int32_t zero_if(bool good) { return good ? 0 : -1; }

std::int32_t calibration_status(const Axis& axis) {
  constexpr std::uint8_t state_bits = 3;
  constexpr std::uint8_t calibrated = 2;
  if (is_tasmere()) return zero_if(read(axis, tasmere::calibration, 1).u8() == 1);
  return zero_if((read(axis, vetra::status, 1).u8() & state_bits) == calibrated);
}

/// A byte that only the Tasmere has, or -1 when it could not be read.
std::int32_t tasmere_byte(const Axis& axis, std::uint8_t reg) {
  if (!is_tasmere()) return 0;
  const Reading reading = read(axis, reg, 1);
  return reading.status == 0 ? reading.u8() : -1;
}

/// Asleep, and not to be asked, counts as at rest.
std::int32_t run_status(const Axis& axis) {
  constexpr std::uint8_t at_rest = 4;
  if (!is_tasmere()) return zero_if((read(axis, vetra::status, 1).u8() & at_rest) != 0);
  if (tasmere_byte(axis, tasmere::sleep_mode) != 0) return 0;
  return zero_if(read(axis, tasmere::run_status, 1).u8() == 0);
}

std::int32_t temperature(const Axis& axis) {
  if (!is_tasmere()) return 0;
  return static_cast<std::int32_t>(read(axis, tasmere::temperature, 2).u16());
}

/// From the zero of the Hall sensor to the common one; wraps modulo 65535 (deliberate).
std::uint32_t from_hall_zero(std::uint32_t raw) {
  constexpr std::uint32_t offset = kelvo::wire::tilt_hall_offset;
  return raw >= offset ? raw - offset : raw + (kelvo::pantilt::full_scale - offset);
}

}  // namespace

// The family is taken as it stands: before it is known the position is a Vetra's, of 3600 counts.
std::int32_t GetPanPos(std::uint32_t* pos) {
  if (giMotorType == static_cast<std::int32_t>(HeadFamily::tasmere)) {
    *pos = read(pan, tasmere::position, 2).u16();
    return 0;
  }
  const auto raw = static_cast<std::int32_t>(read(pan, vetra::position, 2).u16());
  const std::int32_t range = *pan.full_step;
  const auto from_end = static_cast<float>(range - raw);
  *pos = kelvo::pantilt::saturate<std::uint32_t>(
      static_cast<double>(from_end) * kelvo::pantilt::full_scale / range + 0.5);
  return 0;
}

std::int32_t GetTiltPos(std::uint32_t* pos) {
  if (!is_tasmere()) {
    *pos = Vetra2Tasmere(read(tilt, vetra::position, 2).u16());
    return 0;
  }
  kelvo::pantilt::tilt_uses_hall();
  const std::uint32_t raw = read(tilt, tasmere::position, 2).u16();
  // Here, unlike elsewhere, only a 1 counts as Hall use (deliberate).
  *pos = giSerTiltUseHall == 1 ? from_hall_zero(raw) : raw;
  return 0;
}

std::int32_t PanGetCaliStatus() { return calibration_status(pan); }
std::int32_t TiltGetCaliStatus() { return calibration_status(tilt); }

std::int32_t GetPanHallSetting() {
  if (!is_tasmere()) return 0;
  return read(pan, tasmere::use_hall, 1).u8() == 1 ? 1 : 0;
}

std::int32_t GetTiltHallSetting() {
  if (!is_tasmere()) return 1;  // pan answers 0 (deliberate)
  giSerTiltUseHall = read(tilt, tasmere::use_hall, 1).u8();
  return giSerTiltUseHall == 1 ? 1 : 0;
}

std::int32_t GetPanStatus() { return run_status(pan); }
std::int32_t GetTiltStatus() { return run_status(tilt); }

std::int32_t GetPanSleepMode() { return tasmere_byte(pan, tasmere::sleep_mode); }
std::int32_t GetTiltSleepMode() { return tasmere_byte(tilt, tasmere::sleep_mode); }

std::int32_t GetPanProgState() { return tasmere_byte(pan, tasmere::program_state); }
std::int32_t GetTiltProgState() { return tasmere_byte(tilt, tasmere::program_state); }

std::int32_t GetPanTemp() { return temperature(pan); }
std::int32_t GetTiltTemp() { return temperature(tilt); }
