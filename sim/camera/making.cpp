// A camera as it is put together, and its power.
#include "sim/camera/camera.h"

namespace kelvo::sim::camera {

void Camera::fit_module(LensModule module) {
  lens_.fit(module, clock.now(), boots_.current(clock.now()), pt5111_);
}

void Camera::vary(std::uint64_t seed) {
  variety_ = Variety(seed);
  lens_.vary(variety_);
  fit_head(head_.family());
  if (const std::optional<LensModule> module = lens_.lens()) fit_module(*module);
}

void Camera::power_off() {
  if (!powered_) return;
  boots_.cut(lens_summary());
  lens_.lose_power(clock.now(), pt5111_);
  reset_line_ = {};
  head_.lose_power(clock.now());
  powered_ = false;
}

void Camera::power_on() {
  if (powered_) return;
  lens_.release_from_reset();
  head_.power_up(clock.now());
  powered_ = true;
}

/// Whose lens it is that has the PT5111.
std::optional<LensModule> Camera::pt5111_owner() const {
  return lens_.lens() ? lens_.lens() : lens_.module();
}

}  // namespace kelvo::sim::camera
