#include "sim/trace/ring.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <memory>

namespace {

using kelvo::sim::trace::Event;
using kelvo::sim::trace::Reader;
using kelvo::sim::trace::Ring;

Event event_at(std::int64_t time) {
  Event event{};
  event.time = time;
  event.sent_length = static_cast<std::uint32_t>(time);
  return event;
}

void fill(Ring& ring, std::int64_t from, std::int64_t to) {
  for (std::int64_t time = from; time < to; ++time) ring.add(event_at(time));
}

TEST(Events, KeepTheFirstBytesAndCountThemAll) {
  Event event{};
  std::array<std::uint8_t, 100> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i + 1);
  add_sent(event, std::span(bytes).first(40));
  add_sent(event, std::span(bytes).last(60));
  EXPECT_EQ(event.sent_length, 100u);
  EXPECT_EQ(event.sent[39], 40);
  EXPECT_EQ(event.sent[40], 41);
  EXPECT_EQ(event.sent[47], 48);
  EXPECT_EQ(event.received[0], 0);
  add_received(event, bytes);
  add_received(event, bytes);
  EXPECT_EQ(event.received_length, 200u);
  EXPECT_EQ(event.received[21], 22);
}

TEST(Events, HaveNoBytesOfANullPointer) {
  Event event{};
  add_sent(event, {static_cast<const std::uint8_t*>(nullptr), 7});
  EXPECT_EQ(event.sent_length, 7u);
  EXPECT_EQ(event.sent[0], 0);
}

TEST(Ring, IsEmptyAtFirst) {
  const auto ring = std::make_unique<Ring>();
  Reader reader(*ring);
  Event event{};
  EXPECT_FALSE(reader.next(event));
  EXPECT_EQ(reader.lost(), 0u);
  EXPECT_EQ(ring->total(), 0u);
}

TEST(Ring, GivesEventsInTheirOrder) {
  const auto ring = std::make_unique<Ring>();
  Reader reader(*ring);
  Event event{};
  fill(*ring, 10, 13);
  for (std::int64_t time = 10; time < 13; ++time) {
    ASSERT_TRUE(reader.next(event));
    EXPECT_EQ(event.time, time);
    EXPECT_EQ(reader.number(), static_cast<std::uint64_t>(time) - 10);
  }
  EXPECT_FALSE(reader.next(event));
  fill(*ring, 13, 14);
  ASSERT_TRUE(reader.next(event));
  EXPECT_EQ(event.time, 13);
  EXPECT_EQ(event.sent_length, 13u);
}

TEST(Ring, KeepsTheLast8192) {
  const auto ring = std::make_unique<Ring>();
  fill(*ring, 0, 8192);
  Reader all(*ring);
  Event event{};
  ASSERT_TRUE(all.next(event));
  EXPECT_EQ(event.time, 0);
  EXPECT_EQ(all.lost(), 0u);

  fill(*ring, 8192, 8202);
  Reader late(*ring);
  ASSERT_TRUE(late.next(event));
  EXPECT_EQ(event.time, 10);
  EXPECT_EQ(late.number(), 10u);
  EXPECT_EQ(late.lost(), 10u);
  EXPECT_EQ(late.lost(), 0u);
}

TEST(Ring, TellsAReaderThatWasOvertakenWhatItMissed) {
  const auto ring = std::make_unique<Ring>();
  fill(*ring, 0, 5);
  Reader reader(*ring);
  Event event{};
  for (int i = 0; i < 5; ++i) ASSERT_TRUE(reader.next(event));
  fill(*ring, 5, 5 + 8192 + 3);
  ASSERT_TRUE(reader.next(event));
  EXPECT_EQ(event.time, 8);
  EXPECT_EQ(reader.lost(), 3u);
  int rest = 0;
  while (reader.next(event)) ++rest;
  EXPECT_EQ(rest, 8191);
  EXPECT_EQ(event.time, 8199);
  EXPECT_EQ(reader.lost(), 0u);
}

TEST(Ring, LeavesOutAllButTheLast) {
  const auto ring = std::make_unique<Ring>();
  fill(*ring, 0, 20);
  Reader reader(*ring);
  reader.skip_to_last(100);
  Event event{};
  ASSERT_TRUE(reader.next(event));
  EXPECT_EQ(event.time, 0);
  reader.skip_to_last(2);
  ASSERT_TRUE(reader.next(event));
  EXPECT_EQ(event.time, 18);
  EXPECT_EQ(reader.lost(), 0u);
  reader.skip_to_last(0);
  EXPECT_FALSE(reader.next(event));
}

TEST(Ring, SaysOfAnEventThatItIsNotThereYetOrNoMore) {
  const auto ring = std::make_unique<Ring>();
  fill(*ring, 0, 8193);
  Event event{};
  EXPECT_EQ(ring->read(0, event), Ring::Reading::overwritten);
  EXPECT_EQ(ring->read(1, event), Ring::Reading::done);
  EXPECT_EQ(ring->read(8193, event), Ring::Reading::not_yet);
}

TEST(Ring, NumbersProcessesFromOne) {
  const auto ring = std::make_unique<Ring>();
  EXPECT_EQ(ring->next_process(), 1u);
  EXPECT_EQ(ring->next_process(), 2u);
}

TEST(Ring, TakesTheEventsOfSeveralProcessesAtOnce) {
  constexpr int processes = 4;
  constexpr int each = 1000;
  void* const memory =
      mmap(nullptr, sizeof(Ring), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(memory, MAP_FAILED);
  auto& ring = *static_cast<Ring*>(memory);
  for (int process = 0; process < processes; ++process) {
    if (fork() != 0) continue;
    const std::uint32_t number = ring.next_process();
    for (int i = 0; i < each; ++i) {
      Event event = event_at(i);
      event.process = number;
      ring.add(event);
    }
    _exit(0);
  }
  for (int process = 0; process < processes; ++process) wait(nullptr);

  Reader reader(ring);
  Event event{};
  std::array<std::int64_t, processes + 1> next{};
  while (reader.next(event)) {
    ASSERT_GE(event.process, 1u);
    ASSERT_LE(event.process, 4u);
    EXPECT_EQ(event.time, next[event.process]++);
  }
  for (int process = 1; process <= processes; ++process) EXPECT_EQ(next[process], each);
  EXPECT_EQ(reader.lost(), 0u);
  munmap(memory, sizeof(Ring));
}

}  // namespace
