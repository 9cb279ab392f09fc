// Locks on single bytes of a shared memory object's file. The kernel lets go of them when the last
// descriptor of an open file goes, however its processes end.
#ifndef KELVO_SIM_STATE_BYTE_LOCK_H
#define KELVO_SIM_STATE_BYTE_LOCK_H

#include <cstdint>

namespace kelvo::sim::state {

enum class Wait : bool { no, yes };

/// Whether the byte is ours now.
bool lock_byte(int descriptor, std::uint32_t byte, Wait wait);
void unlock_byte(int descriptor, std::uint32_t byte);
/// Whether another open file has one of these bytes locked.
bool any_locked(int descriptor, std::uint32_t first, std::uint32_t count);

}  // namespace kelvo::sim::state

#endif
