#ifndef KELVO_SIM_LENS_LENS_CONTROLLER_H
#define KELVO_SIM_LENS_LENS_CONTROLLER_H

#include <cstdint>
#include <optional>

#include "sim/lens/boot_loader.h"
#include "sim/lens/lens_program.h"

namespace kelvo::sim::camera {

/// The lens controller: held in reset, in its boot loader, running a program, or dead because it was
/// started without one.
class LensController {
 public:
  enum class State : std::uint8_t { reset, boot_loader, running, dead };

  FrameKind receive(Exchange& exchange, CarriedImages images, BootRecord& boot, Pt5111& pt5111);

  /// Puts a lens on that stays: another module's program may be started, but does not move it. The
  /// controller runs the lens's own program, as a boot leaves it.
  void fit(LensModule module, Time now, BootRecord& boot, Pt5111& pt5111);
  /// What the parts of a lens differ by, from the next one on.
  void vary(const Variety& variety) { variety_ = variety; }

  void hold_in_reset(Time now);
  /// The power fails, and everything is lost that is not mechanical.
  void lose_power(Time now, Pt5111& pt5111);
  void release_from_reset();
  bool corrupt_download(std::uint32_t number) { return boot_loader_.corrupt_download(number); }

  State state() const { return state_; }
  /// The lens whose motors are there, or nothing before the first program is started.
  std::optional<LensModule> motors_of() const;
  /// The module whose program runs.
  std::optional<LensModule> module() const;
  /// The lens that stays, or nothing: then the lens is that of the program.
  std::optional<LensModule> lens() const { return lens_; }
  /// The motor at an output, or null.
  Stepper* motor(Output output) { return program_.motor(output); }
  const LensProgram& program() const { return program_; }

 private:
  FrameKind receive_running(Exchange& exchange, Pt5111& pt5111);
  void start(Exchange& exchange, BootRecord& boot, Pt5111& pt5111);

  State state_ = State::boot_loader;
  void put_on(LensModule module, Pt5111& pt5111);
  void note_program(BootRecord& boot) const;

  std::optional<LensModule> lens_;
  bool fitted_ = false;  // some module's motors are there
  Variety variety_;
  BootLoader boot_loader_;
  LensProgram program_;
};

}  // namespace kelvo::sim::camera

#endif
