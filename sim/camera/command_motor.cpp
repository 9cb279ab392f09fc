#include "sim/camera/command_motor.h"

namespace kelvo::sim::camera {

void obey(const MotorCommands& commands, Time now, std::uint8_t code, const CommandValues& values,
          Stepper& motor) {
  const bool energised = values[commands.enable] != 0;
  if (code == commands.enable && !energised) motor.halt(now);
  if (code != commands.start) return;
  if (values[commands.start] == 0 || !energised) {
    motor.halt(now);
    return;
  }
  const bool backward = values[commands.direction] != 0;
  motor.start(now, {backward ? Direction::backward : Direction::forward,
                    values[commands.count],
                    1,
                    {values[commands.rate], commands.rate_span}});
}

}  // namespace kelvo::sim::camera
