#include "pantilt/controller/position_scale.h"

#include "kelvo/pantilt.h"
#include "pantilt/controller/axis.h"
#include "pantilt/controller/saturate.h"
#include "wire/pan_tilt_registers.h"

namespace kelvo::pantilt {
namespace {

/// The mixture of single and double precision is the controllers': it decides the last count.
std::int32_t reversed_count(float pos, std::int32_t full_step) {
  const auto range = static_cast<float>(full_step);
  const float product = pos * range;
  const auto from_end = static_cast<float>(static_cast<double>(product) / full_scale - 0.5);
  return saturate<std::int32_t>(static_cast<double>(range - from_end));
}

}  // namespace

std::int32_t pan_count(float pos) { return reversed_count(pos, *pan.full_step); }

}  // namespace kelvo::pantilt

using kelvo::pantilt::saturate;
namespace pantilt = kelvo::pantilt;
namespace wire = kelvo::wire;

std::uint32_t Vetra2Tasmere(std::uint32_t count) {
  const auto range = static_cast<std::uint32_t>(*pantilt::tilt.full_step);
  std::uint32_t from_zero = count - static_cast<std::uint32_t>(wire::vetra_tilt_offset);
  if (static_cast<std::int32_t>(from_zero) < 0) from_zero += range;
  const auto from_end = static_cast<float>(static_cast<std::int32_t>(range - from_zero));
  return saturate<std::uint32_t>(static_cast<double>(from_end) * pantilt::full_scale /
                                 static_cast<double>(range));
}

std::int32_t Tasmere2Vetra(std::int32_t pos) {
  const std::int32_t range = *pantilt::tilt.full_step;
  const std::int32_t count =
      pantilt::reversed_count(static_cast<float>(pos), range) + wire::vetra_tilt_offset;
  return range > count ? count : count - range;
}
