#include "sim/trace/event.h"

#include <algorithm>

namespace kelvo::sim::trace {
namespace {

void add(std::span<std::uint8_t> kept, std::uint32_t& length, std::span<const std::uint8_t> bytes) {
  const std::size_t begin = std::min<std::size_t>(length, kept.size());
  const std::size_t room = std::min(bytes.size(), kept.size() - begin);
  if (bytes.data() != nullptr) std::copy_n(bytes.begin(), room, kept.subspan(begin).begin());
  length += static_cast<std::uint32_t>(bytes.size());
}

}  // namespace

void add_sent(Event& event, std::span<const std::uint8_t> bytes) {
  add(event.sent, event.sent_length, bytes);
}

void add_received(Event& event, std::span<const std::uint8_t> bytes) {
  add(event.received, event.received_length, bytes);
}

}  // namespace kelvo::sim::trace
