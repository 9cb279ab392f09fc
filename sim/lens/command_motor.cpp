#include "sim/lens/command_motor.h"

namespace kelvo::sim::camera {

bool driven(const MotorCommands& commands, const CommandValues& values) {
  return values[commands.enable] != 0 && values[commands.drive] != commands.holds;
}

void obey(const MotorCommands& commands, Time now, std::uint8_t code, const CommandValues& values,
          Stepper& motor) {
  const bool has_current = driven(commands, values);
  const bool coils = code == commands.enable || code == commands.drive;
  if (coils && !has_current) motor.halt(now);
  if (code != commands.start) return;
  if (values[commands.start] == 0 || !has_current) {
    motor.halt(now);
    return;
  }
  const bool backward = values[commands.direction] != 0;
  motor.start(now, {backward ? Direction::backward : Direction::forward,
                    low_word(values[commands.count]),
                    1,
                    {low_word(values[commands.rate]), commands.rate_span}});
}

}  // namespace kelvo::sim::camera
