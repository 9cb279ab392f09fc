// One transfer on each device in words; `decoded` has its device already.
#ifndef KELVO_SIM_TRACE_FRAMES_H
#define KELVO_SIM_TRACE_FRAMES_H

#include <algorithm>

#include "sim/trace/decoder.h"
#include "sim/trace/text.h"

namespace kelvo::sim::trace {

/// The bytes that are kept.
inline Bytes sent_of(const Event& event) {
  return Bytes(event.sent).first(std::min<std::size_t>(event.sent_length, event.sent.size()));
}
inline Bytes received_of(const Event& event) {
  return Bytes(event.received)
      .first(std::min<std::size_t>(event.received_length, event.received.size()));
}

/// A frame that has no form.
inline void decode_bytes(const Event& event, Decoded& decoded) {
  decoded.kind = "frame";
  decoded.value = counted_bytes(sent_of(event), event.sent_length);
}

void decode_lens_frame(const Event& event, Decoded& decoded);
void decode_boot_frame(const Event& event, Decoded& decoded);
void decode_payload(const Event& event, Decoded& decoded);
void decode_head_request(const Event& event, Decoded& decoded);

}  // namespace kelvo::sim::trace

#endif
