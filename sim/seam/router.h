// Sorts the intercepted calls: what belongs to the camera goes to the installed host, everything else
// to the real libc. Here, and only here, an answer becomes a libc result with errno.
#ifndef KELVO_SIM_SEAM_ROUTER_H
#define KELVO_SIM_SEAM_ROUTER_H

#include <stdio.h>
#include <sys/sem.h>
#include <time.h>

#include <cstddef>
#include <functional>
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
auto at_place(int folder, const char* path, Call call);
/// The same for calls that change what lies there. Nobody changes a simulated device's node.
template <typename Call>
auto at_file(int folder, const char* path, Call call);
/// The same for calls that make something else than a file there, which nobody does where the camera's lie.
template <typename Call>
int at_new(int folder, const char* path, Call call);
/// The camera's own spelling of a path that is there, in `buffer` or, without one, in memory of its own.
char* realpath(const char* path, char* buffer);

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
/// By sync().
void synchronise_all();
/// By syncfs(), which is for what lies where the descriptor's file does.
int synchronise_files(int descriptor);
/// Bytes have been written: they are safe at once if the file was opened so.
void written(int descriptor);
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
std::optional<FileAnswer> find_file(int folder, const char* path);
struct Path {
  int folder;
  const char* path;
};
/// By `call`, with the places at which the two really lie.
int rename(Path from, Path to, const std::function<int(const char*, const char*)>& call);
/// Whether a path is the camera's, where nothing is made; then errno is set.
bool refuses_making(int folder, const char* path);
/// The same for a second name of what lies at `of`, which the camera's have not.
bool refuses_name(Path of, Path made);
/// A value stays; a negative error number becomes -1 with errno.
int libc_result(int answer);

template <typename Call>
auto at(const std::optional<FileAnswer>& place, const char* path, Call call)
    -> decltype(call(path)) {
  if (!place) return call(path);
  return place->error < 0 ? libc_result(place->error) : call(place->real_path.c_str());
}

template <typename Call>
auto at_place(int folder, const char* path, Call call) {
  return at(find_place(folder, path), path, call);
}

template <typename Call>
auto at_file(int folder, const char* path, Call call) {
  return at(find_file(folder, path), path, call);
}

template <typename Call>
int at_new(int folder, const char* path, Call call) {
  return refuses_making(folder, path) ? -1 : call(path);
}

}  // namespace kelvo::sim::router

#endif
