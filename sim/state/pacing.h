// Real time and a camera's clock beside each other.
#ifndef KELVO_SIM_STATE_PACING_H
#define KELVO_SIM_STATE_PACING_H

#include <chrono>

#include "sim/common/clock.h"
#include "sim/state/shared_settings.h"

namespace kelvo::sim {

/// How far a clock that goes by itself has come in so much real time.
camera::Time passed(const ClockSetting& clock, std::chrono::nanoseconds real);

/// How far the camera's clock may be ahead of real time because of what transfers took on their wires. They
/// pass without a sleep until that is worth one: a sleep costs the processor a hundred times what a
/// transfer does.
inline constexpr std::chrono::milliseconds longest_lead{20};
bool worth_a_sleep(const ClockSetting& clock, camera::Time lead);

/// Sleeps until so much has passed on a clock that goes by itself. 0, or -EINTR after a signal.
/// Straight to the kernel, past whatever stands in the place of libc's sleeps.
int sleep_by(const ClockSetting& clock, camera::Time time);
/// The same to the end, whatever signals come.
void sleep_through(const ClockSetting& clock, camera::Time time);

}  // namespace kelvo::sim

#endif
