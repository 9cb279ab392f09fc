#ifndef KELVO_SIM_CAMERA_CAMERA_H
#define KELVO_SIM_CAMERA_CAMERA_H

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <type_traits>

#include "sim/common/clock.h"
#include "sim/common/parts.h"
#include "sim/common/violations.h"
#include "sim/head/head.h"
#include "sim/lens/boot_log.h"
#include "sim/lens/lens_controller.h"
#include "sim/lens/pt5111.h"
#include "sim/lens/reset_line.h"

namespace kelvo::sim::camera {

/// A whole camera as one plain value. Transfers take no simulated time. Results are what the driver
/// would return; a negative one is an error number.
class Camera {
 public:
  /// Grows with every change of what lies where.
  static constexpr std::uint32_t layout_version = 2;

  Clock clock;

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

  /// The n-th download on the wire, from 1, shall arrive with one bit flipped. False: too many.
  bool corrupt_download(std::uint32_t number) { return lens_.corrupt_download(number); }

  /// Another head takes this one's place; a camera comes with one of the Tasmere family.
  void fit_head(HeadFamily family) { head_ = Head(family); }

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
  LensController lens_;
  Pt5111 pt5111_;
  ResetLine reset_line_;
  Head head_{HeadFamily::tasmere};
  Violations violations_;  // the logs in this order: parts_at_risk() goes by it
  BootLog boots_;
  std::uint32_t pt5111_words_ = 0;
  Time reset_at_{};  // the last time
};

// A camera can lie in memory that processes share.
static_assert(std::is_trivially_copyable_v<Camera>);

}  // namespace kelvo::sim::camera

#endif
