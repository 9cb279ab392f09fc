#ifndef KELVO_SIM_STATE_BUS_KEY_H
#define KELVO_SIM_STATE_BUS_KEY_H

#include <sys/types.h>

#include <string>

namespace kelvo::sim {

/// The key of the bus lock's semaphore set: that of the folder of the camera's files. A negative error
/// number without the folder.
key_t bus_key_of(const std::string& folder);
/// Whether there is a set of a folder's key.
bool has_bus_lock(const std::string& folder);
/// Removes the set of a key, if there is one.
void remove_bus_lock(key_t key);

}  // namespace kelvo::sim

#endif
