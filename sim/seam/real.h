// The real libc functions behind the intercepted names.
#ifndef KELVO_SIM_SEAM_REAL_H
#define KELVO_SIM_SEAM_REAL_H

#include <stdio.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <time.h>
#include <unistd.h>

namespace kelvo::sim {

struct RealLibc {
  int (*open)(const char*, int, ...);
  int (*close)(int);
  int (*ioctl)(int, unsigned long, ...);
  int (*usleep)(useconds_t);
  unsigned (*sleep)(unsigned);
  int (*nanosleep)(const timespec*, timespec*);
  int (*clock_nanosleep)(clockid_t, int, const timespec*, timespec*);
  int (*system)(const char*);
  key_t (*ftok)(const char*, int);
  int (*semget)(key_t, int, int);
  int (*semctl)(int, int, int, ...);
  int (*semop)(int, sembuf*, size_t);
  FILE* (*fopen)(const char*, const char*);
  int (*fclose)(FILE*);
  int (*fsync)(int);
};

/// Looked up on first use, once for the process.
const RealLibc& real();

}  // namespace kelvo::sim

#endif
