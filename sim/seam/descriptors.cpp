#include "sim/seam/descriptors.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "sim/seam/camera_paths.h"
#include "sim/seam/real.h"

namespace kelvo::sim {
namespace {

constexpr std::uint8_t simulated_bit = 0x80;
constexpr char placeholder_prefix[] = "kelvo-sim:";
constexpr Device devices[] = {Device::spi_renesas, Device::spi_pt5111, Device::i2c_2};

std::array<std::atomic<std::uint8_t>, highest_descriptor + 1> table{};

bool in_table(int descriptor) { return descriptor >= 0 && descriptor <= highest_descriptor; }

/// What the kernel says that a descriptor leads to; empty for none.
std::string target_of(int descriptor) {
  const int error = errno;
  std::array<char, 64> target{};  // longer ones are not the camera's
  const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
  const ssize_t length = real().readlink(link.c_str(), target.data(), target.size());
  errno = error;
  return {target.data(), length > 0 ? static_cast<std::size_t>(length) : 0};
}

/// Opens it anew for nothing but requests, which Linux takes both accesses at once for: then fails too what
/// libc reads and writes by itself for a stream. False where an emulator does not know that.
bool open_for_requests(int descriptor, int close_on_exec) {
  const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
  const int opened = real().open(link.c_str(), O_ACCMODE | O_CLOEXEC);
  if (opened < 0) return false;
  const bool understood = (real().fcntl(opened, F_GETFL) & O_ACCMODE) == O_ACCMODE &&
                          real().dup3(opened, descriptor, close_on_exec) == descriptor;
  real().close(opened);
  return understood;
}

/// Behind the last place that a file can have, reading and writing fail.
void leave_no_room(int descriptor) {
  lseek(descriptor, std::numeric_limits<off_t>::max(), SEEK_SET);
}

}  // namespace

Opened opened_at(int descriptor) {
  if (!in_table(descriptor)) return {};
  const std::uint8_t entry =
      table[static_cast<std::size_t>(descriptor)].load(std::memory_order_relaxed);
  return {static_cast<Device>(entry & ~simulated_bit), (entry & simulated_bit) != 0};
}

void set_opened(int descriptor, Opened opened) {
  if (!in_table(descriptor)) return;
  const auto device = static_cast<unsigned>(opened.device);
  table[static_cast<std::size_t>(descriptor)].store(
      static_cast<std::uint8_t>(device | (opened.simulated ? simulated_bit : 0U)),
      std::memory_order_relaxed);
}

Opened find_opened(int descriptor) {
  const Opened known = opened_at(descriptor);
  if (known.device != Device::none || descriptor < 0) return known;
  const std::string target = target_of(descriptor);
  for (const Device device : devices) {
    const std::string path = path_of(device);
    const bool simulated = target.starts_with("/memfd:" + (placeholder_prefix + path));
    if (!simulated && target != path) continue;
    const Opened found{device, simulated};
    set_opened(descriptor, found);
    return found;
  }
  return {};
}

int open_placeholder(Device device, bool close_on_exec) {
  const std::string name = std::string(placeholder_prefix) + path_of(device);
  const int descriptor =
      memfd_create(name.c_str(), MFD_ALLOW_SEALING | (close_on_exec ? MFD_CLOEXEC : 0));
  if (descriptor < 0) return real().open("/dev/null", O_RDWR | (close_on_exec ? O_CLOEXEC : 0));
  real().fcntl(descriptor, F_ADD_SEALS, F_SEAL_WRITE | F_SEAL_GROW | F_SEAL_SHRINK);
  if (!open_for_requests(descriptor, close_on_exec ? O_CLOEXEC : 0)) leave_no_room(descriptor);
  return descriptor;
}

}  // namespace kelvo::sim
