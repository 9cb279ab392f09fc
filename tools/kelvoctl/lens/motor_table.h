// The lens motors: what the library has for each, and which module has what.
#ifndef KELVO_TOOLS_KELVOCTL_LENS_MOTOR_TABLE_H
#define KELVO_TOOLS_KELVOCTL_LENS_MOTOR_TABLE_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "tools/kelvoctl/common/by_module.h"

namespace kelvo::ctl {

enum class Stepping : std::uint8_t { plain, micro, two_phase };
inline constexpr std::size_t steppings = 3;

/// One way to move a motor in one direction.
struct MoveWay {
  std::uint32_t (*start)(std::uint8_t speed, std::uint32_t steps) = nullptr;
  ByModule<std::uint32_t> most_steps;  // 0: not on this module
};

struct MoveWays {
  MoveWay forward;
  MoveWay backward;
};

/// How a counter can be set.
enum class Preset : std::uint8_t {
  none,
  zero,    // cleared, whatever value is given
  word,    // 16 bits
  folded,  // 15 bits, which the controller has in another order than they are read in
  whole,   // 31 bits: it is read without its sign
};

inline constexpr int no_sensor = -1;

struct Motor {
  const char* name;
  const char* title;
  std::array<MoveWays, steppings> ways;
  std::uint32_t (*count)();
  std::uint8_t (*preset)(std::uint32_t count);
  std::uint8_t (*status)(std::uint8_t* running);
  std::uint32_t (*power_off)();
  Fitted counted;
  ByModule<Preset> presets;
  ByModule<int> sensor;          // the usual number of its photo-interrupter
  ByModule<std::uint8_t> slow;   // a speed of some 100 steps a second
  Fitted interrupter_at_pt5111;  // which has a supply of its own

  constexpr const MoveWays& ways_of(Stepping stepping) const {
    return ways[static_cast<std::size_t>(stepping)];
  }
  constexpr bool is_on(LensModule module) const {
    return ways_of(Stepping::plain).forward.most_steps.on(module) != 0;
  }
};

constexpr std::size_t motors = 4;
extern const std::array<Motor, motors> motor_table;

/// The greatest count that can be set: 0 where there is only the count 0.
std::uint32_t greatest_count(Preset preset);
/// The count and what stands for it in the controller: each makes the other of it.
std::uint32_t folded_count(std::uint32_t count);

}  // namespace kelvo::ctl

#endif
