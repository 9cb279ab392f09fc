#ifndef KELVO_SIM_JUDGE_BUSY_TIMES_H
#define KELVO_SIM_JUDGE_BUSY_TIMES_H

#include <cstdint>

#include "sim/common/exchange.h"

namespace kelvo::sim::camera {

/// When the lens controller can be addressed again. While it is busy it hears what comes all the same, and
/// it is held against the program.
class BusyTimes {
 public:
  /// A frame that is over.
  void judge(Exchange& exchange);
  /// The reset line has gone high.
  void released(Time now);

 private:
  void keep_busy(Time now, std::uint8_t row);

  Time since_{};
  Time ready_{};
  std::uint8_t row_ = 0;  // why it is busy
};

}  // namespace kelvo::sim::camera

#endif
