// The kernel's own semaphores under a key of the test's own; devices and waits are made up.
#ifndef KELVO_TESTS_KERNEL_KERNEL_HOST_H
#define KELVO_TESTS_KERNEL_KERNEL_HOST_H

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <span>
#include <string>

#include "sim/seam/host.h"

namespace kelvo::test {

class KernelHost final : public sim::Host {
 public:
  KernelHost();            // takes the place of devices and waits
  ~KernelHost() override;  // removes the semaphore set that has come about
  KernelHost(const KernelHost&) = delete;
  KernelHost& operator=(const KernelHost&) = delete;

  std::uint32_t key() const { return static_cast<std::uint32_t>(key_); }
  /// From now on the lock's key cannot be made, as if its file were not there. The set of the key that
  /// stands for this failure belongs to the whole machine, so the test's own is put in its place.
  void lose_key() { key_lost_ = true; }

  /// The lock's set, -1 if there is none.
  int set() const;
  int value() const;
  /// Processes that wait until the value is zero.
  int waiters() const;
  /// Removes the set under the waiters' feet.
  void remove_set() const;

  /// How often the library has asked for the set of the key that stands for a failure.
  int fallbacks() const { return fallbacks_; }
  /// Transfers of this process, and the lock's value during the last of them.
  int transfers() const { return transfers_; }
  int value_in_transfer() const { return value_in_transfer_; }

  sim::Answer open(sim::Device) override { return 0; }
  sim::Answer transfer(sim::Device, int, std::span<const std::uint8_t>,
                       std::span<std::uint8_t>) override;
  sim::Answer delay(sim::SleepCall, std::chrono::nanoseconds) override { return 0; }
  sim::Answer semaphore_key(const char* path, int project) override;
  sim::Answer semaphore_get(std::uint32_t key, int members, int flags) override;

 private:
  std::string folder_;
  key_t key_ = -1;
  bool key_lost_ = false;
  int fallbacks_ = 0;
  int transfers_ = 0;
  int value_in_transfer_ = -1;
};

}  // namespace kelvo::test

#endif
