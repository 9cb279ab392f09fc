// What cannot be seen in a frame itself: who sends it, when, and what others are doing.
#ifndef KELVO_SIM_JUDGE_JUDGE_H
#define KELVO_SIM_JUDGE_JUDGE_H

#include <optional>

#include "sim/common/exchange.h"
#include "sim/judge/busy_times.h"
#include "sim/judge/caller.h"
#include "sim/judge/sequences.h"
#include "wire/lens_module.h"
#include "wire/pan_tilt.h"

namespace kelvo::sim::camera {

class Judge {
 public:
  /// Who makes the calls that follow.
  void set_caller(const Caller& caller) { caller_ = caller; }

  /// A frame to the lens controller, by the module whose program runs, if one does.
  void lens_frame(Exchange& exchange, std::optional<wire::LensModule> program);
  /// A word on the PT5111's own device.
  void pt5111_word(Exchange& exchange);
  /// A write to a controller of the head, the register first.
  void head_write(Exchange& exchange, wire::HeadFamily family);
  /// The reset line has gone low; and high.
  void reset(Exchange& exchange);
  void released(Time now) { busy_times_.released(now); }
  /// The bus lock has been given back by somebody who had not taken it.
  void foreign_unlock(Exchange& exchange) const;

 private:
  void judge_lock(Exchange& exchange) const;
  void judge_command(Exchange& exchange, wire::LensModule program);

  Caller caller_;
  BusyTimes busy_times_;
  Sequences sequences_;
};

}  // namespace kelvo::sim::camera

#endif
