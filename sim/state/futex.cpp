#include "sim/state/futex.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

namespace kelvo::sim::state {
namespace {

long futex(std::atomic<std::uint32_t>& word, int operation, std::uint32_t value,
           const timespec* timeout) {
  static_assert(sizeof word == sizeof(std::uint32_t));
  return syscall(SYS_futex, &word, operation, value, timeout, nullptr, 0);
}

}  // namespace

bool wait_while(std::atomic<std::uint32_t>& word, std::uint32_t value,
                std::chrono::milliseconds most) {
  const timespec timeout{most.count() / 1000, most.count() % 1000 * 1'000'000};
  return futex(word, FUTEX_WAIT, value, &timeout) == 0 || errno != ETIMEDOUT;
}

void wake_one(std::atomic<std::uint32_t>& word) { futex(word, FUTEX_WAKE, 1, nullptr); }

void wake_all(std::atomic<std::uint32_t>& word) { futex(word, FUTEX_WAKE, INT_MAX, nullptr); }

}  // namespace kelvo::sim::state
