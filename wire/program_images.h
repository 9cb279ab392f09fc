#ifndef KELVO_WIRE_PROGRAM_IMAGES_H
#define KELVO_WIRE_PROGRAM_IMAGES_H

#include <array>
#include <cstdint>

#include "wire/lens_module.h"

namespace kelvo::wire {

/// Where one program image belongs, and how the boot loader vouches for it.
struct ProgramImage {
  const char* symbol;
  LensModule module;
  std::uint8_t memory;
  std::uint32_t address;  // 24 bits
  std::int32_t size;      // bytes
  std::uint32_t checksum;
};

inline constexpr std::size_t images_per_module = 3;

inline constexpr std::array program_images{
#define KELVO_IMAGE(symbol, file, size, module, memory, address, checksum) \
  ProgramImage{#symbol, LensModule::module, memory, address, size, checksum},
#include "wire/program_images.inc"
#undef KELVO_IMAGE
};
static_assert(program_images.size() == 9);

}  // namespace kelvo::wire

#endif
