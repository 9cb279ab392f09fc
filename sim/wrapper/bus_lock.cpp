#include "sim/wrapper/bus_lock.h"

#include <cerrno>
#include <numeric>

#include "sim/seam/real.h"
#include "sim/wrapper/this_process.h"

namespace kelvo::sim {
namespace {

/// The process whose thread has taken the lock: a forked one has not.
thread_local std::int32_t taken_by = 0;

int answer_of(int result) { return result < 0 ? -errno : result; }

int change_of(std::span<const sembuf> operations) {
  return std::accumulate(operations.begin(), operations.end(), 0,
                         [](int sum, const sembuf& operation) { return sum + operation.sem_op; });
}

int make(int set, std::span<const sembuf> operations) {
  // It does not write to them.
  auto* const first = const_cast<sembuf*>(operations.data());
  return answer_of(real().semop(set, first, operations.size()));
}

}  // namespace

Answer BusLock::get(key_t key, int members, int flags) {
  const int set = answer_of(real().semget(key, members, flags));
  if (set >= 0) set_.store(set);
  return set;
}

Answer BusLock::operate(std::span<const sembuf> operations, std::atomic<std::int32_t>& entry,
                        bool& foreign) {
  const int change = change_of(operations);
  const std::int32_t process = this_process();
  std::int32_t holder = process;
  // Before the lock is free, or else it would take away who gets it next.
  const bool taken_away =
      change < 0 && taken_by == process && entry.compare_exchange_strong(holder, 0);
  const int answer = make(set_.load(), operations);
  if (answer < 0) {
    if (taken_away) entry.store(process);
    return answer;
  }
  if (change > 0) {
    taken_by = process;
    entry.store(process);
  } else if (change < 0) {
    foreign = taken_by != process;
    taken_by = 0;
  }
  return answer;
}

camera::Caller BusLock::caller(const std::atomic<std::int32_t>& entry) {
  const std::int32_t process = this_process();
  return {process, taken_by == process, entry.load()};
}

}  // namespace kelvo::sim
