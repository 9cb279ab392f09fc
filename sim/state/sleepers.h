// The sleep clock of several processes. Each sleeper wakes up at the moment at which it fell asleep plus
// its time. The clock goes on to the earliest of these once no program is left to wait for: every other
// one is asleep too, or has not called the camera for a while, or is dead. A transfer moves it on as well,
// by its own time and at once.
#ifndef KELVO_SIM_STATE_SLEEPERS_H
#define KELVO_SIM_STATE_SLEEPERS_H

#include "sim/state/attachment.h"

namespace kelvo::sim::state {

/// How long a clock waits for a program that neither sleeps nor calls.
inline constexpr std::chrono::milliseconds longest_wait{20};

/// A process has called: the clock waits for it again.
void touch(Attachment& attachment);

/// Wakes up whose moment has come. Under the lock.
void wake_sleepers(Layout& layout);

/// Returns when the time has passed. Without the lock.
void sleep_together(Attachment& attachment, camera::Time time);

/// Whether the process of this number sleeps. Under the lock.
bool asleep(const Layout& layout, std::uint32_t number);

}  // namespace kelvo::sim::state

#endif
