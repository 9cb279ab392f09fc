#include "kelvo/lens.h"
#include "lens/motors/command_block.h"
#include "lens/motors/motor_state.h"
#include "lens/motors/register_move.h"
#include "lens/variant/variant.h"

namespace {

using kelvo::lens::BlockMove;
using kelvo::lens::Direction;
using kelvo::lens::LensModule;
using kelvo::lens::Motor;
using kelvo::lens::RegisterOperation;
using enum Direction;

/// A zoom-1 operation: each module drives this motor in a way of its own.
struct Zoom1Operation {
  BlockMove de015;
  std::int64_t (*df033)(std::uint8_t speed, std::uint32_t steps);  // null: not served
  bool serves_t5391;
};

constexpr std::uint8_t micro_step = 1;
constexpr std::uint8_t two_phase = 0;

// clang-format off
//                                          DE015                        DF033                  T5391
constexpr Zoom1Operation zoom1_forward  {{forward,  micro_step,   0}, PT5111Zoom1Forward,   true };
constexpr Zoom1Operation zoom1_backward {{backward, micro_step,   0}, PT5111Zoom1Backward,  true };
// Only the backward twin serves the other modules (deliberate).
constexpr Zoom1Operation zoom1_forward2 {{forward,  two_phase,    0}, nullptr,              false};
constexpr Zoom1Operation zoom1_backward2{{backward, two_phase,    0}, PT5111Zoom1Backward,  true };
constexpr Zoom1Operation zoom1_uforward {{forward,  micro_step,  50}, uPT5111Zoom1Forward,  false};
constexpr Zoom1Operation zoom1_ubackward{{backward, micro_step, 100}, uPT5111Zoom1Backward, false};
// clang-format on

std::uint32_t move_zoom1(const Zoom1Operation& operation, std::uint8_t speed, std::uint32_t steps) {
  switch (kelvo::lens::lens_module()) {
    case LensModule::de015:
      return run_command_block(kelvo::lens::zoom1_block, operation.de015, speed, steps);
    case LensModule::df033:
      if (operation.df033 != nullptr) operation.df033(speed, steps);
      return 0;
    default:
      if (!operation.serves_t5391) return 0;
      return run_register_move(RegisterOperation::zoom1, operation.de015.direction, speed, steps);
  }
}

std::uint32_t busy_move_zoom1(const Zoom1Operation& operation, std::uint8_t speed,
                              std::uint32_t steps) {
  kelvo::lens::motor::zoom1.mark_busy();
  return move_zoom1(operation, speed, steps);
}

std::uint32_t move_channel(const Motor& motor, RegisterOperation operation, Direction direction,
                           std::uint8_t speed, std::uint32_t steps) {
  motor.mark_busy();
  return run_register_move(operation, direction, speed, steps);
}

std::uint32_t move_focus(Direction direction, std::uint8_t speed, std::uint32_t steps) {
  return move_channel(kelvo::lens::motor::focus, RegisterOperation::focus, direction, speed, steps);
}

std::uint32_t move_zoom2(RegisterOperation operation, Direction direction, std::uint8_t speed,
                         std::uint32_t steps) {
  return move_channel(kelvo::lens::motor::zoom2, operation, direction, speed, steps);
}

std::uint32_t move_zoom3(Direction direction, std::uint8_t speed, std::uint32_t steps) {
  kelvo::lens::motor::zoom3.mark_busy();
  if (kelvo::lens::lens_module() != LensModule::df033) return 0;
  constexpr std::uint8_t mode = 3;
  return run_command_block(kelvo::lens::zoom3_block, {direction, mode, 0}, speed, steps);
}

}  // namespace

std::uint32_t setZoom1Forward(std::uint8_t speed, std::uint32_t steps) {
  return busy_move_zoom1(zoom1_forward, speed, steps);
}

std::uint32_t setZoom1Backward(std::uint8_t speed, std::uint32_t steps) {
  return busy_move_zoom1(zoom1_backward, speed, steps);
}

std::uint32_t setZoom1Forward2_2(std::uint8_t speed, std::uint32_t steps) {
  return busy_move_zoom1(zoom1_forward2, speed, steps);
}

std::uint32_t setZoom1Backward2_2(std::uint8_t speed, std::uint32_t steps) {
  return busy_move_zoom1(zoom1_backward2, speed, steps);
}

std::uint32_t setZoom1uForward(std::uint8_t speed, std::uint32_t steps) {
  return busy_move_zoom1(zoom1_uforward, speed, steps);
}

std::uint32_t setZoom1uBackward(std::uint8_t speed, std::int32_t steps) {
  const auto count = static_cast<std::uint32_t>(steps);
  switch (kelvo::lens::lens_module()) {
    // Alone of all moves, this one leaves the busy mask untouched where it sends something (deliberate).
    case LensModule::de015: return move_zoom1(zoom1_ubackward, speed, count);
    case LensModule::df033:
      return move_zoom1(zoom1_ubackward, speed, steps < 0 ? 0U - count : count);
    default: return busy_move_zoom1(zoom1_ubackward, speed, count);
  }
}

std::uint32_t setFocusForward(std::uint8_t speed, std::uint32_t steps) {
  return move_focus(forward, speed, steps);
}

std::uint32_t setFocusBackward(std::uint8_t speed, std::uint32_t steps) {
  return move_focus(backward, speed, steps);
}

std::uint32_t setZoom2Forward(std::uint8_t speed, std::uint32_t steps) {
  return move_zoom2(RegisterOperation::zoom2, forward, speed, steps);
}

std::uint32_t setZoom2Backward(std::uint8_t speed, std::uint32_t steps) {
  return move_zoom2(RegisterOperation::zoom2, backward, speed, steps);
}

std::uint32_t setZoom2Forward512(std::uint8_t speed, std::int32_t steps) {
  return move_zoom2(RegisterOperation::zoom2_micro_steps, forward, speed,
                    static_cast<std::uint32_t>(steps));
}

std::uint32_t setZoom2Backward512(std::uint8_t speed, std::int32_t steps) {
  return move_zoom2(RegisterOperation::zoom2_micro_steps, backward, speed,
                    static_cast<std::uint32_t>(steps));
}

std::uint32_t setZoom3Forward(std::uint8_t speed, std::uint32_t steps) {
  return move_zoom3(forward, speed, steps);
}

std::uint32_t setZoom3Backward(std::uint8_t speed, std::uint32_t steps) {
  return move_zoom3(backward, speed, steps);
}
