#include "tools/kelvoctl/common/bus_lock.h"

#include <sys/ipc.h>
#include <sys/sem.h>

#include <cerrno>
#include <csignal>

#include "tools/kelvoctl/common/session.h"
#include "tools/kelvoctl/common/signals.h"
#include "wire/paths.h"

namespace kelvo::ctl {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::microseconds look_pause = std::chrono::milliseconds(2);
constexpr std::chrono::microseconds silent = std::chrono::seconds(1);

std::string holder_now() { return ": " + holder_text(bus_lock_set(bus_lock_key())); }

}  // namespace

key_t bus_lock_key() { return ftok(wire::lock_key_path, wire::lock_key_project); }

int bus_lock_set(key_t key) { return semget(key, 0, 0); }

bool bus_lock_taken() {
  // What cannot be looked at the library does not wait for either.
  const int set = bus_lock_set(bus_lock_key());
  return set >= 0 && semctl(set, 0, GETVAL) > 0;
}

LockHolder lock_holder(int set) {
  const pid_t process = semctl(set, 0, GETPID);
  return {process, process > 0 && kill(process, 0) != 0 && errno == ESRCH};
}

std::string holder_text(int set) {
  const LockHolder holder = lock_holder(set);
  if (holder.process <= 0) return "a process that cannot be seen from here holds it";
  return "process " + std::to_string(holder.process) +
         (holder.has_ended ? " has ended without giving it back" : " holds it");
}

void wait_for_bus_lock(std::chrono::microseconds patience,
                       const std::function<void(const std::string& line)>& tell) {
  const Clock::time_point begun = Clock::now();
  Clock::time_point told = begun;
  while (bus_lock_taken()) {
    if (Clock::now() - begun >= patience) {
      throw Failure(ExitCode::time_out, "the bus lock is not free in time" + holder_now() +
                                            ": see " + tool_name + " doctor");
    }
    if (Clock::now() - told >= silent) {
      told = Clock::now();
      tell("waiting for the bus lock" + holder_now());
    }
    if (wait_for_signal(look_pause)) {
      throw Interrupted("interrupted while it waited for the bus lock" + holder_now());
    }
  }
}

}  // namespace kelvo::ctl
