#include "sim/state/byte_lock.h"

#include <fcntl.h>

#include <cerrno>

namespace kelvo::sim::state {
namespace {

struct flock bytes(short type, std::uint32_t first, std::uint32_t count) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = first;
  lock.l_len = count;
  return lock;
}

}  // namespace

bool lock_byte(int descriptor, std::uint32_t byte, Wait wait) {
  struct flock lock = bytes(F_WRLCK, byte, 1);
  const int command = wait == Wait::yes ? F_OFD_SETLKW : F_OFD_SETLK;
  int result = fcntl(descriptor, command, &lock);
  while (result != 0 && errno == EINTR) result = fcntl(descriptor, command, &lock);
  return result == 0;
}

void unlock_byte(int descriptor, std::uint32_t byte) {
  struct flock lock = bytes(F_UNLCK, byte, 1);
  fcntl(descriptor, F_OFD_SETLK, &lock);
}

bool any_locked(int descriptor, std::uint32_t first, std::uint32_t count) {
  struct flock lock = bytes(F_WRLCK, first, count);
  return fcntl(descriptor, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

}  // namespace kelvo::sim::state
