#ifndef KELVO_SIM_WRAPPER_BUS_LOCK_H
#define KELVO_SIM_WRAPPER_BUS_LOCK_H

#include <atomic>
#include <cstdint>
#include <span>

#include "sim/judge/caller.h"
#include "sim/seam/host.h"

namespace kelvo::sim {

/// The bus lock as this process uses it. The kernel's semaphore is the lock; this one follows who holds it, by
/// the operations that succeed.
class BusLock {
 public:
  /// The set with this key is the bus lock.
  Answer get(key_t key, int members, int flags);
  bool has(int semid) const { return set_.load() == semid; }
  /// Makes the operations; `entry` is where the holder is written down. True in `foreign`: they gave back
  /// what this thread had not taken.
  Answer operate(std::span<const sembuf> operations, std::atomic<std::int32_t>& entry,
                 bool& foreign);
  /// How the calling thread stands to it.
  static camera::Caller caller(const std::atomic<std::int32_t>& entry);

 private:
  std::atomic<int> set_ = -1;
};

}  // namespace kelvo::sim

#endif
