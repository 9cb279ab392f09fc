#ifndef KELVO_SIM_CAMERA_LENS_PROGRAM_H
#define KELVO_SIM_CAMERA_LENS_PROGRAM_H

#include <cstdint>

#include "sim/camera/boot_log.h"
#include "sim/camera/command_motor.h"
#include "sim/camera/exchange.h"
#include "sim/camera/motor_block.h"
#include "sim/camera/pt5111.h"
#include "sim/camera/wiring.h"

namespace kelvo::sim::camera {

/// A module's downloaded program: command and query frames, settings, registers, motors. A frame that
/// it finds fault with has no effect.
class LensProgram {
 public:
  FrameKind receive(Exchange& exchange, Pt5111& pt5111);

  /// The program of this module starts, with its own settings.
  void start(LensModule module);
  /// The controller is reset: the motors stop where they are.
  void stop(Time now);
  void fit(LensModule module);

  LensModule module() const { return module_; }
  std::uint16_t version() const;
  /// The last value that a command brought, or what the program itself starts with.
  std::uint16_t value(std::uint8_t command) const { return values_[command]; }

  const MotorBlock& motor_block() const { return motor_block_; }
  const Stepper& zoom1() const { return zoom1_; }
  const Stepper& zoom3() const { return zoom3_; }

 private:
  void command(Exchange& exchange, Pt5111& pt5111);
  void query(Exchange& exchange) const;
  void pass_on(Exchange& exchange, Pt5111& pt5111) const;
  std::uint16_t answer(std::uint8_t code) const;

  LensModule module_ = LensModule::de015;
  CommandValues values_{};
  MotorBlock motor_block_;
  Stepper zoom1_;
  Stepper zoom3_;
};

}  // namespace kelvo::sim::camera

#endif
