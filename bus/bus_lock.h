#ifndef KELVO_BUS_BUS_LOCK_H
#define KELVO_BUS_BUS_LOCK_H

#include <cstdint>

namespace kelvo::bus {

/// Holds the bus lock for as long as it lives: one SPI transfer with its retry.
///
/// Key and identifier are made anew for every step, and no failure is looked at: a transfer whose
/// lock cannot be had is made all the same (deliberate).
class BusLock {
 public:
  BusLock();
  ~BusLock();
  BusLock(const BusLock&) = delete;
  BusLock& operator=(const BusLock&) = delete;
};

}  // namespace kelvo::bus

#endif
