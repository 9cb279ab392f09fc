// The intercepted libc names that go by a path to make, to change or to ask about what lies there, besides
// its bytes. In each row: the result, the way that the call goes, its name, what a relative path begins at,
// the parameters, and what the call takes at the real place.
#include <fcntl.h>
#include <limits.h>
#include <stdlib.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/time.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utime.h>

#include "sim/seam/real.h"
#include "sim/seam/router.h"

using kelvo::sim::real;
namespace router = kelvo::sim::router;

#define KELVO_CALL(result, way, name, folder, parameters, arguments)                            \
  result name parameters noexcept {                                                             \
    return router::way(folder, path, [&](const char* place) { return real().name arguments; }); \
  }

namespace {

/// Any other begins at the folder of the link.
const char* absolute(const char* target) { return target[0] == '/' ? target : nullptr; }

}  // namespace

#pragma GCC visibility push(default)
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): libc's own names
extern "C" {

// What programs call that were built for a C library before 2.33.
int __xmknod(int version, const char* path, mode_t mode, dev_t* device) noexcept;
int __xmknodat(int version, int folder, const char* path, mode_t mode, dev_t* device) noexcept;
ssize_t __readlink_chk(const char* path, char* buffer, size_t length, size_t room) noexcept;
ssize_t __readlinkat_chk(int folder, const char* path, char* buffer, size_t length,
                         size_t room) noexcept;
char* __realpath_chk(const char* path, char* buffer, size_t room) noexcept;

// clang-format off
KELVO_CALL(int, at_new, mkdir, AT_FDCWD, (const char* path, mode_t mode), (place, mode))
KELVO_CALL(int, at_new, mkdirat, folder, (int folder, const char* path, mode_t mode), (folder, place, mode))
KELVO_CALL(int, at_new, mkfifo, AT_FDCWD, (const char* path, mode_t mode), (place, mode))
KELVO_CALL(int, at_new, mkfifoat, folder, (int folder, const char* path, mode_t mode), (folder, place, mode))
KELVO_CALL(int, at_new, mknod, AT_FDCWD, (const char* path, mode_t mode, dev_t device), (place, mode, device))
KELVO_CALL(int, at_new, mknodat, folder, (int folder, const char* path, mode_t mode, dev_t device),
           (folder, place, mode, device))

KELVO_CALL(int, at_file, chmod, AT_FDCWD, (const char* path, mode_t mode), (place, mode))
KELVO_CALL(int, at_file, lchmod, AT_FDCWD, (const char* path, mode_t mode), (place, mode))
KELVO_CALL(int, at_file, fchmodat, folder, (int folder, const char* path, mode_t mode, int flags),
           (folder, place, mode, flags))
KELVO_CALL(int, at_file, chown, AT_FDCWD, (const char* path, uid_t user, gid_t group), (place, user, group))
KELVO_CALL(int, at_file, lchown, AT_FDCWD, (const char* path, uid_t user, gid_t group), (place, user, group))
KELVO_CALL(int, at_file, fchownat, folder, (int folder, const char* path, uid_t user, gid_t group, int flags),
           (folder, place, user, group, flags))
KELVO_CALL(int, at_file, utime, AT_FDCWD, (const char* path, const utimbuf* times), (place, times))
KELVO_CALL(int, at_file, utimes, AT_FDCWD, (const char* path, const timeval* times), (place, times))
KELVO_CALL(int, at_file, lutimes, AT_FDCWD, (const char* path, const timeval* times), (place, times))
KELVO_CALL(int, at_file, futimesat, folder, (int folder, const char* path, const timeval* times),
           (folder, place, times))
KELVO_CALL(int, at_file, utimensat, folder, (int folder, const char* path, const timespec* times, int flags),
           (folder, place, times, flags))
KELVO_CALL(int, at_file, rmdir, AT_FDCWD, (const char* path), (place))
KELVO_CALL(int, at_file, setxattr, AT_FDCWD,
           (const char* path, const char* name, const void* value, size_t length, int flags),
           (place, name, value, length, flags))
KELVO_CALL(int, at_file, lsetxattr, AT_FDCWD,
           (const char* path, const char* name, const void* value, size_t length, int flags),
           (place, name, value, length, flags))
KELVO_CALL(int, at_file, removexattr, AT_FDCWD, (const char* path, const char* name), (place, name))
KELVO_CALL(int, at_file, lremovexattr, AT_FDCWD, (const char* path, const char* name), (place, name))

KELVO_CALL(ssize_t, at_place, getxattr, AT_FDCWD, (const char* path, const char* name, void* value, size_t length),
           (place, name, value, length))
KELVO_CALL(ssize_t, at_place, lgetxattr, AT_FDCWD, (const char* path, const char* name, void* value, size_t length),
           (place, name, value, length))
KELVO_CALL(ssize_t, at_place, listxattr, AT_FDCWD, (const char* path, char* names, size_t length),
           (place, names, length))
KELVO_CALL(ssize_t, at_place, llistxattr, AT_FDCWD, (const char* path, char* names, size_t length),
           (place, names, length))
KELVO_CALL(ssize_t, at_place, readlink, AT_FDCWD, (const char* path, char* buffer, size_t length),
           (place, buffer, length))
KELVO_CALL(ssize_t, at_place, readlinkat, folder, (int folder, const char* path, char* buffer, size_t length),
           (folder, place, buffer, length))
KELVO_CALL(int, at_place, statfs, AT_FDCWD, (const char* path, struct statfs* result), (place, result))
KELVO_CALL(int, at_place, statfs64, AT_FDCWD, (const char* path, struct statfs64* result), (place, result))
KELVO_CALL(int, at_place, statvfs, AT_FDCWD, (const char* path, struct statvfs* result), (place, result))
KELVO_CALL(int, at_place, statvfs64, AT_FDCWD, (const char* path, struct statvfs64* result), (place, result))
KELVO_CALL(long, at_place, pathconf, AT_FDCWD, (const char* path, int name), (place, name))
KELVO_CALL(int, at_place, inotify_add_watch, AT_FDCWD, (int watch, const char* path, uint32_t events),
           (watch, place, events))
// clang-format on

int __xmknod(int /*version*/, const char* path, mode_t mode, dev_t* device) noexcept {
  return ::mknod(path, mode, *device);
}
int __xmknodat(int /*version*/, int folder, const char* path, mode_t mode, dev_t* device) noexcept {
  return ::mknodat(folder, path, mode, *device);
}

int link(const char* from, const char* to) noexcept {
  if (router::refuses_name({AT_FDCWD, from}, {AT_FDCWD, to})) return -1;
  return real().link(from, to);
}
int linkat(int from_folder, const char* from, int to_folder, const char* to, int flags) noexcept {
  if (router::refuses_name({from_folder, from}, {to_folder, to})) return -1;
  return real().linkat(from_folder, from, to_folder, to, flags);
}
int symlink(const char* target, const char* path) noexcept {
  if (router::refuses_name({AT_FDCWD, absolute(target)}, {AT_FDCWD, path})) return -1;
  return real().symlink(target, path);
}
int symlinkat(const char* target, int folder, const char* path) noexcept {
  if (router::refuses_name({AT_FDCWD, absolute(target)}, {folder, path})) return -1;
  return real().symlinkat(target, folder, path);
}

ssize_t __readlink_chk(const char* path, char* buffer, size_t length, size_t room) noexcept {
  if (length > room) __builtin_trap();
  return ::readlink(path, buffer, length);
}
ssize_t __readlinkat_chk(int folder, const char* path, char* buffer, size_t length,
                         size_t room) noexcept {
  if (length > room) __builtin_trap();
  return ::readlinkat(folder, path, buffer, length);
}

char* realpath(const char* path, char* buffer) noexcept { return router::realpath(path, buffer); }
char* __realpath_chk(const char* path, char* buffer, size_t room) noexcept {
  if (room < PATH_MAX) __builtin_trap();
  return router::realpath(path, buffer);
}
char* canonicalize_file_name(const char* path) noexcept { return router::realpath(path, nullptr); }

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
#pragma GCC visibility pop
