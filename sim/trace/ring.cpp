#include "sim/trace/ring.h"

#include <bit>
#include <chrono>
#include <thread>
#include <utility>

namespace kelvo::sim::trace {

void Ring::add(const Event& event) {
  const auto words = std::bit_cast<Words>(event);
  const std::uint64_t number = total_.fetch_add(1, std::memory_order_acq_rel);
  Entry& entry = entries_[number % capacity];
  entry.count.store(0, std::memory_order_relaxed);
  std::atomic_thread_fence(std::memory_order_release);
  for (std::size_t i = 0; i < words.size(); ++i) {
    entry.words[i].store(words[i], std::memory_order_relaxed);
  }
  entry.count.store(number + 1, std::memory_order_release);
}

Ring::Reading Ring::read(std::uint64_t number, Event& event) const {
  const Entry& entry = entries_[number % capacity];
  const std::uint64_t before = entry.count.load(std::memory_order_acquire);
  if (before > number + 1) return Reading::overwritten;
  if (before != number + 1) return Reading::not_yet;
  Words words;
  for (std::size_t i = 0; i < words.size(); ++i) {
    words[i] = entry.words[i].load(std::memory_order_relaxed);
  }
  std::atomic_thread_fence(std::memory_order_acquire);
  if (entry.count.load(std::memory_order_relaxed) != before) return Reading::overwritten;
  event = std::bit_cast<Event>(words);
  return Reading::done;
}

bool Reader::next(Event& event) {
  while (true) {
    const std::uint64_t total = ring_.total();
    if (position_ >= total) return false;
    if (total - position_ > Ring::capacity) {
      lost_ += total - Ring::capacity - position_;
      position_ = total - Ring::capacity;
    }
    const Ring::Reading reading = read(event);
    ++position_;
    if (reading == Ring::Reading::done) return true;
    ++lost_;
  }
}

/// Whoever has a number writes at once, unless it dies in the middle of it.
Ring::Reading Reader::read(Event& event) const {
  constexpr int patience = 20;
  Ring::Reading reading = ring_.read(position_, event);
  for (int i = 0; i < patience && reading == Ring::Reading::not_yet; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    reading = ring_.read(position_, event);
  }
  return reading;
}

std::uint64_t Reader::lost() { return std::exchange(lost_, 0); }

void Reader::skip_to_last(std::uint64_t events) {
  const std::uint64_t total = ring_.total();
  if (total - position_ > events) position_ = total - events;
}

}  // namespace kelvo::sim::trace
