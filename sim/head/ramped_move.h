#ifndef KELVO_SIM_HEAD_RAMPED_MOVE_H
#define KELVO_SIM_HEAD_RAMPED_MOVE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "sim/common/clock.h"

namespace kelvo::sim::camera {

/// A part of full speed.
struct Speed {
  std::uint32_t part = 0;
  std::uint32_t whole = 1;
};

/// How fast a speed grows and falls, in counts per second, each second.
struct Ramp {
  static constexpr double at_once = 1e18;

  double up = at_once;
  double down = at_once;
};

/// The way of an axis from one command to the next, along a line of counts that begins where it is: at first
/// it brakes, if it must turn or is too fast, then it has its speed, then it comes to rest. Closed form: up to
/// four phases, each of an even acceleration.
class RampedMove {
 public:
  static constexpr double endless = std::numeric_limits<double>::infinity();

  /// Where an axis must go: so far in the direction of `toward`, which is 1 or -1.
  struct Order {
    double speed_now = 0;  // counts per second; upwards is positive
    int toward = 1;
    std::uint32_t circle = 1;
    Speed speed;
    double distance = endless;
    double room = endless;  // as it moves now, up to a place that must not be passed
    Ramp ramp;
  };

  /// How far it has come: whole counts and the rest, both signed, and how fast it is.
  struct Covered {
    std::int64_t whole = 0;
    double rest = 0;
    double speed = 0;
  };

  RampedMove() = default;
  explicit RampedMove(const Order& order);
  /// Comes to rest, before the room is at its end.
  static RampedMove halt(const Order& order);

  bool over(Time since) const { return !endless_ && since >= ends_; }
  Covered covered(Time since) const;

 private:
  struct Phase {
    Time ends{};
    double place = 0;  // at its beginning
    double speed = 0;
    double gain = 0;
  };

  void brake(double speed, double way);
  void go(const Order& order, double speed, double distance);
  void add(double seconds, double speed, double gain);
  void cruise(const Order& order, double distance);
  Covered covered_in(const Phase& phase, Time time) const;

  std::array<Phase, 4> phases_{};
  std::size_t count_ = 0;
  bool endless_ = false;
  Time ends_{};
  double place_ = 0;  // at its end
  // The phase at an even speed is counted without any rounding.
  std::size_t cruise_ = 0;
  bool cruises_ = false;
  std::int64_t toward_ = 1;
  std::uint32_t circle_ = 1;
  Speed speed_;
};

}  // namespace kelvo::sim::camera

#endif
