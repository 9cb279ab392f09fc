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

void Stepper::fit(std::int32_t end_stop, std::int32_t position) {
  *this = Stepper{};
  end_stop_ = end_stop;
  origin_ = position;
}

void Stepper::connect(Time now, bool connected) {
  halt(now);
  connected_ = connected;
}

void Stepper::push(Time now, std::int32_t counts) {
  const std::int64_t pushed = std::int64_t{place(now)} + counts;
  const std::int64_t driven = connected_ ? made(now) : 0;
  origin_ =
      static_cast<std::int32_t>(std::clamp<std::int64_t>(pushed, -end_stop_, end_stop_) - driven);
}

void Stepper::start(Time now, const Move& move) {
  halt(now);
  move_ = move;
  started_ = now;
  duration_ = time_of(move);
}

void Stepper::halt(Time now) {
  driven_before_ = driven(now);
  origin_ = place(now);
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

std::int32_t Stepper::place(Time now) const {
  const std::int64_t driven = connected_ ? made(now) : 0;
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(origin_ + driven, -end_stop_, end_stop_));
}

std::int32_t Stepper::position(Time now) const { return connected_ ? place(now) : 0; }

std::int32_t Stepper::target(Time now) const {
  return position(std::max(now, started_ + duration_));
}

double Stepper::rate(Time now) const {
  if (!running(now)) return 0;
  constexpr double second = 1e9;
  return second * static_cast<double>(move_.rate.ticks) /
         (static_cast<double>(move_.rate.nanoseconds) * move_.ticks_per_count);
}

std::uint32_t Stepper::driven(Time now) const {
  return driven_before_ + static_cast<std::uint32_t>(made(now));
}

}  // namespace kelvo::sim::camera
