#include "bus/bus_lock.h"

#include <sys/ipc.h>
#include <sys/sem.h>

#include "kelvo/bus.h"
#include "wire/paths.h"

namespace kelvo::bus {
namespace {

std::uint32_t semaphore_set() {
  const key_t key = ftok(wire::lock_key_path, wire::lock_key_project);
  return static_cast<std::uint32_t>(makeSem(static_cast<std::uint32_t>(key)));
}

}  // namespace

BusLock::BusLock() { lockSem(semaphore_set()); }
BusLock::~BusLock() { unlockSem(semaphore_set()); }

}  // namespace kelvo::bus

std::int32_t makeSem(std::uint32_t key) {
  const int attached = semget(static_cast<key_t>(key), 0, 0);
  if (attached >= 0) return attached;
  const int created = semget(static_cast<key_t>(key), 1, IPC_CREAT | 0666);
  if (created < 0) return -1;
  return semctl(created, 0, SETVAL, 0) < 0 ? -1 : created;
}

std::int32_t lockSem(std::uint32_t semid) {
  sembuf wait_until_free_and_take[] = {{0, 0, SEM_UNDO}, {0, 1, SEM_UNDO}};
  return semop(static_cast<int>(semid), wait_until_free_and_take, 2);
}

std::int32_t unlockSem(std::uint32_t semid) {
  // A value below zero could never be waited for, so a free lock is left alone.
  if (semctl(static_cast<int>(semid), 0, GETVAL) <= 0) return -1;
  sembuf give_back = {0, -1, SEM_UNDO};
  return semop(static_cast<int>(semid), &give_back, 1);
}
