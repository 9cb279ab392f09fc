#ifndef KELVO_SIM_LENS_CARRIED_IMAGE_H
#define KELVO_SIM_LENS_CARRIED_IMAGE_H

#include <cstdint>
#include <span>

#include "wire/program_images.h"

namespace kelvo::sim::camera {

/// A program image as the library carries it. The bytes are no part of a camera's state: they are
/// handed to it with each transfer.
struct CarriedImage {
  wire::ProgramImage row;
  std::span<const std::uint8_t> bytes;
};
using CarriedImages = std::span<const CarriedImage>;

/// The lens modules as a set, one bit each.
using ModuleSet = std::uint8_t;

constexpr ModuleSet set_of(wire::LensModule module) {
  return static_cast<ModuleSet>(
      1U << (static_cast<unsigned>(module) - static_cast<unsigned>(wire::LensModule::de015)));
}

}  // namespace kelvo::sim::camera

#endif
