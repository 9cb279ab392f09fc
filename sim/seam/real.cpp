#include "sim/seam/real.h"

#include <dlfcn.h>

namespace kelvo::sim {
namespace {

template <typename Function>
void look_up(Function& function, const char* name) {
  function = reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

void look_up_paths(RealLibc& libc) {
  look_up(libc.open, "open");
  look_up(libc.openat, "openat");
  look_up(libc.fopen, "fopen");
  look_up(libc.freopen, "freopen");
  look_up(libc.fclose, "fclose");
  look_up(libc.access, "access");
  look_up(libc.eaccess, "eaccess");
  look_up(libc.faccessat, "faccessat");
  look_up(libc.stat, "stat");
  look_up(libc.lstat, "lstat");
  look_up(libc.fstatat, "fstatat");
  look_up(libc.statx, "statx");
  look_up(libc.unlink, "unlink");
  look_up(libc.unlinkat, "unlinkat");
  look_up(libc.remove, "remove");
  look_up(libc.rename, "rename");
  look_up(libc.renameat, "renameat");
  look_up(libc.renameat2, "renameat2");
  look_up(libc.truncate, "truncate");
}

void look_up_descriptors(RealLibc& libc) {
  look_up(libc.close, "close");
  look_up(libc.close_range, "close_range");
  look_up(libc.closefrom, "closefrom");
  look_up(libc.dup, "dup");
  look_up(libc.dup2, "dup2");
  look_up(libc.dup3, "dup3");
  look_up(libc.fcntl, "fcntl");
  look_up(libc.ioctl, "ioctl");
  look_up(libc.read, "read");
  look_up(libc.write, "write");
  look_up(libc.fsync, "fsync");
  look_up(libc.fdatasync, "fdatasync");
  look_up(libc.syncfs, "syncfs");
  look_up(libc.sync, "sync");
}

void look_up_sleeps(RealLibc& libc) {
  look_up(libc.usleep, "usleep");
  look_up(libc.sleep, "sleep");
  look_up(libc.nanosleep, "nanosleep");
  look_up(libc.clock_nanosleep, "clock_nanosleep");
  look_up(libc.thrd_sleep, "thrd_sleep");
  look_up(libc.select, "select");
  look_up(libc.pselect, "pselect");
  look_up(libc.poll, "poll");
  look_up(libc.ppoll, "ppoll");
}

void look_up_names(RealLibc& libc) {
#define KELVO_NAME(name) look_up(libc.name, #name);
#include "sim/seam/real_names.inc"
#undef KELVO_NAME
}

RealLibc look_up_all() {
  RealLibc libc{};
  look_up_paths(libc);
  look_up_descriptors(libc);
  look_up_sleeps(libc);
  look_up_names(libc);
  look_up(libc.system, "system");
  look_up(libc.popen, "popen");
  look_up(libc.ftok, "ftok");
  look_up(libc.semget, "semget");
  look_up(libc.semctl, "semctl");
  look_up(libc.semop, "semop");
  look_up(libc.semtimedop, "semtimedop");
  return libc;
}

}  // namespace

const RealLibc& real() {
  static const RealLibc libc = look_up_all();
  return libc;
}

}  // namespace kelvo::sim
