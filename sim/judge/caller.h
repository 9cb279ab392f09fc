#ifndef KELVO_SIM_JUDGE_CALLER_H
#define KELVO_SIM_JUDGE_CALLER_H

#include <cstdint>

namespace kelvo::sim::camera {

/// Who makes a call of the camera, and how he stands to the bus lock. Nothing is held against process 0 but what
/// a frame has in itself: nobody knows who that is.
struct Caller {
  std::int32_t process = 0;
  bool holds_bus_lock = false;   // the thread that calls
  std::int32_t lock_holder = 0;  // the process that has the bus lock, if it lives; 0: none
};

/// Whether a process is no more.
bool gone(std::int32_t process);

}  // namespace kelvo::sim::camera

#endif
