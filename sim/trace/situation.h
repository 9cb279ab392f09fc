// What runs on the lens controller and which family the head is of, as far as the wires tell.
#ifndef KELVO_SIM_TRACE_SITUATION_H
#define KELVO_SIM_TRACE_SITUATION_H

#include <atomic>
#include <cstdint>

#include "sim/trace/event.h"
#include "wire/pan_tilt.h"

namespace kelvo::sim::trace {

/// Any number of processes follow it at once. Memory that is all zeros is one that knows nothing.
class Situation {
 public:
  /// Puts down what is known before an event that is over, and learns from it.
  void follow(Event& event);

 private:
  void learn_from_lens(const Event& event);
  void learn_from_head(const Event& event);

  std::atomic<std::uint8_t> module_ = 0;      // 0: not known
  std::atomic<std::uint8_t> downloaded_ = 0;  // the module whose image came last
  std::atomic<std::int8_t> family_ = 0;       // 0: not known
};

}  // namespace kelvo::sim::trace

#endif
