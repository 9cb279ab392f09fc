#ifndef KELVO_SIM_COMMON_CLOCK_H
#define KELVO_SIM_COMMON_CLOCK_H

#include <algorithm>
#include <chrono>

namespace kelvo::sim::camera {

/// Simulated time since the camera was made.
using Time = std::chrono::nanoseconds;

/// The camera's clock never goes back.
class Clock {
 public:
  Time now() const { return now_; }
  void advance(Time by) { now_ += std::max(by, Time::zero()); }
  void reach(Time time) { now_ = std::max(now_, time); }

 private:
  Time now_{};
};

}  // namespace kelvo::sim::camera

#endif
