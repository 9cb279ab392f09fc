#include "sim/wrapper/this_process.h"

#include <pthread.h>
#include <unistd.h>

#include <atomic>

namespace kelvo::sim {
namespace {

std::atomic<pid_t> known = 0;

void renew() { known.store(getpid(), std::memory_order_relaxed); }

}  // namespace

pid_t this_process() {
  const pid_t process = known.load(std::memory_order_relaxed);
  if (process != 0) return process;
  static const int registered = pthread_atfork(nullptr, nullptr, renew);
  if (registered == 0) renew();
  return getpid();
}

}  // namespace kelvo::sim
