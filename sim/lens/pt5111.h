#ifndef KELVO_SIM_LENS_PT5111_H
#define KELVO_SIM_LENS_PT5111_H

#include <array>
#include <cstdint>

#include "sim/lens/filter_coil.h"
#include "sim/lens/first_places.h"
#include "sim/lens/stepper.h"
#include "sim/lens/wiring.h"

namespace kelvo::sim::camera {

/// The PT5111 stepping-motor driver: 64 registers of ten bits, two motors. A motor moves from the word
/// that says run, while the chip and the motor's coils have power; each tick of its step clock is one count.
/// On DF033 the outputs of motor B throw the IR-cut filter over, while a pulse lasts.
class Pt5111 {
 public:
  /// One 16-bit word: a register and its value.
  void receive(Time now, std::uint16_t word);

  std::uint16_t read(std::uint8_t reg) const { return registers_[reg]; }
  bool powered() const;
  void fit(LensModule module, const Variety& variety = {});
  /// Whether the lens that hangs on it is the one that its words are meant for.
  void connect(Time now, bool connected);
  /// Its power fails: all registers are 0.
  void lose_power(Time now);
  /// An IR-cut filter at it has been thrown over.
  void put_filter(FilterPlace place) { filter_.fit(place); }
  /// The motor at one of its two outputs, or null.
  Stepper* motor(Output output);

  const Stepper& motor_a() const { return motor_a_; }
  const Stepper& motor_b() const { return motor_b_; }
  const FilterCoil& filter() const { return filter_; }
  /// Whether the coils of the motor at one of its two outputs have current.
  bool energised(Output output) const;
  /// Whether the photo-interrupter at the chip is supplied.
  bool interrupter_supplied() const;

 private:
  void control(Time now, Stepper& motor, std::uint16_t base, std::uint16_t value) const;
  void pulse(Time now, std::uint16_t value);
  void stop(Time now);
  std::uint16_t field(std::uint16_t base, std::int32_t word) const;

  std::array<std::uint16_t, 64> registers_{};
  Stepper motor_a_;
  Stepper motor_b_;
  FilterCoil filter_;
  bool filter_on_b_ = false;  // a coil in the place of motor B
};

}  // namespace kelvo::sim::camera

#endif
