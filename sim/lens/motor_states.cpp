#include "sim/lens/motor_states.h"

#include "wire/lens_program.h"
#include "wire/motor_channels.h"

namespace kelvo::sim::camera {
namespace {

constexpr std::uint16_t status_moving = 0x0100;

struct Row {
  std::uint8_t number;  // of a query or a register
  Output output;
};

constexpr Row running_queries[] = {
    {wire::query::zoom1_running_de, Output::zoom1_block},
    {wire::query::zoom1_running, Output::pt5111_a},
    {wire::query::zoom3_running, Output::zoom3_block},
};
constexpr Row status_registers[] = {
    {wire::focus_channel.status, Output::focus_channel},
    {wire::zoom_channel.status, Output::zoom_channel},
};

}  // namespace

void MotorStates::put(Output output, const Stepper& motor, Time now) {
  position[index(output)] = motor.position(now);
  driven[index(output)] = motor.driven(now);
  running[index(output)] = motor.running(now);
}

std::optional<std::uint32_t> running_answer(std::uint8_t query, const MotorStates& motors) {
  for (const Row& row : running_queries) {
    if (row.number == query) return motors.running[index(row.output)] ? 1U : 0U;
  }
  return std::nullopt;
}

std::optional<std::uint16_t> status_register(std::uint8_t reg, const MotorStates& motors) {
  for (const Row& row : status_registers) {
    if (row.number == reg) return motors.running[index(row.output)] ? status_moving : 0;
  }
  return std::nullopt;
}

}  // namespace kelvo::sim::camera
