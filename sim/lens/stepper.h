#ifndef KELVO_SIM_LENS_STEPPER_H
#define KELVO_SIM_LENS_STEPPER_H

#include <cstdint>

#include "sim/common/clock.h"
#include "wire/motor_channels.h"

namespace kelvo::sim::camera {

/// A step rate, exactly: so many ticks in so many nanoseconds. No ticks or no time is standstill.
struct TickRate {
  std::uint64_t ticks = 0;
  std::uint64_t nanoseconds = 0;

  bool moves() const { return ticks != 0 && nanoseconds != 0; }
};

/// Ticks of the step clock as a step-period word means them: clock * 2^range / period.
constexpr TickRate step_rate(unsigned range, unsigned period) {
  constexpr std::int64_t second_in_millionths = 1'000'000'000'000'000;  // of a nanosecond
  constexpr std::int64_t tick = second_in_millionths / wire::step_clock_millionths;
  static_assert(tick * wire::step_clock_millionths == second_in_millionths);
  return {std::uint64_t{1} << range, static_cast<std::uint64_t>(tick) * period};
}

enum class Direction : std::uint8_t { forward, backward };

struct Move {
  Direction direction = Direction::forward;
  std::uint32_t counts = 0;  // at most 20 bits
  std::uint32_t ticks_per_count = 1;
  TickRate rate;
};

/// One stepping motor. Its position is computed from the clock when somebody asks: the k-th tick of a
/// move comes k periods after its start. A count that a halt cuts short is not made.
class Stepper {
 public:
  /// Another motor takes this one's place, with an end stop so many counts from the middle of its travel on
  /// either side; position 0 is the middle. Without travel there is no motor.
  void fit(std::int32_t end_stop, std::int32_t position = 0);
  /// Whether the motor is at the output that drives it. One that is not stays where it is, and nobody sees
  /// it: the position is 0.
  void connect(Time now, bool connected);
  /// Somebody turns it by so many counts, up to the end stops, whatever it does.
  void push(Time now, std::int32_t counts);

  /// Whether there is a motor.
  bool present() const { return end_stop_ != 0; }

  void start(Time now, const Move& move);
  void halt(Time now);

  bool running(Time now) const { return now - started_ < duration_; }
  std::int32_t position(Time now) const;
  /// Where the move that is going on ends; without one, where it stands.
  std::int32_t target(Time now) const;
  /// Counts a second; 0 at rest.
  double rate(Time now) const;
  /// Counts that have been driven, forward less backward, whether or not the motor could follow.
  std::uint32_t driven(Time now) const;

 private:
  std::int64_t made(Time now) const;
  std::int32_t place(Time now) const;

  std::int32_t end_stop_ = 0;
  std::int32_t origin_ = 0;  // position at the start of the move
  bool connected_ = true;
  std::uint32_t driven_before_ = 0;  // by earlier moves
  Time started_{};
  Time duration_{};  // from the start to the last tick
  Move move_;
};

}  // namespace kelvo::sim::camera

#endif
