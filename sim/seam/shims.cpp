// The libc names that are intercepted, and nothing else: each hands its arguments to the router. The
// sleeping ones, and those that go by a path or a descriptor, stand in files of their own.
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/sem.h>

#include "sim/seam/router.h"

namespace router = kelvo::sim::router;

#pragma GCC visibility push(default)
extern "C" {

int system(const char* command) { return router::system(command); }

FILE* popen(const char* command, const char* mode) { return router::popen(command, mode); }

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

int semtimedop(int semid, sembuf* operations, size_t count, const timespec* timeout) noexcept {
  return router::semop(semid, {operations, count}, timeout);
}

}  // extern "C"
#pragma GCC visibility pop
