#ifndef KELVO_SIM_LENS_LENS_PROGRAM_H
#define KELVO_SIM_LENS_LENS_PROGRAM_H

#include <cstdint>

#include "sim/common/exchange.h"
#include "sim/lens/boot_log.h"
#include "sim/lens/calibration_run.h"
#include "sim/lens/command_motor.h"
#include "sim/lens/counters.h"
#include "sim/lens/motor_block.h"
#include "sim/lens/pt5111.h"
#include "sim/lens/sensors.h"
#include "sim/lens/stabiliser.h"
#include "sim/lens/wiring.h"

namespace kelvo::sim::camera {

/// A module's downloaded program: command and query frames, settings, registers, motors. A frame that
/// it finds fault with has no effect.
class LensProgram {
 public:
  FrameKind receive(Exchange& exchange, Pt5111& pt5111);

  /// The program of this module starts, with its own settings.
  void start(LensModule module, Time now, const Pt5111& pt5111);
  /// The controller is reset: the motors stop where they are.
  void stop(Time now);
  void fit(LensModule module);

  LensModule module() const { return module_; }
  std::uint16_t version() const;
  /// The last value that a command brought, or what the program itself starts with.
  std::uint32_t value(std::uint8_t command) const { return values_[command]; }

  const MotorBlock& motor_block() const { return motor_block_; }
  const Counters& counters() const { return counters_; }
  bool stabiliser_on() const { return stabiliser_.on(); }
  /// What all motors do, those at the PT5111 too.
  MotorStates motors(Time now, const Pt5111& pt5111) const;

 private:
  void command(Exchange& exchange, Pt5111& pt5111);
  void write_register(Exchange& exchange, const Pt5111& pt5111);
  void pass_on(Exchange& exchange, Pt5111& pt5111) const;
  void query(Exchange& exchange, const Pt5111& pt5111) const;
  std::uint32_t answer(Exchange& exchange, const Pt5111& pt5111) const;
  std::uint32_t read_register(Exchange& exchange, const MotorStates& motors) const;

  LensModule module_ = LensModule::de015;
  CommandValues values_{};
  MotorBlock motor_block_;
  Stepper zoom1_;
  Stepper zoom3_;
  Counters counters_;
  Sensors sensors_;
  Stabiliser stabiliser_;
  CalibrationRun calibration_;
};

}  // namespace kelvo::sim::camera

#endif
