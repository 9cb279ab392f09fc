#ifndef KELVO_LENS_MOTORS_COMMAND_BLOCK_H
#define KELVO_LENS_MOTORS_COMMAND_BLOCK_H

#include <cstdint>

#include "lens/motors/motor_state.h"

namespace kelvo::lens {

/// A motor that is driven by a run of commands of the controller's program.
struct CommandBlock {
  const Motor* motor;
  std::uint8_t direction;
  std::uint8_t mode;
  std::uint8_t rate;
  std::uint8_t profile;
  std::uint8_t count;
  std::uint8_t drive;
  std::uint8_t enable;
  std::uint8_t start;
  std::uint32_t top_rate;          // at speed 255, before the rate scale
  std::uint32_t rate_scale;        // units of the rate word for each step a second
  std::uint32_t first_move_delay;  // ms
};

struct BlockMove {
  Direction direction;
  std::uint8_t mode;
  std::uint32_t enable_delay;  // ms before the coils are energised for a first move
};

extern const CommandBlock zoom1_block;
extern const CommandBlock zoom3_block;

/// Programs and starts a move; the status of the start command.
std::uint32_t run_command_block(const CommandBlock& block, const BlockMove& move,
                                std::uint8_t speed, std::uint32_t steps);

}  // namespace kelvo::lens

#endif
