#ifndef KELVO_SIM_LENS_HEATER_H
#define KELVO_SIM_LENS_HEATER_H

#include <cstdint>

#include "sim/lens/slide.h"

namespace kelvo::sim::camera {

/// The heater, by what the converter's temperature channel sees of it: it warms up and cools down evenly.
class Heater {
 public:
  static constexpr std::int64_t counts_per_level = 2;
  static constexpr std::int64_t counts_per_second = 4;

  void set(Time now, std::uint8_t level) { warmth_.go(now, counts_per_level * level); }
  std::uint16_t warmth(Time now) const { return static_cast<std::uint16_t>(warmth_.value(now)); }

 private:
  Slide warmth_{counts_per_second};
};

}  // namespace kelvo::sim::camera

#endif
