#include "sim/head/axis.h"

#include <algorithm>
#include <cmath>

namespace kelvo::sim::camera {
namespace {

/// Whole counts of a way, cut towards its beginning; so much less than a count is rounding.
double whole_counts(double counts) {
  constexpr double rounding = 1e-9;
  return std::copysign(std::floor(std::abs(counts) + rounding), counts);
}

}  // namespace

void Axis::run(Time now, Way way, Speed speed) { start(now, way, speed, {}); }

void Axis::reach(Time now, Way way, Speed speed, std::uint32_t target) {
  start(now, way, speed, target % circle_);
}

void Axis::halt(Time now) { start(now, way_, {}, {}); }

void Axis::freeze(Time now) {
  arrive(now);
  move_ = {};
  goal_ = origin_;
}

void Axis::push(Time now, std::int32_t counts) {
  const bool goes_on = moving(now);
  const double speed = arrive(now);
  const std::int64_t place = (std::int64_t{origin_} + counts) % circle_;
  origin_ = static_cast<std::uint32_t>(place + circle_) % circle_;
  move_ = {};
  goal_ = origin_;
  if (goes_on) go_on(now, speed);
}

void Axis::bind(Time now, std::optional<Arc> arc) {
  arc_ = arc;
  if (moving(now)) go_on(now, arrive(now));
}

void Axis::start(Time now, Way way, Speed speed, std::optional<std::uint32_t> target) {
  const double speed_now = arrive(now);
  way_ = way;
  speed_ = {std::min(speed.part, speed.whole), speed.whole};
  target_ = target;
  go_on(now, speed_now);
}

double Axis::arrive(Time now) {
  const RampedMove::Covered covered = move_.covered(now - started_);
  origin_ = position(now);
  const bool at_goal = goal_ && !moving(now);
  const double part = part_ + covered.rest;
  part_ = at_goal ? 0 : part - whole_counts(part);
  started_ = now;
  return covered.speed;
}

void Axis::go_on(Time now, double speed) {
  started_ = now;
  goal_.reset();
  RampedMove::Order order;
  order.speed_now = speed;
  order.circle = circle_;
  order.speed = speed_;
  order.room = room(speed);
  order.ramp = ramp_;
  if (speed_.part == 0) {
    move_ = RampedMove::halt(order);
    return;
  }
  const double distance = target_ ? distance_of_reach(*target_) : distance_of_run();
  order.toward = way_ == Way::up ? 1 : -1;
  order.distance = std::max(distance - part_ * order.toward, 0.0);
  move_ = RampedMove(order);
  if (std::isinf(distance)) return;
  const auto counts = static_cast<std::uint32_t>(distance) % circle_;
  goal_ = (origin_ + (way_ == Way::up ? counts : circle_ - counts)) % circle_;
}

double Axis::distance_of_run() const {
  if (!arc_) return RampedMove::endless;
  const std::uint32_t place = upwards(arc_->start, origin_);
  const std::uint32_t from_below = place > arc_->length ? circle_ : 0;
  return way_ == Way::down ? place : from_below + arc_->length - place;
}

double Axis::distance_of_reach(std::uint32_t target) {
  if (!arc_) return way_ == Way::up ? upwards(origin_, target) : upwards(target, origin_);
  std::uint32_t goal = upwards(arc_->start, target);
  if (goal > arc_->length) goal = goal - arc_->length < circle_ - goal ? arc_->length : 0;
  const std::uint32_t place = upwards(arc_->start, origin_);
  if (place <= arc_->length) way_ = place <= goal ? Way::up : Way::down;
  const std::uint32_t up = (goal + circle_ - place) % circle_;
  return way_ == Way::up ? up : (circle_ - up) % circle_;
}

/// Up to the end of the arc that it moves towards.
double Axis::room(double speed) const {
  if (!arc_ || speed == 0) return RampedMove::endless;
  const std::uint32_t place = upwards(arc_->start, origin_);
  if (place > arc_->length) return RampedMove::endless;
  return speed > 0 ? arc_->length - place : place;
}

std::uint32_t Axis::upwards(std::uint32_t from, std::uint32_t to) const {
  return (to + circle_ - from) % circle_;
}

std::uint32_t Axis::position(Time now) const {
  if (goal_ && !moving(now)) return *goal_;
  const RampedMove::Covered covered = move_.covered(now - started_);
  const auto counts = covered.whole + static_cast<std::int64_t>(whole_counts(part_ + covered.rest));
  const std::int64_t circle = circle_;
  return static_cast<std::uint32_t>(((origin_ + counts) % circle + circle) % circle);
}

}  // namespace kelvo::sim::camera
