// The library's bus lock, looked at from outside. Nothing is changed by it.
//
// The library waits for the lock in the kernel, where nothing ends the wait but the lock. So what takes it is
// not called while another process has it.
#ifndef KELVO_TOOLS_KELVOCTL_COMMON_BUS_LOCK_H
#define KELVO_TOOLS_KELVOCTL_COMMON_BUS_LOCK_H

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>

namespace kelvo::ctl {

/// How long a command waits for it unless it is told otherwise: transfers hold it for less than a second.
inline constexpr std::chrono::microseconds lock_patience = std::chrono::seconds(10);

/// The semaphore set that it is; -1 and errno where nobody has made it yet, or it cannot be had.
int bus_lock_set(key_t key);
key_t bus_lock_key();

/// Whether it is taken now.
bool bus_lock_taken();

struct LockHolder {
  pid_t process;
  bool has_ended;  // without giving it back
};

/// Who took it last.
LockHolder lock_holder(int set);
/// "process 12 holds it", or "process 12 has ended without giving it back".
std::string holder_text(int set);

/// Waits until it is free, by real time, and in the end throws a Failure, or Interrupted after Ctrl-C. From
/// the first second on tells who has it.
void wait_for_bus_lock(std::chrono::microseconds patience,
                       const std::function<void(const std::string& line)>& tell);

}  // namespace kelvo::ctl

#endif
