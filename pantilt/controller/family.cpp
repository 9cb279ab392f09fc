#include "pantilt/link/family.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>

#include "kelvo/pantilt.h"
#include "pantilt/controller/axis.h"
#include "wire/pan_tilt_registers.h"

std::int32_t giPanFullStep = 3600;
std::int32_t giTiltFullStep = 3600;

namespace {

using kelvo::pantilt::HeadFamily;
using kelvo::pantilt::pan;
using kelvo::pantilt::Reading;
using kelvo::pantilt::tilt;
namespace tasmere = kelvo::wire::tasmere;
namespace vetra = kelvo::wire::vetra;
namespace wire = kelvo::wire;

/// Unlike pan's, the controller is not asked (deliberate).
std::int32_t vetra_tilt_version() {
  giTiltFullStep = wire::vetra_full_step;
  return 0;
}

void detect() {
  constexpr useconds_t pause_us = 2000;
  const Reading signature = kelvo::pantilt::read(pan, vetra::family, 2);
  std::printf("Motor Type[0]:0x%x Type[1]:0x%x\n", signature.bytes[0], signature.bytes[1]);
  // The tilt controller is taken to be of the pan controller's family, and a failed read for a Tasmere.
  if (signature.bytes[0] != wire::vetra_signature[0] ||
      signature.bytes[1] != wire::vetra_signature[1]) {
    giMotorType = static_cast<std::int32_t>(HeadFamily::tasmere);
    return;
  }
  giMotorType = static_cast<std::int32_t>(HeadFamily::vetra);
  usleep(pause_us);
  GetPanVersion();
  vetra_tilt_version();
}

/// Two bytes merged in the same place: the low byte of the result is always 0 (deliberate).
std::int32_t tasmere_version(const kelvo::pantilt::Axis& axis) {
  const Reading version = kelvo::pantilt::read(axis, tasmere::version, 4);
  return version.bytes[3] << 8 | version.bytes[2] << 8;
}

}  // namespace

namespace kelvo::pantilt {

HeadFamily head_family() { return static_cast<HeadFamily>(GetMotorType()); }

}  // namespace kelvo::pantilt

std::int32_t GetMotorType() {
  if (giMotorType == static_cast<std::int32_t>(HeadFamily::unknown)) detect();
  return giMotorType;
}

// Alone with GetPanPos() this one does not ask for the family first.
std::int32_t GetPanVersion() {
  if (giMotorType == static_cast<std::int32_t>(HeadFamily::tasmere)) return tasmere_version(pan);
  const Reading version = kelvo::pantilt::read(pan, vetra::version, 1);
  giPanFullStep = wire::vetra_full_step;
  return version.u8();
}

std::int32_t GetTiltVersion() {
  return kelvo::pantilt::is_tasmere() ? tasmere_version(tilt) : vetra_tilt_version();
}
