#ifndef KELVO_SIM_LENS_PAYLOAD_H
#define KELVO_SIM_LENS_PAYLOAD_H

#include <cstdint>
#include <span>

#include "sim/lens/carried_image.h"

namespace kelvo::sim::camera {

/// The bytes of a download as they arrive: as they were sent, or with one bit of the middle byte
/// flipped on the way.
struct Payload {
  std::span<const std::uint8_t> sent;
  bool corrupt = false;

  std::uint8_t operator[](std::size_t index) const {
    const bool flipped = corrupt && index == sent.size() / 2;
    return static_cast<std::uint8_t>(sent[index] ^ (flipped ? 1U : 0U));
  }
  bool equals(std::span<const std::uint8_t> bytes) const;
};

/// Where a download goes, as it was announced.
struct Destination {
  std::uint8_t memory;
  std::uint32_t address;
  std::uint32_t size;
};

/// The modules whose image this is: bytes, size, address and memory. None: it is not intact.
ModuleSet owners(const Payload& payload, const Destination& destination, CarriedImages images);

/// What the boot loader answers as the checksum: that of the image, for an intact download, else a sum
/// of what came, with both halves different from those of every image.
std::uint32_t checksum(const Payload& payload, const Destination& destination,
                       CarriedImages images);

}  // namespace kelvo::sim::camera

#endif
