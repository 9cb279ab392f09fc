// The intercepted libc names that go by a path. Names with 64 are the same functions: offsets have 64 bits
// here. Those with underscores are what hardened programs call.
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include "sim/seam/real.h"
#include "sim/seam/router.h"

using kelvo::sim::real;
namespace router = kelvo::sim::router;

static_assert(sizeof(off_t) == 8);

// The mode that follows the flags, if they ask for one.
#define KELVO_READ_MODE(mode, flags)                                \
  mode_t mode = 0;                                                  \
  if (((flags)&O_CREAT) != 0 || ((flags)&O_TMPFILE) == O_TMPFILE) { \
    va_list arguments;                                              \
    va_start(arguments, flags);                                     \
    mode = va_arg(arguments, mode_t);                               \
    va_end(arguments);                                              \
  }

#pragma GCC visibility push(default)
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): libc's own names
extern "C" {

int __open_2(const char* path, int flags);
int __open64_2(const char* path, int flags);
int __openat_2(int folder, const char* path, int flags);
int __openat64_2(int folder, const char* path, int flags);
// What programs call that were built for a C library before 2.33. The version tells what the result looks
// like, of which there is one on a machine with 64 bits.
int __xstat(int version, const char* path, struct stat* result) noexcept;
int __xstat64(int version, const char* path, struct stat64* result) noexcept;
int __lxstat(int version, const char* path, struct stat* result) noexcept;
int __lxstat64(int version, const char* path, struct stat64* result) noexcept;
int __fxstatat(int version, int folder, const char* path, struct stat* result, int flags) noexcept;
int __fxstatat64(int version, int folder, const char* path, struct stat64* result,
                 int flags) noexcept;

int open(const char* path, int flags, ...) {
  KELVO_READ_MODE(mode, flags)
  return router::open(AT_FDCWD, path, flags, mode);
}
int open64(const char* path, int flags, ...) {
  KELVO_READ_MODE(mode, flags)
  return router::open(AT_FDCWD, path, flags, mode);
}
int openat(int folder, const char* path, int flags, ...) {
  KELVO_READ_MODE(mode, flags)
  return router::open(folder, path, flags, mode);
}
int openat64(int folder, const char* path, int flags, ...) {
  KELVO_READ_MODE(mode, flags)
  return router::open(folder, path, flags, mode);
}
int __open_2(const char* path, int flags) { return router::open(AT_FDCWD, path, flags, 0); }
int __open64_2(const char* path, int flags) { return router::open(AT_FDCWD, path, flags, 0); }
int __openat_2(int folder, const char* path, int flags) {
  return router::open(folder, path, flags, 0);
}
int __openat64_2(int folder, const char* path, int flags) {
  return router::open(folder, path, flags, 0);
}
int creat(const char* path, mode_t mode) {
  return router::open(AT_FDCWD, path, O_CREAT | O_WRONLY | O_TRUNC, mode);
}
int creat64(const char* path, mode_t mode) {
  return router::open(AT_FDCWD, path, O_CREAT | O_WRONLY | O_TRUNC, mode);
}

FILE* fopen(const char* path, const char* mode) { return router::fopen(path, mode); }
FILE* fopen64(const char* path, const char* mode) { return router::fopen(path, mode); }
FILE* freopen(const char* path, const char* mode, FILE* stream) {
  return router::freopen(path, mode, stream);
}
FILE* freopen64(const char* path, const char* mode, FILE* stream) {
  return router::freopen(path, mode, stream);
}
int fclose(FILE* stream) { return router::fclose(stream); }

int access(const char* path, int mode) noexcept {
  return router::at_place(AT_FDCWD, path,
                          [&](const char* place) { return real().access(place, mode); });
}
int eaccess(const char* path, int mode) noexcept {
  return router::at_place(AT_FDCWD, path,
                          [&](const char* place) { return real().eaccess(place, mode); });
}
int euidaccess(const char* path, int mode) noexcept {
  return router::at_place(AT_FDCWD, path,
                          [&](const char* place) { return real().eaccess(place, mode); });
}
int faccessat(int folder, const char* path, int mode, int flags) noexcept {
  return router::at_place(folder, path, [&](const char* place) {
    return real().faccessat(folder, place, mode, flags);
  });
}

int stat(const char* path, struct stat* result) noexcept {
  return router::at_place(AT_FDCWD, path,
                          [&](const char* place) { return real().stat(place, result); });
}
int stat64(const char* path, struct stat64* result) noexcept {
  return ::stat(path, reinterpret_cast<struct stat*>(result));
}
int lstat(const char* path, struct stat* result) noexcept {
  return router::at_place(AT_FDCWD, path,
                          [&](const char* place) { return real().lstat(place, result); });
}
int lstat64(const char* path, struct stat64* result) noexcept {
  return ::lstat(path, reinterpret_cast<struct stat*>(result));
}
int fstatat(int folder, const char* path, struct stat* result, int flags) noexcept {
  return router::at_place(folder, path, [&](const char* place) {
    return real().fstatat(folder, place, result, flags);
  });
}
int fstatat64(int folder, const char* path, struct stat64* result, int flags) noexcept {
  return ::fstatat(folder, path, reinterpret_cast<struct stat*>(result), flags);
}
int statx(int folder, const char* path, int flags, unsigned mask, struct statx* result) noexcept {
  return router::at_place(folder, path, [&](const char* place) {
    return real().statx(folder, place, flags, mask, result);
  });
}

int __xstat(int /*version*/, const char* path, struct stat* result) noexcept {
  return ::stat(path, result);
}
int __xstat64(int /*version*/, const char* path, struct stat64* result) noexcept {
  return ::stat64(path, result);
}
int __lxstat(int /*version*/, const char* path, struct stat* result) noexcept {
  return ::lstat(path, result);
}
int __lxstat64(int /*version*/, const char* path, struct stat64* result) noexcept {
  return ::lstat64(path, result);
}
int __fxstatat(int /*version*/, int folder, const char* path, struct stat* result,
               int flags) noexcept {
  return ::fstatat(folder, path, result, flags);
}
int __fxstatat64(int /*version*/, int folder, const char* path, struct stat64* result,
                 int flags) noexcept {
  return ::fstatat64(folder, path, result, flags);
}

int unlink(const char* path) noexcept {
  return router::at_file(AT_FDCWD, path, [](const char* place) { return real().unlink(place); });
}
int unlinkat(int folder, const char* path, int flags) noexcept {
  return router::at_file(folder, path,
                         [&](const char* place) { return real().unlinkat(folder, place, flags); });
}
int remove(const char* path) noexcept {
  return router::at_file(AT_FDCWD, path, [](const char* place) { return real().remove(place); });
}
int rename(const char* from, const char* to) noexcept {
  return router::rename({AT_FDCWD, from}, {AT_FDCWD, to}, real().rename);
}
int renameat(int from_folder, const char* from, int to_folder, const char* to) noexcept {
  return router::rename({from_folder, from}, {to_folder, to}, [&](const char* a, const char* b) {
    return real().renameat(from_folder, a, to_folder, b);
  });
}
int renameat2(int from_folder, const char* from, int to_folder, const char* to,
              unsigned flags) noexcept {
  return router::rename({from_folder, from}, {to_folder, to}, [&](const char* a, const char* b) {
    return real().renameat2(from_folder, a, to_folder, b, flags);
  });
}
int truncate(const char* path, off_t length) noexcept {
  return router::at_file(AT_FDCWD, path,
                         [&](const char* place) { return real().truncate(place, length); });
}
int truncate64(const char* path, off64_t length) noexcept { return ::truncate(path, length); }

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
#pragma GCC visibility pop
