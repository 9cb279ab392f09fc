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
extern "C" {

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

int fsync(int descriptor) { return router::synchronise(descriptor, real().fsync); }
int fdatasync(int descriptor) { return router::synchronise(descriptor, real().fdatasync); }
int syncfs(int descriptor) noexcept { return router::synchronise_files(descriptor); }
void sync() noexcept {
  real().sync();
  router::synchronise_all();
}

}  // extern "C"
#pragma GCC visibility pop
