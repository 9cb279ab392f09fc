// The libc names that are intercepted, and nothing else: each hands its arguments to the router.
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/sem.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>

#include "sim/seam/real.h"
#include "sim/seam/router.h"

using kelvo::sim::real;
using kelvo::sim::SleepCall;
namespace router = kelvo::sim::router;

namespace {

using std::chrono::microseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;

nanoseconds duration(const timespec& time) {
  return seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

/// How long an absolute sleep has to go.
nanoseconds until(clockid_t clock, const timespec& wake_up) {
  timespec now{};
  clock_gettime(clock, &now);
  return std::max(duration(wake_up) - duration(now), nanoseconds::zero());
}

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

int open(const char* path, int flags, ...) {
  mode_t mode = 0;
  if ((flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE) {
    va_list arguments;
    va_start(arguments, flags);
    mode = va_arg(arguments, mode_t);
    va_end(arguments);
  }
  return router::open(path, flags, mode);
}

int close(int descriptor) { return router::close(descriptor); }

int ioctl(int descriptor, unsigned long request, ...) noexcept {
  va_list arguments;
  va_start(arguments, request);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  return router::ioctl(descriptor, request, argument);
}

int usleep(useconds_t time) {
  int result = 0;
  if (router::delay(SleepCall::usleep, microseconds(time), result)) return result;
  return real().usleep(time);
}

unsigned sleep(unsigned time) {
  int result = 0;
  if (router::delay(SleepCall::sleep, seconds(time), result)) return result < 0 ? time : 0;
  return real().sleep(time);
}

int nanosleep(const timespec* time, timespec* remaining) {
  int result = 0;
  if (router::delay(SleepCall::nanosleep, duration(*time), result)) return result;
  return real().nanosleep(time, remaining);
}

int clock_nanosleep(clockid_t clock, int flags, const timespec* time, timespec* remaining) {
  const bool absolute = (flags & TIMER_ABSTIME) != 0;
  const nanoseconds length = absolute ? until(clock, *time) : duration(*time);
  int result = 0;
  // This one returns the error number itself.
  if (router::delay(SleepCall::clock_nanosleep, length, result)) return result < 0 ? errno : 0;
  return real().clock_nanosleep(clock, flags, time, remaining);
}

int system(const char* command) { return router::system(command); }

key_t ftok(const char* path, int project) noexcept { return router::ftok(path, project); }

int semget(key_t key, int members, int flags) noexcept {
  return router::semget(key, members, flags);
}

int semctl(int semid, int member, int command, ...) noexcept {
  va_list arguments;
  va_start(arguments, command);
  const long argument = va_arg(arguments, long);
  va_end(arguments);
  return router::semctl(semid, member, command, argument);
}

int semop(int semid, sembuf* operations, size_t count) noexcept {
  return router::semop(semid, {operations, count});
}

FILE* fopen(const char* path, const char* mode) { return router::fopen(path, mode); }

int fclose(FILE* stream) { return router::fclose(stream); }

int fsync(int descriptor) { return router::fsync(descriptor); }

}  // extern "C"
#pragma GCC visibility pop
