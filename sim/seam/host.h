// What leaves the library, as one small interface.
//
// A Host stands where the kernel would stand. Every method answers with a value that the libc call
// would return, with a negative error number for a failure, or with nothing at all: then the call
// goes to the real libc. The base class answers nothing, so it is the pass-through to a real camera.
#ifndef KELVO_SIM_SEAM_HOST_H
#define KELVO_SIM_SEAM_HOST_H

#include <linux/i2c.h>
#include <sys/sem.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace kelvo::sim {

/// The camera's device nodes. `none` is a descriptor that belongs to none of them.
enum class Device : std::uint8_t { none, spi_renesas, spi_pt5111, i2c_2 };

/// The libc function that somebody sleeps in.
enum class SleepCall : std::uint8_t {
  usleep,
  sleep,
  nanosleep,
  clock_nanosleep,
  thrd_sleep,
  select,
  pselect,
  poll,
  ppoll,
  sigtimedwait
};

/// A value, a negative error number, or nothing: "let the real libc answer".
using Answer = std::optional<int>;

/// Where a camera file really lies, or a negative error number.
struct FileAnswer {
  int error = 0;
  std::string real_path;
};

class Host {
 public:
  virtual ~Host() = default;

  virtual Answer open(Device /*device*/) { return {}; }
  /// The real libc has opened it, or has failed with a negative error number.
  virtual void opened(Device /*device*/, int /*error*/) {}
  virtual Answer close(Device /*device*/) { return {}; }

  /// One full-duplex transfer: `sent` goes out while as many bytes come into `received`.
  /// `device` is `none` when the request was made on a descriptor that is no camera device.
  virtual Answer transfer(Device /*device*/, int /*descriptor*/,
                          std::span<const std::uint8_t> /*sent*/,
                          std::span<std::uint8_t> /*received*/) {
    return {};
  }
  virtual Answer set_speed(Device /*device*/, int /*descriptor*/, std::uint32_t /*hertz*/) {
    return {};
  }
  /// One combined I2C request; a success is the number of messages.
  virtual Answer i2c(Device /*device*/, int /*descriptor*/, std::span<i2c_msg> /*messages*/) {
    return {};
  }

  /// Something that no driver of the camera does was asked of a simulated device, and is refused.
  virtual void refused(Device /*device*/, const char* /*what*/) {}

  virtual Answer delay(SleepCall /*call*/, std::chrono::nanoseconds /*time*/) { return {}; }
  /// How many times as fast as real time a delay passes.
  virtual double speed() const { return 1; }

  /// A shell command that touches the camera's GPIO lines; the answer is a wait status.
  virtual Answer shell(const char* /*command*/) { return {}; }

  virtual Answer semaphore_key(const char* /*path*/, int /*project*/) { return {}; }
  virtual Answer semaphore_get(std::uint32_t /*key*/, int /*members*/, int /*flags*/) { return {}; }
  virtual Answer semaphore_control(int /*semid*/, int /*member*/, int /*command*/, int /*value*/) {
    return {};
  }
  virtual Answer semaphore_operate(int /*semid*/, std::span<const sembuf> /*operations*/) {
    return {};
  }

  /// A calibration file is opened; the mode is fopen's.
  virtual std::optional<FileAnswer> file(const char* /*path*/, const char* /*mode*/) { return {}; }
  virtual void file_closed(const char* /*path*/) {}
  virtual Answer sync(int /*descriptor*/) { return {}; }
  /// Where a device or calibration file really lies, for calls that go by the path without opening it.
  virtual std::optional<FileAnswer> real_place(const char* /*path*/) { return {}; }

  /// The lowest descriptor from `first` on that the host keeps for itself, and that no program can
  /// close; -1 without any.
  virtual int own_descriptor(int /*first*/) const { return -1; }
  /// What has been written to an open calibration file is safe now.
  virtual void file_synchronised(const char* /*path*/) {}
};

/// Puts a host in the place of the kernel for the whole process; null takes it away again.
void install(Host* host);

}  // namespace kelvo::sim

#endif
