// The intercepted libc names that move bytes by a descriptor.
#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/uio.h>
#include <unistd.h>

#include "sim/seam/real.h"
#include "sim/seam/router.h"

using kelvo::sim::real;
namespace router = kelvo::sim::router;

static_assert(sizeof(off_t) == 8);

namespace {

template <typename Call>
ssize_t taken(int descriptor, const char* name, Call call) {
  return router::refuses_bytes(descriptor, name) ? -1 : call();
}

template <typename Call>
ssize_t put(int descriptor, const char* name, Call call) {
  const ssize_t result = taken(descriptor, name, call);
  if (result > 0) router::written(descriptor);
  return result;
}

template <typename Call>
ssize_t moved(int from, int to, const char* name, Call call) {
  return taken(from, name, [&] { return put(to, name, call); });
}

}  // namespace

#pragma GCC visibility push(default)
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): libc's own names
extern "C" {

ssize_t __read_chk(int descriptor, void* buffer, size_t length, size_t room);
ssize_t __pread_chk(int descriptor, void* buffer, size_t length, off_t place, size_t room);
ssize_t __pread64_chk(int descriptor, void* buffer, size_t length, off64_t place, size_t room);

ssize_t read(int descriptor, void* buffer, size_t length) {
  return taken(descriptor, "read()", [&] { return real().read(descriptor, buffer, length); });
}
ssize_t pread(int descriptor, void* buffer, size_t length, off_t place) {
  return taken(descriptor, "pread()",
               [&] { return real().pread(descriptor, buffer, length, place); });
}
ssize_t readv(int descriptor, const iovec* parts, int count) {
  return taken(descriptor, "readv()", [&] { return real().readv(descriptor, parts, count); });
}
ssize_t preadv(int descriptor, const iovec* parts, int count, off_t place) {
  return taken(descriptor, "preadv()",
               [&] { return real().preadv(descriptor, parts, count, place); });
}
ssize_t preadv2(int descriptor, const iovec* parts, int count, off_t place, int flags) {
  return taken(descriptor, "preadv2()",
               [&] { return real().preadv2(descriptor, parts, count, place, flags); });
}

ssize_t write(int descriptor, const void* buffer, size_t length) {
  return put(descriptor, "write()", [&] { return real().write(descriptor, buffer, length); });
}
ssize_t pwrite(int descriptor, const void* buffer, size_t length, off_t place) {
  return put(descriptor, "pwrite()",
             [&] { return real().pwrite(descriptor, buffer, length, place); });
}
ssize_t writev(int descriptor, const iovec* parts, int count) {
  return put(descriptor, "writev()", [&] { return real().writev(descriptor, parts, count); });
}
ssize_t pwritev(int descriptor, const iovec* parts, int count, off_t place) {
  return put(descriptor, "pwritev()",
             [&] { return real().pwritev(descriptor, parts, count, place); });
}
ssize_t pwritev2(int descriptor, const iovec* parts, int count, off_t place, int flags) {
  return put(descriptor, "pwritev2()",
             [&] { return real().pwritev2(descriptor, parts, count, place, flags); });
}

ssize_t sendfile(int to, int from, off_t* place, size_t length) noexcept {
  return moved(from, to, "sendfile()", [&] { return real().sendfile(to, from, place, length); });
}
ssize_t splice(int from, off64_t* from_place, int to, off64_t* to_place, size_t length,
               unsigned flags) {
  return moved(from, to, "splice()",
               [&] { return real().splice(from, from_place, to, to_place, length, flags); });
}
ssize_t copy_file_range(int from, off64_t* from_place, int to, off64_t* to_place, size_t length,
                        unsigned flags) {
  return moved(from, to, "copy_file_range()", [&] {
    return real().copy_file_range(from, from_place, to, to_place, length, flags);
  });
}

ssize_t __read_chk(int descriptor, void* buffer, size_t length, size_t room) {
  if (length > room) __builtin_trap();
  return ::read(descriptor, buffer, length);
}
ssize_t __pread_chk(int descriptor, void* buffer, size_t length, off_t place, size_t room) {
  if (length > room) __builtin_trap();
  return ::pread(descriptor, buffer, length, place);
}
ssize_t __pread64_chk(int descriptor, void* buffer, size_t length, off64_t place, size_t room) {
  return ::__pread_chk(descriptor, buffer, length, place, room);
}
ssize_t pread64(int descriptor, void* buffer, size_t length, off64_t place) {
  return ::pread(descriptor, buffer, length, place);
}
ssize_t preadv64(int descriptor, const iovec* parts, int count, off64_t place) {
  return ::preadv(descriptor, parts, count, place);
}
ssize_t preadv64v2(int descriptor, const iovec* parts, int count, off64_t place, int flags) {
  return ::preadv2(descriptor, parts, count, place, flags);
}
ssize_t pwrite64(int descriptor, const void* buffer, size_t length, off64_t place) {
  return ::pwrite(descriptor, buffer, length, place);
}
ssize_t pwritev64(int descriptor, const iovec* parts, int count, off64_t place) {
  return ::pwritev(descriptor, parts, count, place);
}
ssize_t pwritev64v2(int descriptor, const iovec* parts, int count, off64_t place, int flags) {
  return ::pwritev2(descriptor, parts, count, place, flags);
}
ssize_t sendfile64(int to, int from, off64_t* place, size_t length) noexcept {
  return ::sendfile(to, from, place, length);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
#pragma GCC visibility pop
