#ifndef KELVO_SIM_COMMON_VARIETY_H
#define KELVO_SIM_COMMON_VARIETY_H

#include <cstdint>

#include "sim/common/clock.h"

namespace kelvo::sim::camera {

/// What differs from camera to camera, or from one measurement to the next.
enum class Subject : std::uint8_t {
  motor,
  filter,
  axis,
  converter,
  interrupter,
  hall,
  gyro,
  temperature
};

/// The variety of cameras, by a seed: the same seed gives the same camera, and with the same moments the
/// same noise. Seed 0 has neither: all stands in the middle, and measured values are exact.
class Variety {
 public:
  Variety() = default;
  explicit Variety(std::uint64_t seed) : seed_(seed) {}

  std::uint64_t seed() const { return seed_; }
  /// From -most to most, one of a subject's by its number: what stays.
  std::int64_t around(Subject subject, std::size_t number, std::int64_t most) const {
    return drawn(subject, number, 0, most);
  }
  /// The same, another one in each millisecond: noise.
  std::int64_t noise(Subject subject, std::size_t number, Time now, std::int64_t most) const {
    return drawn(subject, number, 1 + static_cast<std::uint64_t>(now / Time(1'000'000)), most);
  }

 private:
  std::int64_t drawn(Subject subject, std::size_t number, std::uint64_t draw,
                     std::int64_t most) const;

  std::uint64_t seed_ = 0;
};

/// A measured 16-bit value with its noise.
constexpr std::uint16_t noisy(std::uint16_t value, std::int64_t noise) {
  const std::int64_t sum = value + noise;
  return static_cast<std::uint16_t>(sum < 0 ? 0 : sum > 0xFFFF ? 0xFFFF : sum);
}

}  // namespace kelvo::sim::camera

#endif
