#include "sim/head/ramped_move.h"

#include <algorithm>
#include <cmath>

#include "sim/head/axis.h"

namespace kelvo::sim::camera {
namespace {

constexpr std::uint64_t nanoseconds = 1'000'000'000;

double counts_per_second(std::uint32_t circle, Speed speed) {
  return static_cast<double>(std::uint64_t{circle} * speed.part) /
         static_cast<double>(std::uint64_t{Axis::seconds_per_circle} * speed.whole);
}

/// Counts in a time at an even speed. The products stay below 2^62: a circle has at most 2^16 counts, a
/// speed at most 2^15 parts, and whole seconds are taken apart.
RampedMove::Covered counts_in(Time time, std::uint32_t circle, Speed speed) {
  const auto elapsed = static_cast<std::uint64_t>(time.count());
  const std::uint64_t parts = std::uint64_t{circle} * speed.part;                    // in a second
  const std::uint64_t part = std::uint64_t{Axis::seconds_per_circle} * speed.whole;  // of a count
  const std::uint64_t in_seconds = elapsed / nanoseconds * parts;
  const std::uint64_t rest = in_seconds % part * nanoseconds + elapsed % nanoseconds * parts;
  return {
      static_cast<std::int64_t>(in_seconds / part + rest / (part * nanoseconds)),
      static_cast<double>(rest % (part * nanoseconds)) / static_cast<double>(part * nanoseconds)};
}

/// The way to rest. Where there is less room, the axis brakes harder.
double braking_way(double speed, double room, const Ramp& ramp) {
  return std::min(speed * speed / (2 * ramp.down), room);
}

}  // namespace

RampedMove::RampedMove(const Order& order) : circle_(order.circle), speed_(order.speed) {
  const double along = order.speed_now * order.toward;
  const double way = braking_way(along, order.room, order.ramp);
  if (along >= 0 && way <= order.distance) {
    go(order, along, order.distance);
    return;
  }
  // It must turn: because it comes from there, or because it cannot come to rest so soon.
  brake(order.speed_now, way);
  Order rest = order;
  rest.toward = along < 0 ? order.toward : -order.toward;
  go(rest, 0, along < 0 ? order.distance + way : way - order.distance);
}

RampedMove RampedMove::halt(const Order& order) {
  RampedMove move;
  move.brake(order.speed_now, braking_way(order.speed_now, order.room, order.ramp));
  return move;
}

void RampedMove::brake(double speed, double way) {
  if (speed == 0 || way <= 0) return;
  const double seconds = 2 * way / std::abs(speed);
  add(seconds, speed, -speed / seconds);
}

void RampedMove::go(const Order& order, double speed, double distance) {
  if (distance <= 0) return;
  const Ramp& ramp = order.ramp;
  double top = counts_per_second(order.circle, order.speed);
  double rise = speed > top ? ramp.down : ramp.up;
  const auto way = [&](double from, double to, double gain) {
    return std::abs(to * to - from * from) / (2 * gain);
  };
  if (way(speed, 0, ramp.down) >= distance) {
    brake(speed * order.toward, distance);
    return;
  }
  const bool too_short = way(speed, top, rise) + way(top, 0, ramp.down) > distance;
  if (too_short) {
    top = std::sqrt((2 * distance * ramp.up * ramp.down + speed * speed * ramp.down) /
                    (ramp.up + ramp.down));
    rise = ramp.up;
  }
  add(std::abs(top - speed) / rise, speed * order.toward,
      (top > speed ? rise : -rise) * order.toward);
  if (!too_short) {
    cruise(order, distance - way(speed, top, rise) - way(top, 0, ramp.down));
  }
  if (!endless_) add(top / ramp.down, top * order.toward, -ramp.down * order.toward);
}

void RampedMove::cruise(const Order& order, double distance) {
  const double speed = counts_per_second(order.circle, order.speed);
  cruise_ = count_;
  cruises_ = true;
  toward_ = order.toward;
  endless_ = std::isinf(distance);
  if (endless_) {
    phases_[count_++] = {Time::max(), place_, speed * order.toward, 0};
    return;
  }
  add(distance / speed, speed * order.toward, 0);
  cruises_ = count_ > cruise_;
}

/// Ends with a whole nanosecond; the next one begins where this one would exactly.
void RampedMove::add(double seconds, double speed, double gain) {
  constexpr double rounding = 1e-3;  // of a nanosecond
  const double length = std::ceil(seconds * static_cast<double>(nanoseconds) - rounding);
  if (length > 0) {
    ends_ += Time(static_cast<Time::rep>(length));
    phases_[count_++] = {ends_, place_, speed, gain};
  }
  place_ += speed * seconds + gain * seconds * seconds / 2;
}

RampedMove::Covered RampedMove::covered(Time since) const {
  for (std::size_t i = 0; i < count_; ++i) {
    const Time begins = i == 0 ? Time::zero() : phases_[i - 1].ends;
    if (since < phases_[i].ends) return covered_in(phases_[i], since - begins);
  }
  return {0, place_, 0};
}

RampedMove::Covered RampedMove::covered_in(const Phase& phase, Time time) const {
  const double seconds = static_cast<double>(time.count()) / static_cast<double>(nanoseconds);
  if (cruises_ && &phase == &phases_[cruise_]) {
    const Covered even = counts_in(time, circle_, speed_);
    const auto toward = static_cast<double>(toward_);
    return {even.whole * toward_, phase.place + even.rest * toward, phase.speed};
  }
  return {0, phase.place + phase.speed * seconds + phase.gain * seconds * seconds / 2,
          phase.speed + phase.gain * seconds};
}

}  // namespace kelvo::sim::camera
