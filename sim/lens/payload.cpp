#include "sim/lens/payload.h"

#include <algorithm>
#include <bit>

namespace kelvo::sim::camera {
namespace {

bool belongs(const CarriedImage& image, const Payload& payload, const Destination& destination) {
  return image.row.memory == destination.memory && image.row.address == destination.address &&
         image.bytes.size() == destination.size && payload.equals(image.bytes);
}

std::uint32_t sum(const Payload& payload) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < payload.sent.size(); ++i) value = std::rotl(value, 3) + payload[i];
  return value;
}

/// The half itself, or the next value that no image has there.
std::uint32_t unlike_any(std::uint32_t half, int shift, CarriedImages images) {
  const auto taken = [&](const CarriedImage& image) {
    return (image.row.checksum >> shift & 0xFFFF) == half;
  };
  while (std::any_of(images.begin(), images.end(), taken)) half = (half + 1) & 0xFFFF;
  return half;
}

}  // namespace

bool Payload::equals(std::span<const std::uint8_t> bytes) const {
  if (bytes.size() != sent.size()) return false;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if ((*this)[i] != bytes[i]) return false;
  }
  return true;
}

ModuleSet owners(const Payload& payload, const Destination& destination, CarriedImages images) {
  ModuleSet modules = 0;
  for (const CarriedImage& image : images) {
    if (belongs(image, payload, destination)) modules |= set_of(image.row.module);
  }
  return modules;
}

std::uint32_t checksum(const Payload& payload, const Destination& destination,
                       CarriedImages images) {
  for (const CarriedImage& image : images) {
    if (belongs(image, payload, destination)) return image.row.checksum;
  }
  const std::uint32_t value = sum(payload);
  return unlike_any(value & 0xFFFF, 0, images) | unlike_any(value >> 16, 16, images) << 16;
}

}  // namespace kelvo::sim::camera
