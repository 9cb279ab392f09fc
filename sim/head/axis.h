#ifndef KELVO_SIM_HEAD_AXIS_H
#define KELVO_SIM_HEAD_AXIS_H

#include <cstdint>
#include <optional>

#include "sim/common/clock.h"
#include "sim/head/ramped_move.h"

namespace kelvo::sim::camera {

/// Which way the counts of an axis run.
enum class Way : std::uint8_t { up, down };

/// A part of the circle: from one count upwards.
struct Arc {
  std::uint32_t start = 0;
  std::uint32_t length = 0;
};

/// One axis of the head: a circle of counts. Its position is computed from the clock when somebody
/// asks. It speeds up and slows down by its ramp; one that cannot come to rest at its target brakes, turns
/// and comes back.
///
/// A bound axis does not leave its arc: at an end it brakes as hard as it must. A target outside is replaced
/// by the nearer end, and inside there is one way to a target, whatever way was asked for. An axis outside
/// may come in.
class Axis {
 public:
  /// Time for the whole circle at full speed: an assumption, the controllers' own is not known.
  static constexpr std::uint32_t seconds_per_circle = 2;

  /// A circle of at most 2^16 counts.
  Axis(std::uint32_t circle, std::uint32_t position) : circle_(circle), origin_(position) {}

  /// For the moves that are told from now on.
  void set_ramp(const Ramp& ramp) { ramp_ = ramp; }

  /// Moves until something else is asked for, or to the end of the arc.
  void run(Time now, Way way, Speed speed);
  /// Moves to a count.
  void reach(Time now, Way way, Speed speed, std::uint32_t target);
  /// Comes to rest.
  void halt(Time now);
  /// Stands still at once.
  void freeze(Time now);
  /// Somebody turns it by so many counts. A move to a count still ends there.
  void push(Time now, std::int32_t counts);
  /// Binds the axis to an arc or frees it; a move that is going on keeps to it.
  void bind(Time now, std::optional<Arc> arc);

  bool bound() const { return arc_.has_value(); }
  bool moving(Time now) const { return !move_.over(now - started_); }
  std::uint32_t position(Time now) const;
  /// The count at which its move ends; nothing while it goes on until something else is asked for.
  std::optional<std::uint32_t> goal() const { return goal_; }
  /// Counts a second, upwards positive.
  double speed(Time now) const { return move_.covered(now - started_).speed; }

 private:
  void start(Time now, Way way, Speed speed, std::optional<std::uint32_t> target);
  /// Makes the place that it has come to the origin; the speed that it has there.
  double arrive(Time now);
  void go_on(Time now, double speed);
  double distance_of_run() const;
  double distance_of_reach(std::uint32_t target);
  double room(double speed) const;
  /// Counts that lie from one up to another.
  std::uint32_t upwards(std::uint32_t from, std::uint32_t to) const;

  std::uint32_t circle_;
  std::uint32_t origin_;  // position at the start of the move
  double part_ = 0;       // of a count that it was beyond that
  Ramp ramp_;
  RampedMove move_;
  Time started_{};
  Way way_ = Way::up;
  Speed speed_;
  std::optional<std::uint32_t> target_;
  std::optional<std::uint32_t> goal_;  // where the move ends
  std::optional<Arc> arc_;
};

}  // namespace kelvo::sim::camera

#endif
