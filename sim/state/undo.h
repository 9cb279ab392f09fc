// All or nothing: the parts of a camera that are about to change are copied before, and put back if
// the change does not come to its end. Calls are made under the lock.
#ifndef KELVO_SIM_STATE_UNDO_H
#define KELVO_SIM_STATE_UNDO_H

#include "sim/state/layout.h"

namespace kelvo::sim::state {

void begin_change(Layout& layout, const camera::Parts& parts);
void commit(Layout& layout);
/// Puts everything back. Whoever dies in the middle of it leaves it to the next.
void put_back(Layout& layout);
/// Ends what somebody began who died.
inline void recover(Layout& layout) {
  if (layout.undo.count.load(std::memory_order_relaxed) == 0) return;
  put_back(layout);
  commit(layout);
}

}  // namespace kelvo::sim::state

#endif
