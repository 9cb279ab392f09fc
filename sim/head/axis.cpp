#include "sim/head/axis.h"

#include <algorithm>
#include <limits>

namespace kelvo::sim::camera {
namespace {

constexpr std::uint64_t endless = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t nanoseconds = 1'000'000'000;

/// Counts in a time, cut to whole ones. The products stay below 2^62: a circle has at most 2^16 counts,
/// a speed at most 2^15 parts, and whole seconds are taken apart.
std::uint64_t counts_in(Time time, std::uint32_t circle, Speed speed) {
  const auto elapsed = static_cast<std::uint64_t>(time.count());
  const std::uint64_t parts = std::uint64_t{circle} * speed.part;                    // in a second
  const std::uint64_t part = std::uint64_t{Axis::seconds_per_circle} * speed.whole;  // of a count
  const std::uint64_t in_seconds = elapsed / nanoseconds * parts;
  const std::uint64_t rest = in_seconds % part * nanoseconds + elapsed % nanoseconds * parts;
  return in_seconds / part + rest / (part * nanoseconds);
}

}  // namespace

void Axis::run(Time now, Way way, Speed speed) { start(now, way, speed, {}); }

void Axis::reach(Time now, Way way, Speed speed, std::uint32_t target) {
  start(now, way, speed, target % circle_);
}

void Axis::halt(Time now) {
  origin_ = position(now);
  distance_ = 0;
}

void Axis::bind(Time now, std::optional<Arc> arc) {
  const bool goes_on = moving(now);
  halt(now);
  arc_ = arc;
  if (goes_on) start(now, way_, speed_, target_);
}

void Axis::start(Time now, Way way, Speed speed, std::optional<std::uint32_t> target) {
  halt(now);
  started_ = now;
  way_ = way;
  speed_ = {std::min(speed.part, speed.whole), speed.whole};
  target_ = target;
  if (target) {
    plan_reach(*target);
  } else {
    plan_run();
  }
}

void Axis::plan_run() {
  distance_ = endless;
  if (!arc_) return;
  const std::uint32_t place = upwards(arc_->start, origin_);
  const std::uint32_t from_below = place > arc_->length ? circle_ : 0;
  distance_ = way_ == Way::down ? place : from_below + arc_->length - place;
}

void Axis::plan_reach(std::uint32_t target) {
  if (!arc_) {
    distance_ = way_ == Way::up ? upwards(origin_, target) : upwards(target, origin_);
    return;
  }
  std::uint32_t goal = upwards(arc_->start, target);
  if (goal > arc_->length) goal = goal - arc_->length < circle_ - goal ? arc_->length : 0;
  const std::uint32_t place = upwards(arc_->start, origin_);
  if (place <= arc_->length) way_ = place <= goal ? Way::up : Way::down;
  const std::uint32_t up = (goal + circle_ - place) % circle_;
  distance_ = way_ == Way::up ? up : (circle_ - up) % circle_;
}

std::uint32_t Axis::upwards(std::uint32_t from, std::uint32_t to) const {
  return (to + circle_ - from) % circle_;
}

std::uint64_t Axis::travelled(Time now) const {
  return std::min(counts_in(now - started_, circle_, speed_), distance_);
}

bool Axis::moving(Time now) const { return speed_.part != 0 && travelled(now) < distance_; }

std::uint32_t Axis::position(Time now) const {
  const auto counts = static_cast<std::uint32_t>(travelled(now) % circle_);
  return (origin_ + (way_ == Way::up ? counts : circle_ - counts)) % circle_;
}

}  // namespace kelvo::sim::camera
