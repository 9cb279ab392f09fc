#ifndef KELVO_SIM_HEAD_AXIS_H
#define KELVO_SIM_HEAD_AXIS_H

#include <cstdint>
#include <optional>

#include "sim/common/clock.h"

namespace kelvo::sim::camera {

/// Which way the counts of an axis run.
enum class Way : std::uint8_t { up, down };

/// A part of full speed.
struct Speed {
  std::uint32_t part = 0;
  std::uint32_t whole = 1;
};

/// A part of the circle: from one count upwards.
struct Arc {
  std::uint32_t start = 0;
  std::uint32_t length = 0;
};

/// One axis of the head: a circle of counts. Its position is computed from the clock when somebody
/// asks. An axis has its speed at once and loses it at once: ramps are not modelled.
///
/// A bound axis does not leave its arc. A target outside is replaced by the nearer end, and inside
/// there is one way to a target, whatever way was asked for. An axis outside may come in.
class Axis {
 public:
  /// Time for the whole circle at full speed: an assumption, the controllers' own is not known.
  static constexpr std::uint32_t seconds_per_circle = 2;

  /// A circle of at most 2^16 counts.
  Axis(std::uint32_t circle, std::uint32_t position) : circle_(circle), origin_(position) {}

  /// Moves until something else is asked for, or to the end of the arc.
  void run(Time now, Way way, Speed speed);
  /// Moves to a count.
  void reach(Time now, Way way, Speed speed, std::uint32_t target);
  void halt(Time now);
  /// Binds the axis to an arc or frees it; a move that is going on keeps to it.
  void bind(Time now, std::optional<Arc> arc);

  bool bound() const { return arc_.has_value(); }
  bool moving(Time now) const;
  std::uint32_t position(Time now) const;

 private:
  void start(Time now, Way way, Speed speed, std::optional<std::uint32_t> target);
  void plan_run();
  void plan_reach(std::uint32_t target);
  /// Counts that lie from one up to another.
  std::uint32_t upwards(std::uint32_t from, std::uint32_t to) const;
  std::uint64_t travelled(Time now) const;

  std::uint32_t circle_;
  std::uint32_t origin_;  // position at the start of the move
  Time started_{};
  Way way_ = Way::up;
  Speed speed_;
  std::optional<std::uint32_t> target_;
  std::uint64_t distance_ = 0;  // counts of the move
  std::optional<Arc> arc_;
};

}  // namespace kelvo::sim::camera

#endif
