#ifndef KELVO_SIM_LENS_MOTOR_STATES_H
#define KELVO_SIM_LENS_MOTOR_STATES_H

#include <array>
#include <cstdint>
#include <optional>

#include "sim/lens/stepper.h"
#include "sim/lens/wiring.h"

namespace kelvo::sim::camera {

/// What the motors at all outputs do at one moment.
struct MotorStates {
  Positions position{};
  std::array<std::uint32_t, outputs> driven{};  // counts, as Stepper has them
  std::array<bool, outputs> running{};

  void put(Output output, const Stepper& motor, Time now);
  std::int32_t position_at(Output output) const { return position[index(output)]; }
};

/// The answer to a query whether a motor moves, in reply byte 3; nothing for any other query.
std::optional<std::uint32_t> running_answer(std::uint8_t query, const MotorStates& motors);

/// What a channel's status register reads, in its high byte; nothing for any other register.
std::optional<std::uint16_t> status_register(std::uint8_t reg, const MotorStates& motors);

}  // namespace kelvo::sim::camera

#endif
