// Ctrl-C and its like wait: no library call ends half-way, and no wait for the bus lock is cut short,
// which would let a transfer go unlocked. Who waits for something asks whether one has come.
#ifndef KELVO_TOOLS_KELVOCTL_COMMON_SIGNALS_H
#define KELVO_TOOLS_KELVOCTL_COMMON_SIGNALS_H

#include <chrono>
#include <string>

#include "tools/kelvoctl/common/exit_code.h"

namespace kelvo::ctl {

/// Somebody wants the command to end.
class Interrupted : public Failure {
 public:
  explicit Interrupted(const std::string& line) : Failure(ExitCode::interrupted, line) {}
};

/// From now on SIGINT, SIGTERM and SIGHUP are held back, in forked processes too.
void hold_signals();

/// Whether one has been held back. It counts once.
bool take_signal();

/// Throws Interrupted if one has been held back.
void end_if_interrupted();

/// Waits so long by real time, whatever clock the camera has, or until a signal comes: true. It is used up.
bool wait_for_signal(std::chrono::microseconds time);

/// Waits until a descriptor can be read or has ended: true. False: a signal came first, which is used
/// up.
bool wait_for_input(int descriptor);

/// The same for whichever of two comes first; `other` stays as it is.
bool wait_for_input(int descriptor, int other);

/// The signal by which wait_for_input() ended last.
int last_signal();

}  // namespace kelvo::ctl

#endif
