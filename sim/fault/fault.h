// A fault: which transfers it waits for, and what it does to them.
#ifndef KELVO_SIM_FAULT_FAULT_H
#define KELVO_SIM_FAULT_FAULT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <type_traits>

#include "sim/fault/transfer.h"

namespace kelvo::sim::fault {

enum class EffectKind : std::uint8_t {
  error,  // the transfer fails, and the device gets nothing
  flip,   // one bit arrives as another
  busy,   // a status says "runs"
  reset,  // the controller restarts, and the frame is lost
  full,   // a file opens, and what is written to it finds no room
  kill,   // the process is killed in the middle of it
};

struct Effect {
  EffectKind kind = EffectKind::error;
  int error = 0;           // its number
  std::uint32_t byte = 0;  // of a flip
  std::uint8_t bit = 0;
  bool received = false;  // it is the program that gets the flipped bit
};

/// A register's number with each family; -1: it has none of this name.
struct Register {
  std::int16_t vetra;
  std::int16_t tasmere;
};

struct Fault {
  static constexpr std::size_t longest_text = 127;

  std::uint32_t number = 0;  // stable, from 1; 0: not in a table

  // What a transfer must be like.
  Port port = Port::spi;
  Frames frames = 0;
  std::optional<std::uint8_t> code{};
  std::optional<Register> reg{};
  std::optional<std::uint16_t> slave{};
  std::uint8_t files = 0;  // of camera_files, a bit each; 0: any

  // Which of these it strikes: the nth, then every so-many-th, and so many in all.
  std::uint64_t nth = 1;
  std::uint64_t every = 1;
  std::uint64_t times = 0;  // 0: no end

  Effect effect{};
  std::uint64_t matches = 0;
  std::uint64_t struck = 0;
  std::array<char, longest_text + 1> text{};  // as it was given, words separated by blanks

  /// Whether a transfer is one of those that it waits for.
  bool waits_for(const Transfer& transfer) const;
  /// Whether it strikes at the match that was counted last.
  bool due() const;
};

// Faults can lie in memory that processes share.
static_assert(std::is_trivially_copyable_v<Fault>);

}  // namespace kelvo::sim::fault

#endif
