// The calls that go by a descriptor.
#include <fcntl.h>
#include <linux/close_range.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <string>

#include "sim/seam/camera_paths.h"
#include "sim/seam/descriptors.h"
#include "sim/seam/installed.h"
#include "sim/seam/open_files.h"
#include "sim/seam/real.h"
#include "sim/seam/router.h"
#include "wire/spi_device.h"

namespace kelvo::sim::router {
namespace {

bool is_own(const Host& host, int descriptor) {
  return host.own_descriptor(descriptor) == descriptor;
}

Answer forget(Host& host, int descriptor) {
  const std::string path = forget_file(descriptor);
  if (!path.empty()) host.file_closed(path.c_str());
  const Device device = opened_at(descriptor).device;
  set_opened(descriptor, {});
  return device != Device::none ? host.close(device) : Answer{};
}

/// All but the host's own ones.
template <typename Close>
void close_around(Host& host, unsigned first, unsigned last, Close close) {
  const unsigned last_known = std::min<unsigned>(last, highest_descriptor);
  for (unsigned i = first; i <= last_known; ++i) {
    if (!is_own(host, static_cast<int>(i))) forget(host, static_cast<int>(i));
  }
  while (first <= last) {
    const int own = first <= INT_MAX ? host.own_descriptor(static_cast<int>(first)) : -1;
    if (own < 0 || static_cast<unsigned>(own) > last) return close(first, last);
    if (static_cast<unsigned>(own) > first) close(first, static_cast<unsigned>(own) - 1);
    first = static_cast<unsigned>(own) + 1;
  }
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

int close(int descriptor) {
  Host* const host = installed();
  if (host == nullptr) return real().close(descriptor);
  // As for a descriptor that the program never opened.
  if (is_own(*host, descriptor)) return libc_result(-EBADF);
  const Answer answer = forget(*host, descriptor);
  const int closed = real().close(descriptor);
  return answer ? libc_result(*answer) : closed;
}

int close_range(unsigned first, unsigned last, int flags) {
  Host* const host = installed();
  const bool closes = (static_cast<unsigned>(flags) & CLOSE_RANGE_CLOEXEC) == 0;
  if (host == nullptr || !closes || first > last) return real().close_range(first, last, flags);
  int result = 0;
  close_around(*host, first, last, [&](unsigned from, unsigned to) {
    if (result == 0) result = real().close_range(from, to, flags);
  });
  return result;
}

void closefrom(int first) {
  Host* const host = installed();
  if (host == nullptr) return real().closefrom(first);
  close_around(*host, static_cast<unsigned>(std::max(first, 0)), UINT_MAX,
               [](unsigned from, unsigned to) {
                 if (to == UINT_MAX) return real().closefrom(static_cast<int>(from));
                 for (unsigned i = from; i <= to; ++i) real().close(static_cast<int>(i));
               });
}

int dup(int descriptor) {
  const int copy = real().dup(descriptor);
  if (copy >= 0) set_opened(copy, opened_at(descriptor));
  return copy;
}

int dup3(int descriptor, int wanted, int flags) {
  Host* const host = installed();
  // What libc says when the number is about to be opened by somebody else.
  if (host != nullptr && is_own(*host, wanted)) return libc_result(-EBUSY);
  const int copy = real().dup3(descriptor, wanted, flags);
  if (copy < 0) return copy;
  if (host != nullptr) forget(*host, copy);
  set_opened(copy, opened_at(descriptor));
  return copy;
}

int dup2(int descriptor, int wanted) {
  // dup3() refuses two equal numbers.
  return descriptor == wanted ? real().dup2(descriptor, wanted) : dup3(descriptor, wanted, 0);
}

int fcntl(int descriptor, int command, void* argument) {
  const int result = real().fcntl(descriptor, command, argument);
  if (result >= 0 && command == F_GETFL && opened_at(descriptor).simulated) {
    return (result & ~O_ACCMODE) | O_RDWR;
  }
  if (result >= 0 && (command == F_DUPFD || command == F_DUPFD_CLOEXEC)) {
    set_opened(result, opened_at(descriptor));
  }
  return result;
}

int ioctl(int descriptor, unsigned long request, void* argument) {
  Host* const host = installed();
  if (host == nullptr) return real().ioctl(descriptor, request, argument);
  for (const Request& entry : requests) {
    if (entry.number != request) continue;
    const Answer answer = entry.serve(*host, find_opened(descriptor).device, descriptor, argument);
    return answer ? libc_result(*answer) : real().ioctl(descriptor, request, argument);
  }
  const Opened opened = opened_at(descriptor);
  if (!opened.simulated) return real().ioctl(descriptor, request, argument);
  host->refused(opened.device, "an ioctl() that the driver does not know");
  return libc_result(-ENOTTY);
}

bool refuses_bytes(int descriptor, const char* call) {
  const Opened opened = opened_at(descriptor);
  if (!opened.simulated) return false;
  if (Host* const host = installed()) host->refused(opened.device, call);
  errno = EINVAL;
  return true;
}

int synchronise(int descriptor, int (*real_call)(int)) {
  Host* const host = installed();
  const Answer answer = host != nullptr ? host->sync(descriptor) : Answer{};
  const int result = answer ? libc_result(*answer) : real_call(descriptor);
  if (host == nullptr || result != 0) return result;
  const std::string path = file_at(descriptor);
  if (!path.empty()) host->file_synchronised(path.c_str());
  return result;
}

void synchronise_all() {
  Host* const host = installed();
  if (host == nullptr) return;
  for_each_camera_path([host](const char* path) { host->file_synchronised(path); });
}

int synchronise_files(int descriptor) {
  const int result = real().syncfs(descriptor);
  if (result == 0 && !file_at(descriptor).empty()) synchronise_all();
  return result;
}

void written(int descriptor) {
  Host* const host = installed();
  if (host == nullptr) return;
  const std::string path = file_at(descriptor);
  if (path.empty()) return;
  const int flags = real().fcntl(descriptor, F_GETFL);
  if (flags >= 0 && (flags & O_DSYNC) != 0) host->file_synchronised(path.c_str());
}

}  // namespace kelvo::sim::router
