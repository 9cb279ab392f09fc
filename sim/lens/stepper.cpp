#include "sim/lens/stepper.h"

#include <algorithm>

namespace kelvo::sim::camera {
namespace {

/// When the last tick comes. The product stays below 2^57: a move has at most 2^23 ticks, and a rate
/// spans at most 2^34 ns.
Time time_of(const Move& move) {
  if (!move.rate.moves()) return Time::zero();
  const std::uint64_t ticks = std::uint64_t{move.counts} * move.ticks_per_count;
  const std::uint64_t product = ticks * move.rate.nanoseconds;
  const std::uint64_t whole = product / move.rate.ticks;
  return Time(static_cast<Time::rep>(whole + (product % move.rate.ticks != 0 ? 1 : 0)));
}

}  // namespace

void Stepper::fit(std::int32_t end_stop) {
  *this = Stepper{};
  end_stop_ = end_stop;
}

void Stepper::start(Time now, const Move& move) {
  halt(now);
  move_ = move;
  started_ = now;
  duration_ = time_of(move);
}

void Stepper::halt(Time now) {
  driven_before_ = driven(now);
  origin_ = position(now);
  move_ = {};
  duration_ = Time::zero();
}

/// Counts of the move that is under way, or was the last one.
std::int64_t Stepper::made(Time now) const {
  if (!move_.rate.moves()) return 0;
  std::int64_t counts = move_.counts;
  if (running(now)) {
    const auto elapsed = static_cast<std::uint64_t>((now - started_).count());
    const std::uint64_t ticks = elapsed * move_.rate.ticks / move_.rate.nanoseconds;
    counts = static_cast<std::int64_t>(ticks / move_.ticks_per_count);
  }
  return move_.direction == Direction::forward ? counts : -counts;
}

std::int32_t Stepper::position(Time now) const {
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(origin_ + made(now), -end_stop_, end_stop_));
}

std::uint32_t Stepper::driven(Time now) const {
  return driven_before_ + static_cast<std::uint32_t>(made(now));
}

}  // namespace kelvo::sim::camera
