#include "sim/seam/real.h"

#include <dlfcn.h>

#include <cstdlib>

namespace kelvo::sim {
namespace {

template <typename Function>
void look_up(Function& function, const char* name) {
  function = reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
  if (function == nullptr) std::abort();
}

RealLibc look_up_all() {
  RealLibc libc{};
  look_up(libc.open, "open");
  look_up(libc.close, "close");
  look_up(libc.ioctl, "ioctl");
  look_up(libc.usleep, "usleep");
  look_up(libc.sleep, "sleep");
  look_up(libc.nanosleep, "nanosleep");
  look_up(libc.clock_nanosleep, "clock_nanosleep");
  look_up(libc.system, "system");
  look_up(libc.ftok, "ftok");
  look_up(libc.semget, "semget");
  look_up(libc.semctl, "semctl");
  look_up(libc.semop, "semop");
  look_up(libc.fopen, "fopen");
  look_up(libc.fclose, "fclose");
  look_up(libc.fsync, "fsync");
  return libc;
}

}  // namespace

const RealLibc& real() {
  static const RealLibc libc = look_up_all();
  return libc;
}

}  // namespace kelvo::sim
