#include "sim/common/variety.h"

namespace kelvo::sim::camera {
namespace {

/// Spreads every bit of a number over all of the result.
constexpr std::uint64_t scattered(std::uint64_t number) {
  number += 0x9E37'79B9'7F4A'7C15;
  number = (number ^ number >> 30) * 0xBF58'476D'1CE4'E5B9;
  number = (number ^ number >> 27) * 0x94D0'49BB'1331'11EB;
  return number ^ number >> 31;
}

}  // namespace

std::int64_t Variety::drawn(Subject subject, std::size_t number, std::uint64_t draw,
                            std::int64_t most) const {
  if (seed_ == 0 || most <= 0) return 0;
  const std::uint64_t place = static_cast<std::uint64_t>(subject) << 32 | number;
  const std::uint64_t bits = scattered(scattered(scattered(seed_) ^ place) ^ draw);
  return static_cast<std::int64_t>(bits % static_cast<std::uint64_t>(2 * most + 1)) - most;
}

}  // namespace kelvo::sim::camera
