#ifndef KELVO_SIM_LENS_SLIDE_H
#define KELVO_SIM_LENS_SLIDE_H

#include <algorithm>
#include <cstdint>

#include "sim/common/clock.h"

namespace kelvo::sim::camera {

/// A value that goes evenly from where it is to a goal.
class Slide {
 public:
  explicit constexpr Slide(std::int64_t per_second) : per_second_(per_second) {}

  /// Is there at once.
  void put(std::int64_t value) { from_ = goal_ = value; }
  void go(Time now, std::int64_t goal) {
    from_ = value(now);
    goal_ = goal;
    since_ = now;
  }
  std::int64_t value(Time now) const {
    constexpr std::int64_t longest = 1'000'000;  // milliseconds: no way takes as long
    const std::int64_t gone = std::min(longest, (now - since_) / Time(1'000'000));
    const std::int64_t way = gone * per_second_ / 1000;
    return goal_ > from_ ? std::min(from_ + way, goal_) : std::max(from_ - way, goal_);
  }
  std::int64_t goal() const { return goal_; }

 private:
  std::int64_t per_second_;
  std::int64_t from_ = 0;
  std::int64_t goal_ = 0;
  Time since_{};
};

}  // namespace kelvo::sim::camera

#endif
