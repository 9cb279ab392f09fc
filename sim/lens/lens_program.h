#ifndef KELVO_SIM_LENS_LENS_PROGRAM_H
#define KELVO_SIM_LENS_LENS_PROGRAM_H

#include <cstdint>
#include <optional>

#include "sim/common/exchange.h"
#include "sim/lens/boot_log.h"
#include "sim/lens/calibration_run.h"
#include "sim/lens/command_motor.h"
#include "sim/lens/counters.h"
#include "sim/lens/dc_iris.h"
#include "sim/lens/heater.h"
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
  /// Its memory is lost: all settings are 0 until a program is started.
  void forget(Time now, const Pt5111& pt5111);
  void fit(LensModule module, const Variety& variety);
  /// Whether the lens that hangs on the controller is the program's own.
  void connect(Time now, bool connected);
  /// What a boot sends once the program runs.
  void finish_boot();
  /// The motor at an output of the controller's own, or null.
  Stepper* motor(Output output);

  LensModule module() const { return module_; }
  std::uint16_t version() const;
  /// The last value that a command brought, or what the program itself starts with.
  std::uint32_t value(std::uint8_t command) const { return values_[command]; }

  /// What a register of the motor block holds; nothing where there is none.
  std::optional<std::uint16_t> register_value(std::uint8_t reg, const MotorStates& motors) const;

  const CommandValues& values() const { return values_; }

  /// For a look at what the program has.
  const Stepper& motor(Output output, const Pt5111& pt5111) const;
  bool energised(Output output, const Pt5111& pt5111) const;
  std::optional<Sensors::Interrupter> interrupter(int sensor, Time now, const Pt5111& pt5111) const;

  /// What a channel of the converter would give.
  std::uint16_t converter(std::uint8_t channel, Time now, const Pt5111& pt5111) const;

  const MotorBlock& motor_block() const { return motor_block_; }
  const Counters& counters() const { return counters_; }
  bool stabiliser_on() const { return stabiliser_.on(); }
  /// What the Hall sensor of a DC iris sees, and the converter of the heater.
  std::uint16_t iris(Time now) const { return iris_.hall(now); }
  std::uint16_t warmth(Time now) const { return heater_.warmth(now); }
  /// What all motors do, those at the PT5111 too.
  MotorStates motors(Time now, const Pt5111& pt5111) const;

 private:
  void forget_state(Time now, const Pt5111& pt5111);
  void command(Exchange& exchange, Pt5111& pt5111);
  void write_register(Exchange& exchange, const Pt5111& pt5111);
  void pass_on(Exchange& exchange, Pt5111& pt5111) const;
  void query(Exchange& exchange, const Pt5111& pt5111) const;
  SensorView view(Time now, const MotorStates& motors, const Pt5111& pt5111) const;
  std::uint32_t answer(Exchange& exchange, const Pt5111& pt5111) const;
  std::optional<std::uint32_t> loop_answer(std::uint8_t query, Time now) const;
  std::uint32_t read_register(Exchange& exchange, const MotorStates& motors) const;

  LensModule module_ = LensModule::de015;
  CommandValues values_{};
  MotorBlock motor_block_;
  Stepper zoom1_;
  Stepper zoom3_;
  Counters counters_;
  Sensors sensors_;
  Stabiliser stabiliser_;
  DcIris iris_;
  Heater heater_;
  Variety variety_;
  CalibrationRun calibration_;
};

}  // namespace kelvo::sim::camera

#endif
