// Sorts the intercepted calls: what belongs to the camera goes to the installed host, everything else
// to the real libc. Here, and only here, an answer becomes a libc result with errno.
#ifndef KELVO_SIM_SEAM_ROUTER_H
#define KELVO_SIM_SEAM_ROUTER_H

#include <stdio.h>
#include <sys/sem.h>
#include <time.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "sim/seam/host.h"

namespace kelvo::sim::router {

// Paths. `folder` is what a relative path begins at, as openat() takes it.
int open(int folder, const char* path, int flags, mode_t mode);
FILE* fopen(const char* path, const char* mode);
FILE* freopen(const char* path, const char* mode, FILE* stream);
int fclose(FILE* stream);
/// Calls with the place at which something of the camera really lies, and with any other path as it is.
template <typename Call>
int at_place(int folder, const char* path, Call call);

// Descriptors.
int close(int descriptor);
int close_range(unsigned first, unsigned last, int flags);
void closefrom(int first);
int dup(int descriptor);
int dup3(int descriptor, int wanted, int flags);
int dup2(int descriptor, int wanted);
int fcntl(int descriptor, int command, void* argument);
int ioctl(int descriptor, unsigned long request, void* argument);
/// By fsync() or fdatasync(), the real one of which is the second argument.
int synchronise(int descriptor, int (*real_call)(int));
/// Whether this is a simulated device, which is neither read nor written: then errno is set.
bool refuses_bytes(int descriptor, const char* call);

/// Whether the host lets the time pass; then `result` is what the sleeping function returns.
bool delay(SleepCall call, std::chrono::nanoseconds time, int& result);
/// The same, and what is left of the time when a signal has ended it early.
bool delay(SleepCall call, std::chrono::nanoseconds time, int& result,
           std::chrono::nanoseconds& left);

int system(const char* command);
FILE* popen(const char* command, const char* mode);
key_t ftok(const char* path, int project);
int semget(key_t key, int members, int flags);
int semctl(int semid, int member, int command, long argument);
/// With a time-out, or null.
int semop(int semid, std::span<sembuf> operations, const timespec* timeout = nullptr);

/// Where a path of the camera really lies, or a negative error number; nothing for any other path.
std::optional<FileAnswer> find_place(int folder, const char* path);
int rename(const char* from, const char* to);
/// A value stays; a negative error number becomes -1 with errno.
int libc_result(int answer);

template <typename Call>
int at_place(int folder, const char* path, Call call) {
  const std::optional<FileAnswer> place = find_place(folder, path);
  if (!place) return call(path);
  return place->error < 0 ? libc_result(place->error) : call(place->real_path.c_str());
}

}  // namespace kelvo::sim::router

#endif
