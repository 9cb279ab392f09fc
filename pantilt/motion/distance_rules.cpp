#include "pantilt/motion/distance_rules.h"

#include <cmath>

#include "pantilt/controller/saturate.h"

namespace kelvo::pantilt {
namespace {

std::int32_t falling(double gain, double slope, std::int32_t distance) {
  return saturate<std::int32_t>(std::fma(-slope, static_cast<double>(distance), gain));
}

}  // namespace

std::int32_t far_pan_gain(std::int32_t distance) { return falling(27.0, 0.001, distance); }
std::int32_t near_pan_gain(std::int32_t distance) { return falling(36.0, 0.01, distance); }
std::int32_t near_tilt_gain(std::int32_t distance) { return falling(35.0, 0.02, distance); }

}  // namespace kelvo::pantilt
