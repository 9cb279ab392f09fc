#ifndef KELVO_SIM_CAMERA_MOTOR_BLOCK_H
#define KELVO_SIM_CAMERA_MOTOR_BLOCK_H

#include <array>
#include <cstdint>

#include "sim/camera/exchange.h"
#include "sim/camera/stepper.h"
#include "sim/camera/wiring.h"

namespace kelvo::sim::camera {

/// The lens controller's 16-bit registers: two motor channels and the words written before a move.
///
/// A channel's move starts when its control register goes from armed to run, with what the other
/// registers hold at that moment. A step-period word is taken apart by the drive mode: ten bits of
/// period, the range above them, and whatever lies beyond the mode's highest range belongs to the
/// period. So a phase drive's words go smoothly through 8192. A longer period in a lower range cannot be
/// told from a shorter one in the next range and is taken for that: 1296 means range 1, period 272, and
/// 1024, range 1 with period 0, does not move.
class MotorBlock {
 public:
  static bool has(std::uint8_t reg);

  void write(Exchange& exchange, std::uint8_t reg, std::uint16_t value);
  std::uint16_t read(std::uint8_t reg) const { return registers_[reg]; }

  /// The controller loses its registers, and the motors stop where they are.
  void reset(Time now);
  void fit(LensModule module);

  const Stepper& focus() const { return focus_; }
  const Stepper& zoom() const { return zoom_; }

 private:
  void run(Exchange& exchange, const wire::MotorChannel& channel, Stepper& stepper) const;
  void control(Exchange& exchange, const wire::MotorChannel& channel, Stepper& stepper,
               std::uint16_t value) const;

  std::array<std::uint16_t, 256> registers_{};
  Stepper focus_;
  Stepper zoom_;
};

}  // namespace kelvo::sim::camera

#endif
