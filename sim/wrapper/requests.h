// What programs ask of the devices, as events for a trace. Where a device does not know a request, nobody
// looks at the bytes that it leads to.
#ifndef KELVO_SIM_WRAPPER_REQUESTS_H
#define KELVO_SIM_WRAPPER_REQUESTS_H

#include <linux/i2c.h>

#include <cstdint>
#include <span>

#include "sim/seam/host.h"
#include "sim/trace/event.h"

namespace kelvo::sim {

trace::Event open_event(Device device);
trace::Event close_event(Device device);
trace::Event transfer_event(Device device, std::span<const std::uint8_t> sent);
trace::Event speed_event(Device device, std::uint32_t hertz);
trace::Event i2c_event(Device device, std::span<const i2c_msg> messages);
trace::Event shell_event(const char* command);

/// When a request is over and its result is known: what was received, or would have been.
void note_received(trace::Event& event, std::span<const std::uint8_t> received);
void note_received(trace::Event& event, std::span<const i2c_msg> messages);
inline void nothing_more(trace::Event& /*event*/) {}

}  // namespace kelvo::sim

#endif
