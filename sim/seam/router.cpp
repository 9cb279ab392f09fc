#include "sim/seam/router.h"

#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <map>
#include <mutex>

#include "sim/seam/real.h"
#include "wire/paths.h"
#include "wire/spi_device.h"

namespace kelvo::sim {
namespace {

std::atomic<Host*> installed_host{nullptr};

struct DevicePath {
  const char* path;
  Device device;
};
constexpr DevicePath device_paths[] = {
    {wire::lens_controller_device, Device::spi_renesas},
    {wire::pt5111_device, Device::spi_pt5111},
    {wire::pan_tilt_device, Device::i2c_2},
};

constexpr std::size_t most_descriptors = 65536;
std::array<std::atomic<Device>, most_descriptors> devices{};

Device device_of(int descriptor) {
  if (descriptor < 0 || static_cast<std::size_t>(descriptor) >= most_descriptors) {
    return Device::none;
  }
  return devices[static_cast<std::size_t>(descriptor)].load(std::memory_order_relaxed);
}

void assign(int descriptor, Device device) {
  if (descriptor < 0 || static_cast<std::size_t>(descriptor) >= most_descriptors) return;
  devices[static_cast<std::size_t>(descriptor)].store(device, std::memory_order_relaxed);
}

/// A value stays; a negative error number becomes -1 with errno.
int libc_result(int answer) {
  if (answer >= 0) return answer;
  errno = -answer;
  return -1;
}

/// Streams of camera files by the name that the program knows them by.
std::mutex streams_mutex;
std::map<FILE*, std::string>& streams() {
  static auto* const open_streams = new std::map<FILE*, std::string>;
  return *open_streams;
}

Answer transfer_request(Host& host, Device device, int descriptor, void* argument) {
  const auto& record = *static_cast<const wire::SpiTransfer*>(argument);
  return host.transfer(device, descriptor, {record.transmit, record.length},
                       {record.receive, record.length});
}

Answer speed_request(Host& host, Device device, int descriptor, void* argument) {
  return host.set_speed(device, descriptor, *static_cast<const std::uint32_t*>(argument));
}

Answer i2c_request(Host& host, Device device, int descriptor, void* argument) {
  // The kernel's own bounds: it refuses what lies beyond them before it looks at a buffer.
  constexpr std::uint16_t longest_message = 8192;
  const auto& request = *static_cast<const i2c_rdwr_ioctl_data*>(argument);
  if (request.nmsgs > I2C_RDWR_IOCTL_MAX_MSGS) return -EINVAL;
  const std::span<i2c_msg> messages{request.msgs, request.nmsgs};
  for (const i2c_msg& message : messages) {
    if (message.len > longest_message) return -EINVAL;
  }
  return host.i2c(device, descriptor, messages);
}

/// The requests that the camera's drivers serve.
struct Request {
  unsigned long number;
  Answer (*serve)(Host& host, Device device, int descriptor, void* argument);
};
constexpr Request requests[] = {
    {wire::spi_transfer_request, transfer_request},
    {wire::spi_speed_request, speed_request},
    {I2C_RDWR, i2c_request},
};

}  // namespace

void install(Host* host) { installed_host.store(host); }

namespace router {

int open(const char* path, int flags, mode_t mode) {
  Host* const host = installed_host.load();
  for (const DevicePath& entry : device_paths) {
    if (host == nullptr || std::strcmp(entry.path, path) != 0) continue;
    const Answer answer = host->open(entry.device);
    if (answer && *answer < 0) return libc_result(*answer);
    // A camera that is not the kernel's gets a descriptor that only holds the number.
    const int descriptor = answer ? real().open("/dev/null", O_RDWR | (flags & O_CLOEXEC))
                                  : real().open(path, flags, mode);
    assign(descriptor, entry.device);
    return descriptor;
  }
  return real().open(path, flags, mode);
}

int close(int descriptor) {
  Host* const host = installed_host.load();
  const Device device = device_of(descriptor);
  if (host != nullptr && device != Device::none) {
    assign(descriptor, Device::none);
    const Answer answer = host->close(device);
    const int closed = real().close(descriptor);
    return answer ? libc_result(*answer) : closed;
  }
  return real().close(descriptor);
}

int ioctl(int descriptor, unsigned long request, void* argument) {
  Host* const host = installed_host.load();
  if (host != nullptr) {
    for (const Request& entry : requests) {
      if (entry.number != request) continue;
      const Answer answer = entry.serve(*host, device_of(descriptor), descriptor, argument);
      if (answer) return libc_result(*answer);
    }
  }
  return real().ioctl(descriptor, request, argument);
}

bool delay(SleepCall call, std::chrono::nanoseconds time, int& result) {
  Host* const host = installed_host.load();
  const Answer answer = host != nullptr ? host->delay(call, time) : Answer{};
  if (answer) result = libc_result(*answer);
  return answer.has_value();
}

int system(const char* command) {
  Host* const host = installed_host.load();
  const bool camera_line = command != nullptr && std::strstr(command, "/sys/class/gpio") != nullptr;
  const Answer answer = host != nullptr && camera_line ? host->shell(command) : Answer{};
  return answer ? libc_result(*answer) : real().system(command);
}

key_t ftok(const char* path, int project) {
  Host* const host = installed_host.load();
  const bool lock_key = std::strcmp(path, wire::lock_key_path) == 0;
  const Answer answer = host != nullptr && lock_key ? host->semaphore_key(path, project) : Answer{};
  return answer ? libc_result(*answer) : real().ftok(path, project);
}

int semget(key_t key, int members, int flags) {
  Host* const host = installed_host.load();
  const Answer answer = host != nullptr
                            ? host->semaphore_get(static_cast<std::uint32_t>(key), members, flags)
                            : Answer{};
  return answer ? libc_result(*answer) : real().semget(key, members, flags);
}

int semctl(int semid, int member, int command, long argument) {
  Host* const host = installed_host.load();
  const Answer answer =
      host != nullptr ? host->semaphore_control(semid, member, command, static_cast<int>(argument))
                      : Answer{};
  return answer ? libc_result(*answer) : real().semctl(semid, member, command, argument);
}

int semop(int semid, std::span<sembuf> operations) {
  Host* const host = installed_host.load();
  const Answer answer = host != nullptr ? host->semaphore_operate(semid, operations) : Answer{};
  return answer ? libc_result(*answer) : real().semop(semid, operations.data(), operations.size());
}

FILE* fopen(const char* path, const char* mode) {
  Host* const host = installed_host.load();
  const std::optional<FileAnswer> answer =
      host != nullptr ? host->file(path, mode) : std::optional<FileAnswer>{};
  if (!answer) return real().fopen(path, mode);
  if (answer->error < 0) {
    errno = -answer->error;
    return nullptr;
  }
  FILE* const stream = real().fopen(answer->real_path.c_str(), mode);
  if (stream != nullptr) {
    const std::scoped_lock guard(streams_mutex);
    streams()[stream] = path;
  }
  return stream;
}

int fclose(FILE* stream) {
  Host* const host = installed_host.load();
  if (host != nullptr) {
    const std::scoped_lock guard(streams_mutex);
    const auto found = streams().find(stream);
    if (found != streams().end()) {
      host->file_closed(found->second.c_str());
      streams().erase(found);
    }
  }
  return real().fclose(stream);
}

int fsync(int descriptor) {
  Host* const host = installed_host.load();
  const Answer answer = host != nullptr ? host->sync(descriptor) : Answer{};
  return answer ? libc_result(*answer) : real().fsync(descriptor);
}

}  // namespace router
}  // namespace kelvo::sim
