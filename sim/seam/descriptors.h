// What the descriptors of this process belong to.
#ifndef KELVO_SIM_SEAM_DESCRIPTORS_H
#define KELVO_SIM_SEAM_DESCRIPTORS_H

#include "sim/seam/host.h"

namespace kelvo::sim {

struct Opened {
  Device device = Device::none;
  bool simulated = false;  // it only holds the number: there is no device behind it
};

/// By the table alone.
Opened opened_at(int descriptor);
/// Asks the kernel as well: a descriptor may come from another process, or by a call that nobody saw.
Opened find_opened(int descriptor);
void set_opened(int descriptor, Opened opened);

/// A descriptor that holds the number of a simulated device, and can be told from any other's.
int open_placeholder(Device device, bool close_on_exec);

/// The highest number that the table has; what lies above is found out each time.
inline constexpr int highest_descriptor = 65535;

}  // namespace kelvo::sim

#endif
