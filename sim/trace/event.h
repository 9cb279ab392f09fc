// One line of a trace before it is decoded: what a program did to a device, and what came of it.
#ifndef KELVO_SIM_TRACE_EVENT_H
#define KELVO_SIM_TRACE_EVENT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

namespace kelvo::sim::trace {

/// What somebody turned to: the lens controller's device, the PT5111's own, the head's, or the shell
/// for the reset line.
enum class Wire : std::uint8_t { lens, pt5111, head, reset_line };

enum class Act : std::uint8_t { open, close, speed, transfer, shell };

struct Event {
  static constexpr std::size_t most_sent = 48;
  static constexpr std::size_t most_received = 22;

  std::int64_t time;  // nanoseconds, when it began
  std::int32_t pid;
  std::uint32_t process;  // 1 for the first that did anything
  std::int32_t result;    // a negative one is an error number; of a shell command the wait status
  std::uint32_t sent_length;
  std::uint32_t received_length;
  std::uint32_t violation;   // the number of the first that was committed by it, from 0
  std::uint16_t violations;  // and how many there were
  std::uint16_t slave;       // of a request to the head
  std::uint16_t messages;    // and how many messages it has
  Wire wire;
  Act act;
  std::uint8_t module;  // a wire::LensModule whose program runs; 0: none does, or nobody knows
  std::int8_t family;   // the wire::HeadFamily
  // The first bytes. Of a speed request the hertz, of a shell command its text.
  std::array<std::uint8_t, most_sent> sent;
  std::array<std::uint8_t, most_received> received;
};
static_assert(std::is_trivially_copyable_v<Event>);
static_assert(sizeof(Event) == 112);

/// Takes bytes down behind those that are there; all are counted, and the first kept. A null pointer has
/// no bytes to keep.
void add_sent(Event& event, std::span<const std::uint8_t> bytes);
void add_received(Event& event, std::span<const std::uint8_t> bytes);

}  // namespace kelvo::sim::trace

#endif
