#include "lens/motors/register_move.h"

#include "kelvo/bus.h"
#include "kelvo/lens.h"
#include "lens/variant/variant.h"
#include "wire/motor_channels.h"

namespace kelvo::lens {
namespace {

using wire::MotorChannel;
namespace mode = wire::motor_mode;

constexpr std::uint32_t count_bits = 0x3FF;

/// What one module makes of one operation; the directions differ in the mode word alone.
struct RegisterMove {
  RegisterOperation operation;
  LensModule module;
  const Motor* motor;
  const MotorChannel* channel;
  std::int16_t forward_mode;
  std::int16_t backward_mode;
  std::uint32_t count_scale;
  std::uint32_t count_low_mask;
  const std::uint32_t* periods;    // a step-rate table
  std::uint32_t first_move_delay;  // ms
};

using enum RegisterOperation;
using enum LensModule;
constexpr const MotorChannel* focus_channel = &wire::focus_channel;
constexpr const MotorChannel* zoom_channel = &wire::zoom_channel;
constexpr std::int16_t phase_f = mode::phase_forward;
constexpr std::int16_t phase_b = mode::phase_backward;
constexpr std::int16_t micro_f = mode::micro_step_forward;
constexpr std::int16_t micro_b = mode::micro_step_backward;

// clang-format off
constexpr RegisterMove register_moves[] = {
  // operation        module  motor   channel        mode words        scale  mask   periods            delay
  {zoom1,             t5391,  &motor::zoom1, zoom_channel,  phase_f, phase_b, 2, 0x3FE, PPS_2_2Phase,       5},
  {focus,             de015,  &motor::focus, focus_channel, micro_f, micro_b, 8, 0x3F8, PPS_512uStepPhase, 50},
  {focus,             df033,  &motor::focus, focus_channel, micro_f, micro_b, 8, 0x3F8, PPS_512uStepPhase, 10},
  {focus,             t5391,  &motor::focus, focus_channel, phase_f, phase_b, 1, 0x3FF, PPS_1_2Phase_800,  10},
  {zoom2,             de015,  &motor::zoom2, zoom_channel,  micro_f, micro_b, 8, 0x3F8, PPS_512uStepPhase, 50},
  {zoom2,             df033,  &motor::zoom2, zoom_channel,  micro_f, micro_b, 8, 0x3F8, PPS_512uStepPhase,  5},
  {zoom2_micro_steps, de015,  &motor::zoom2, zoom_channel,  micro_f, micro_b, 1, 0x3FF, PPS_512uStepPhase, 50},
  {zoom2_micro_steps, df033,  &motor::zoom2, zoom_channel,  micro_f, micro_b, 1, 0x3FF, PPS_512uStepPhase,  5},
};
// clang-format on

const RegisterMove* find_move(RegisterOperation operation) {
  for (const RegisterMove& move : register_moves) {
    if (move.operation == operation && move.module == lens_module()) return &move;
  }
  return nullptr;
}

std::uint8_t write(std::uint8_t reg, std::uint32_t value) {
  return reg_wt16_0x0c(reg, static_cast<std::int16_t>(value));
}

std::uint8_t write(const wire::RegisterValue& setting) {
  return reg_wt16_0x0c(setting.reg, setting.value);
}

}  // namespace

std::uint32_t run_register_move(RegisterOperation operation, Direction direction,
                                std::uint8_t speed, std::uint32_t steps) {
  const RegisterMove* move = find_move(operation);
  if (move == nullptr) return 0;
  const MotorChannel& channel = *move->channel;
  const bool forward = direction == Direction::forward;
  const std::uint32_t count = steps * move->count_scale;

  write(wire::motor_block_enable);
  write(wire::motor_block_clock);
  write({channel.control, wire::motor_control::stop});
  write({channel.mode, forward ? move->forward_mode : move->backward_mode});
  write(channel.count_low, count & move->count_low_mask);
  write(channel.count_high, count >> 10 & count_bits);
  write(channel.period, move->periods[speed]);
  write(channel.current, 0);
  write(wire::motor_block_commit);
  write({channel.control, wire::motor_control::armed});
  move->motor->settle(move->first_move_delay);
  move->motor->mark_started();
  return write({channel.control, wire::motor_control::run});
}

}  // namespace kelvo::lens
