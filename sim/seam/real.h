// The real libc functions behind the intercepted names.
#ifndef KELVO_SIM_SEAM_REAL_H
#define KELVO_SIM_SEAM_REAL_H

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/inotify.h>
#include <sys/ipc.h>
#include <sys/select.h>
#include <sys/sem.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <threads.h>
#include <time.h>
#include <unistd.h>
#include <utime.h>

namespace kelvo::sim {

/// Null where the C library does not have the name: then no program can have called it.
struct RealLibc {
  int (*open)(const char*, int, ...);
  int (*openat)(int, const char*, int, ...);
  FILE* (*fopen)(const char*, const char*);
  FILE* (*freopen)(const char*, const char*, FILE*);
  int (*fclose)(FILE*);
  int (*access)(const char*, int);
  int (*eaccess)(const char*, int);
  int (*faccessat)(int, const char*, int, int);
  int (*stat)(const char*, struct stat*);
  int (*lstat)(const char*, struct stat*);
  int (*fstatat)(int, const char*, struct stat*, int);
  int (*statx)(int, const char*, int, unsigned, struct statx*);
  int (*unlink)(const char*);
  int (*unlinkat)(int, const char*, int);
  int (*remove)(const char*);
  int (*rename)(const char*, const char*);
  int (*renameat)(int, const char*, int, const char*);
  int (*renameat2)(int, const char*, int, const char*, unsigned);
  int (*truncate)(const char*, off_t);

  int (*close)(int);
  int (*close_range)(unsigned, unsigned, int);
  void (*closefrom)(int);
  int (*dup)(int);
  int (*dup2)(int, int);
  int (*dup3)(int, int, int);
  int (*fcntl)(int, int, ...);
  int (*ioctl)(int, unsigned long, ...);
  ssize_t (*read)(int, void*, size_t);
  ssize_t (*write)(int, const void*, size_t);
  int (*fsync)(int);
  int (*fdatasync)(int);
  int (*syncfs)(int);
  void (*sync)();

  int (*usleep)(useconds_t);
  unsigned (*sleep)(unsigned);
  int (*nanosleep)(const timespec*, timespec*);
  int (*clock_nanosleep)(clockid_t, int, const timespec*, timespec*);
  int (*thrd_sleep)(const timespec*, timespec*);
  int (*select)(int, fd_set*, fd_set*, fd_set*, timeval*);
  int (*pselect)(int, fd_set*, fd_set*, fd_set*, const timespec*, const sigset_t*);
  int (*poll)(pollfd*, nfds_t, int);
  int (*ppoll)(pollfd*, nfds_t, const timespec*, const sigset_t*);

  int (*system)(const char*);
  FILE* (*popen)(const char*, const char*);
  key_t (*ftok)(const char*, int);
  int (*semget)(key_t, int, int);
  int (*semctl)(int, int, int, ...);
  int (*semop)(int, sembuf*, size_t);
  int (*semtimedop)(int, sembuf*, size_t, const timespec*);

#define KELVO_NAME(name) decltype(&::name) name;
#include "sim/seam/real_names.inc"
#undef KELVO_NAME
};

/// Looked up on first use, once for the process.
const RealLibc& real();

}  // namespace kelvo::sim

#endif
