// The latest events, in memory that processes share.
#ifndef KELVO_SIM_TRACE_RING_H
#define KELVO_SIM_TRACE_RING_H

#include <array>
#include <atomic>
#include <cstdint>

#include "sim/trace/event.h"

namespace kelvo::sim::trace {

/// Any number of processes add to it and read it at once, without a lock. Memory that is all zeros is an
/// empty ring. Events have running numbers from 0.
class Ring {
 public:
  static constexpr std::uint64_t capacity = 8192;

  void add(const Event& event);
  /// A number for a process that has none yet, from 1.
  std::uint32_t next_process() { return processes_.fetch_add(1) + 1; }

  /// How many events there ever were.
  std::uint64_t total() const { return total_.load(std::memory_order_acquire); }
  enum class Reading : std::uint8_t { done, not_yet, overwritten };
  Reading read(std::uint64_t number, Event& event) const;

 private:
  using Words = std::array<std::uint64_t, sizeof(Event) / sizeof(std::uint64_t)>;
  static_assert(sizeof(Words) == sizeof(Event));

  struct Entry {
    std::atomic<std::uint64_t> count = 0;  // the event's number + 1; 0 while it is being written
    std::array<std::atomic<std::uint64_t>, std::tuple_size_v<Words>> words{};
  };

  std::atomic<std::uint64_t> total_ = 0;
  std::atomic<std::uint32_t> processes_ = 0;
  std::array<Entry, capacity> entries_{};
};
static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

/// Goes through a ring from its beginning, and tells what it came too late for.
class Reader {
 public:
  explicit Reader(const Ring& ring) : ring_(ring) {}

  /// The next event, or false when there is none yet.
  bool next(Event& event);
  /// The number of the event that next() gave last.
  std::uint64_t number() const { return position_ - 1; }
  /// How many events were overwritten before they could be read, since this was last asked.
  std::uint64_t lost();
  /// Leaves out all but the last ones that there are now; they do not count as lost.
  void skip_to_last(std::uint64_t events);

 private:
  Ring::Reading read(Event& event) const;

  const Ring& ring_;
  std::uint64_t position_ = 0;
  std::uint64_t lost_ = 0;
};

}  // namespace kelvo::sim::trace

#endif
