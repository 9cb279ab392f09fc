// Sorts the intercepted calls: what belongs to the camera goes to the installed host, everything else
// to the real libc. Here, and only here, an answer becomes a libc result with errno.
#ifndef KELVO_SIM_SEAM_ROUTER_H
#define KELVO_SIM_SEAM_ROUTER_H

#include <stdio.h>
#include <sys/sem.h>

#include <cstddef>
#include <span>

#include "sim/seam/host.h"

namespace kelvo::sim::router {

int open(const char* path, int flags, mode_t mode);
int close(int descriptor);
int ioctl(int descriptor, unsigned long request, void* argument);

/// Whether the host lets the time pass; then `result` is what the sleeping function returns.
bool delay(SleepCall call, std::chrono::nanoseconds time, int& result);

int system(const char* command);
key_t ftok(const char* path, int project);
int semget(key_t key, int members, int flags);
int semctl(int semid, int member, int command, long argument);
int semop(int semid, std::span<sembuf> operations);
FILE* fopen(const char* path, const char* mode);
int fclose(FILE* stream);
int fsync(int descriptor);

}  // namespace kelvo::sim::router

#endif
