#ifndef KELVO_SIM_LENS_MOTOR_BLOCK_H
#define KELVO_SIM_LENS_MOTOR_BLOCK_H

#include <array>
#include <cstdint>

#include "sim/common/exchange.h"
#include "sim/lens/filter_coil.h"
#include "sim/lens/first_places.h"
#include "sim/lens/stepper.h"
#include "sim/lens/wiring.h"

namespace kelvo::sim::camera {

/// The lens controller's 16-bit registers: two motor channels, the words written before a move, supplies,
/// the coil of an IR-cut filter.
///
/// A channel's move starts when its control register goes from armed to run, with what the other
/// registers hold at that moment. It needs current in the coils: an off word in the current register halts
/// the motor, and it cannot be started. A step-period word is taken apart by the drive mode: ten bits of
/// period with the range above them. In micro-step drive the step clock has every range up to 10; in the
/// phase drives it has the ranges 0, 3, 5 and 7, and what lies beyond the next lower one of these belongs to
/// the period: 4208 is range 3, period 1136. Counter and status registers are read elsewhere.
class MotorBlock {
 public:
  static bool has(std::uint8_t reg);
  static bool reads_only(std::uint8_t reg);

  void write(Exchange& exchange, std::uint8_t reg, std::uint16_t value);
  std::uint16_t read(std::uint8_t reg) const { return registers_[reg]; }

  /// The controller loses its registers, and the motors stop where they are.
  void reset(Time now);
  void fit(LensModule module, const Variety& variety);
  /// Whether the lens that hangs on it is the one that it drives.
  void connect(Time now, bool connected);

  /// The motor at one of its two outputs, or null.
  Stepper* motor(Output output);

  /// Whether the coils of the motor at one of its two outputs have current.
  bool energised(Output output) const;

  const Stepper& focus() const { return focus_; }
  const Stepper& zoom() const { return zoom_; }
  const FilterCoil& filter() const { return filter_; }

 private:
  void run(Exchange& exchange, const wire::MotorChannel& channel, Stepper& stepper) const;
  void control(Exchange& exchange, const wire::MotorChannel& channel, Stepper& stepper,
               std::uint16_t value) const;
  void drive_filter(Time now, std::uint16_t value);

  std::array<std::uint16_t, 256> registers_{};
  Stepper focus_;
  Stepper zoom_;
  FilterCoil filter_;
};

}  // namespace kelvo::sim::camera

#endif
