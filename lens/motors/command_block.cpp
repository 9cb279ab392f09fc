#include "lens/motors/command_block.h"

#include "kelvo/bus.h"
#include "wire/lens_program.h"

namespace kelvo::lens {

namespace command = wire::command;

constexpr CommandBlock zoom1_block{
    .motor = &motor::zoom1,
    .direction = command::zoom1_direction,
    .mode = command::zoom1_mode,
    .rate = command::zoom1_rate,
    .profile = command::zoom1_profile,
    .count = command::zoom1_count,
    .drive = command::zoom1_drive,
    .enable = command::zoom1_enable,
    .start = command::zoom1_start,
    .top_rate = 960,
    .rate_scale = 1,
    .first_move_delay = 50,
};

constexpr CommandBlock zoom3_block{
    .motor = &motor::zoom3,
    .direction = command::zoom3_direction,
    .mode = command::zoom3_mode,
    .rate = command::zoom3_rate,
    .profile = command::zoom3_profile,
    .count = command::zoom3_count,
    .drive = command::zoom3_drive,
    .enable = command::zoom3_enable,
    .start = command::zoom3_start,
    .top_rate = 1320,
    .rate_scale = 8,
    .first_move_delay = 5,
};

namespace {

constexpr std::uint16_t profile_word = 25 << 8;
constexpr std::uint16_t moving_drive = 100;

std::uint8_t send_word(std::uint8_t command, std::uint32_t word) {
  return SendCommand(command, 0, 0, static_cast<std::uint8_t>(word >> 8),
                     static_cast<std::uint8_t>(word));
}

}  // namespace

std::uint32_t run_command_block(const CommandBlock& block, const BlockMove& move,
                                std::uint8_t speed, std::uint32_t steps) {
  const std::uint32_t rate = speed * block.top_rate / 255 * block.rate_scale;
  send_word(block.direction, static_cast<std::uint32_t>(move.direction));
  send_word(block.mode, move.mode);
  send_word(block.rate, rate);
  send_word(block.profile, profile_word);
  send_word(block.count, steps & 0xFFFF);  // a count has 16 bits; the rest is lost without notice
  send_word(block.drive, moving_drive);
  if (move.enable_delay != 0) block.motor->settle(move.enable_delay);
  send_word(block.enable, 1);
  block.motor->settle(block.first_move_delay);
  block.motor->mark_started();
  return send_word(block.start, 1);
}

}  // namespace kelvo::lens
