#ifndef KELVO_SIM_LENS_COMMAND_MOTOR_H
#define KELVO_SIM_LENS_COMMAND_MOTOR_H

#include <cstdint>

#include "sim/lens/program_values.h"
#include "sim/lens/stepper.h"
#include "wire/lens_program.h"

namespace kelvo::sim::camera {

/// The commands of a motor that is moved by a block of them.
struct MotorCommands {
  std::uint8_t direction;
  std::uint8_t rate;
  std::uint8_t count;
  std::uint8_t drive;
  std::uint8_t enable;
  std::uint8_t start;
  std::uint8_t holds;       // the drive at which the coils only hold
  std::uint64_t rate_span;  // nanoseconds in which `rate` steps are made
};

inline constexpr MotorCommands zoom1_commands{
    wire::command::zoom1_direction, wire::command::zoom1_rate,
    wire::command::zoom1_count,     wire::command::zoom1_drive,
    wire::command::zoom1_enable,    wire::command::zoom1_start,
    wire::zoom1_drive_off,          1'000'000'000};
inline constexpr MotorCommands zoom3_commands{
    wire::command::zoom3_direction, wire::command::zoom3_rate,
    wire::command::zoom3_count,     wire::command::zoom3_drive,
    wire::command::zoom3_enable,    wire::command::zoom3_start,
    wire::zoom3_drive_off,          8'000'000'000};

/// Whether the motor's coils have current that moves it.
bool driven(const MotorCommands& commands, const CommandValues& values);

/// Tells the motor of a command's new value: it moves from the start command, if its coils are energised
/// and driven with more than what holds, and halts when they are not, or when the start is taken back.
void obey(const MotorCommands& commands, Time now, std::uint8_t code, const CommandValues& values,
          Stepper& motor);

}  // namespace kelvo::sim::camera

#endif
