// A kernel in which the camera's devices take no time: its requests are real system calls that do
// nothing, its sleeps are over at once, and the bus lock is a real semaphore of this run's own.
#ifndef KELVO_BENCHMARKS_KERNEL_H
#define KELVO_BENCHMARKS_KERNEL_H

namespace kelvo::bench {

/// Makes the lock's file and opens the devices for the library; undone when it goes.
class Kernel {
 public:
  Kernel();
  ~Kernel();
  Kernel(const Kernel&) = delete;
  Kernel& operator=(const Kernel&) = delete;
};

}  // namespace kelvo::bench

#endif
