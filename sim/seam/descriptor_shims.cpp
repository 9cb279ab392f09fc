// The intercepted libc names that go by a descriptor.
#include <fcntl.h>
#include <stdarg.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "sim/seam/real.h"
#include "sim/seam/router.h"

using kelvo::sim::real;
namespace router = kelvo::sim::router;

#pragma GCC visibility push(default)
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): libc's own names
extern "C" {

ssize_t __read_chk(int descriptor, void* buffer, size_t length, size_t room);

int close(int descriptor) { return router::close(descriptor); }
int close_range(unsigned first, unsigned last, int flags) noexcept {
  return router::close_range(first, last, flags);
}
void closefrom(int first) noexcept { router::closefrom(first); }

int dup(int descriptor) noexcept { return router::dup(descriptor); }
int dup2(int descriptor, int wanted) noexcept { return router::dup2(descriptor, wanted); }
int dup3(int descriptor, int wanted, int flags) noexcept {
  return router::dup3(descriptor, wanted, flags);
}

int fcntl(int descriptor, int command, ...) {
  va_list arguments;
  va_start(arguments, command);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  return router::fcntl(descriptor, command, argument);
}
int fcntl64(int descriptor, int command, ...) {
  va_list arguments;
  va_start(arguments, command);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  return router::fcntl(descriptor, command, argument);
}
int ioctl(int descriptor, unsigned long request, ...) noexcept {
  va_list arguments;
  va_start(arguments, request);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  return router::ioctl(descriptor, request, argument);
}

ssize_t read(int descriptor, void* buffer, size_t length) {
  if (router::refuses_bytes(descriptor, "read()")) return -1;
  return real().read(descriptor, buffer, length);
}
ssize_t write(int descriptor, const void* buffer, size_t length) {
  if (router::refuses_bytes(descriptor, "write()")) return -1;
  const ssize_t result = real().write(descriptor, buffer, length);
  if (result > 0) router::written(descriptor);
  return result;
}
ssize_t __read_chk(int descriptor, void* buffer, size_t length, size_t room) {
  if (length > room) __builtin_trap();
  return ::read(descriptor, buffer, length);
}

int fsync(int descriptor) { return router::synchronise(descriptor, real().fsync); }
int fdatasync(int descriptor) { return router::synchronise(descriptor, real().fdatasync); }
int syncfs(int descriptor) noexcept { return router::synchronise_files(descriptor); }
void sync() noexcept {
  real().sync();
  router::synchronise_all();
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
#pragma GCC visibility pop
