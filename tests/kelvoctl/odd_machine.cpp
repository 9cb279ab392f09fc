// A machine of a test's own, for doctor: preloaded, it answers in libc's place and has one real image.
// ODD_ROOT is a folder in which what doctor looks at is found instead, ODD_LOCK_KEY the key of the bus lock.
#include <fcntl.h>
#include <sys/ipc.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

constexpr std::array<std::string_view, 5> moved{"/dev/spi_renesas", "/dev/spi_pt5111", "/dev/i2c-2",
                                                "/sys/class/gpio/export", "/lib/libkelvo.so"};

std::string place_of(const char* path) {
  if (std::find(moved.begin(), moved.end(), path) == moved.end()) return path;
  const char* const root = std::getenv("ODD_ROOT");
  return std::string(root != nullptr ? root : "") + path;
}

}  // namespace

extern "C" {

// In place of the placeholder.
extern const std::uint8_t CORVO_PROGRAM_DATA_DF033[35000];
const std::uint8_t CORVO_PROGRAM_DATA_DF033[35000] = {0x12, 0x34};

int open(const char* path, int flags, ...) {
  return openat(AT_FDCWD, place_of(path).c_str(), flags);
}

int access(const char* path, int mode) noexcept {
  return faccessat(AT_FDCWD, place_of(path).c_str(), mode, 0);
}

int stat(const char* path, struct stat* status) noexcept {
  return fstatat(AT_FDCWD, place_of(path).c_str(), status, 0);
}

key_t ftok(const char* /*path*/, int /*project*/) noexcept {
  const char* const key = std::getenv("ODD_LOCK_KEY");
  return key != nullptr ? std::atoi(key) : -1;
}
}
