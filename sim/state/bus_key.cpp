#include "sim/state/bus_key.h"

#include <sys/ipc.h>
#include <sys/sem.h>

#include <cerrno>

namespace kelvo::sim {

key_t bus_key_of(const std::string& folder) {
  constexpr int project = 'k';  // anything but 0, so that the key is never IPC_PRIVATE
  const key_t key = ftok(folder.c_str(), project);
  return key == -1 ? -errno : key;
}

bool has_bus_lock(const std::string& folder) {
  const key_t key = bus_key_of(folder);
  return key > 0 && semget(key, 0, 0) >= 0;
}

void remove_bus_lock(key_t key) {
  const int set = semget(key, 0, 0);
  if (set >= 0) semctl(set, 0, IPC_RMID);
}

}  // namespace kelvo::sim
