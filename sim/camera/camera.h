#ifndef KELVO_SIM_CAMERA_CAMERA_H
#define KELVO_SIM_CAMERA_CAMERA_H

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <type_traits>

#include "sim/common/clock.h"
#include "sim/common/parts.h"
#include "sim/common/variety.h"
#include "sim/common/violations.h"
#include "sim/common/wire_time.h"
#include "sim/head/head.h"
#include "sim/judge/judge.h"
#include "sim/lens/boot_log.h"
#include "sim/lens/lens_controller.h"
#include "sim/lens/pt5111.h"
#include "sim/lens/reset_line.h"

namespace kelvo::sim::camera {

/// A whole camera as one plain value. Results are what the driver would return; a negative one is an
/// error number. A transfer takes effect when it is over, and none moves the clock: whoever makes it lets
/// the time of occupy() pass before.
class Camera {
 public:
  /// Grows with every change of what lies where.
  static constexpr std::uint32_t layout_version = 6;

  Clock clock;

  /// Who makes the calls that follow. Without it nobody knows, and what takes more than the frame to judge is
  /// not judged.
  void set_caller(const Caller& caller);
  /// A transfer of so long begins now, or when the one before on its bus is over: its end.
  Time occupy(Bus bus, Time duration) { return buses_.occupy(bus, clock.now(), duration); }
  /// Full-duplex transfer with the lens controller. Whatever it thinks of the frame, the transfer itself
  /// succeeds.
  int transfer_lens(std::span<const std::uint8_t> sent, std::span<std::uint8_t> received,
                    CarriedImages images);
  /// The same with the PT5111 on its own device.
  int transfer_pt5111(std::span<const std::uint8_t> sent, std::span<std::uint8_t> received);
  /// A combined I2C request of at least one message to the head; the number of its messages.
  int transfer_pan_tilt(std::span<const BusMessage> messages);
  /// A shell command; its wait status.
  int shell(std::string_view command);
  /// The bus lock is given back by somebody who had not taken it.
  void unlock_for_another();

  /// Somebody asked something of a device's driver that it does not do.
  void refuse(Unit unit, const char* what);

  /// The n-th download on the wire, from 1, shall arrive with one bit flipped. False: too many.
  bool corrupt_download(std::uint32_t number) { return lens_.corrupt_download(number); }

  /// The lens controller restarts by itself and is in its boot loader.
  void reset_lens();
  /// A controller of the head restarts by itself; none at all for another slave.
  void reset_head(std::uint16_t slave) { head_.restart(slave, clock.now()); }

  /// Another head takes this one's place; a camera comes with one of the Tasmere family.
  void fit_head(HeadFamily family) { head_ = Head(family, variety_); }
  /// Puts a lens on that stays. The controller runs its program, as a boot of another process leaves it;
  /// without one the lens is always that of the program that is started.
  void fit_module(LensModule module);
  /// Makes a new camera another one of its kind: where motors, filter and head stand, and the noise of what
  /// is measured. Seed 0, the middle of everything without noise, is what a camera has at first.
  void vary(std::uint64_t seed);

  /// Without power nobody answers: SPI transfers read zeros, I2C requests end with -ENXIO, and the files of
  /// the GPIO lines refuse. Programs, settings and counters are lost; motors, filter and head stay where
  /// they are, and what the head has in flash stays. With power again the lens controller is in its boot
  /// loader, and the head's controllers restart.
  void power_off();
  void power_on();
  bool powered() const { return powered_; }

  /// Somebody turns a motor or an axis of the head by hand, by so many of its own counts: a motor up to its
  /// end stops, and no counter sees it. False: the lens has no such motor.
  bool push(Output output, std::int32_t counts);
  void push(HeadAxis axis, std::int32_t counts) {
    head_.controller(axis).push(clock.now(), counts);
  }

  /// What is there now, without a trace of having been asked for; nothing where there is no such thing, or
  /// nothing that runs: what a command of the lens program last brought, what a query of it answers, the
  /// registers of its motor block, of the PT5111 and of the head, those that can only be written too.
  std::optional<std::uint32_t> peek_command(std::uint8_t code) const;
  std::optional<std::uint32_t> peek_query(std::uint8_t code, std::uint8_t argument) const;
  std::optional<std::uint16_t> peek_register(std::uint8_t reg) const;
  std::optional<std::uint16_t> peek_pt5111(std::uint8_t reg) const;
  std::optional<std::uint32_t> peek_head(HeadAxis axis, std::uint8_t reg) const;

  /// Does what the wire would do. Nobody is held responsible: what would be held against a program is the
  /// result, and then nothing has happened.
  std::optional<Violation> poke_command(std::uint8_t code, std::uint32_t value);
  std::optional<Violation> poke_register(std::uint8_t reg, std::uint16_t value);
  std::optional<Violation> poke_pt5111(std::uint8_t reg, std::uint16_t value);
  std::optional<Violation> poke_head(HeadAxis axis, std::uint8_t reg,
                                     std::span<const std::uint8_t> data);

  /// What a single call of the above may change: all but the entries of the logs that are not next.
  Parts parts_at_risk();

  const Violations& violations() const { return violations_; }
  const BootLog& boots() const { return boots_; }
  const LensController& lens() const { return lens_; }
  const Pt5111& pt5111() const { return pt5111_; }
  const ResetLine& reset_line() const { return reset_line_; }
  const Head& head() const { return head_; }
  /// Words that came over the PT5111's own device.
  std::uint32_t pt5111_words() const { return pt5111_words_; }

  /// Where the motors stand now.
  Positions positions() const;
  /// How the lens side stands now, or stood when a boot's time was over; the last one's is not.
  LensSummary lens_summary() const;
  LensSummary lens_summary(std::uint32_t boot) const;

 private:
  std::optional<LensModule> pt5111_owner() const;

  LensController lens_;
  Pt5111 pt5111_;
  ResetLine reset_line_;
  Head head_{HeadFamily::tasmere};
  Violations violations_;  // the logs in this order: parts_at_risk() goes by it
  BootLog boots_;
  Judge judge_;
  std::uint32_t pt5111_words_ = 0;
  Time reset_at_{};  // the last time
  Variety variety_;
  bool powered_ = true;
  Buses buses_;
};

// A camera can lie in memory that processes share.
static_assert(std::is_trivially_copyable_v<Camera>);

}  // namespace kelvo::sim::camera

#endif
