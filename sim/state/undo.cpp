#include "sim/state/undo.h"

#include <cstring>

namespace kelvo::sim::state {
namespace {

std::byte* first_byte(camera::Camera& camera) { return reinterpret_cast<std::byte*>(&camera); }

/// A process is killed between two instructions, and all before it have been done: it is the compiler
/// alone that must keep the order.
void keep_order() { std::atomic_signal_fence(std::memory_order_seq_cst); }

}  // namespace

void begin_change(Layout& layout, const camera::Parts& parts) {
  std::byte* copy = layout.undo.bytes.data();
  std::uint32_t count = 0;
  for (const std::span<std::byte> part : parts) {
    layout.undo.parts[count++] = {
        static_cast<std::uint32_t>(part.data() - first_byte(layout.camera)),
        static_cast<std::uint32_t>(part.size())};
    std::memcpy(copy, part.data(), part.size());
    copy += part.size();
  }
  keep_order();
  layout.undo.count.store(count, std::memory_order_relaxed);
  keep_order();
}

void commit(Layout& layout) {
  keep_order();
  layout.undo.count.store(0, std::memory_order_relaxed);
}

void put_back(Layout& layout) {
  const std::byte* copy = layout.undo.bytes.data();
  for (std::uint32_t i = 0; i < layout.undo.count.load(std::memory_order_relaxed); ++i) {
    const UndoPart& part = layout.undo.parts[i];
    std::memcpy(first_byte(layout.camera) + part.offset, copy, part.length);
    copy += part.length;
  }
}

}  // namespace kelvo::sim::state
