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
  FrameKind receive(Exchange& exchange, CarriedImages images, BootRecord& boot, Pt5111& pt5111);

  void hold_in_reset(Time now);
  void release_from_reset();
  bool corrupt_download(std::uint32_t number) { return boot_loader_.corrupt_download(number); }

  /// The module whose program runs.
  std::optional<LensModule> module() const;
  const LensProgram& program() const { return program_; }

 private:
  enum class State : std::uint8_t { reset, boot_loader, running, dead };

  FrameKind receive_running(Exchange& exchange, Pt5111& pt5111);
  void start(const Exchange& exchange, BootRecord& boot, Pt5111& pt5111);

  State state_ = State::boot_loader;
  bool fitted_ = false;  // some module's motors are there
  BootLoader boot_loader_;
  LensProgram program_;
};

}  // namespace kelvo::sim::camera

#endif
