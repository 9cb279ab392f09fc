#ifndef KELVO_SIM_LENS_BOOT_LOADER_H
#define KELVO_SIM_LENS_BOOT_LOADER_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "sim/common/exchange.h"
#include "sim/lens/boot_log.h"
#include "sim/lens/carried_image.h"

namespace kelvo::sim::camera {

/// The lens controller's boot loader: clock set-up, downloads, checksums, start.
///
/// A frame that comes out of order is a violation and takes effect all the same; the order is then
/// expected to go on from there. A frame of the wrong form is a violation and is ignored.
class BootLoader {
 public:
  static constexpr std::size_t most_corrupt_downloads = 16;

  /// What a frame was, and whether it was the start command.
  struct Outcome {
    FrameKind kind;
    bool start = false;
  };
  Outcome receive(Exchange& exchange, CarriedImages images, BootRecord& boot);

  /// The module whose three images lie intact in their memories.
  std::optional<LensModule> complete_module() const;

  /// The controller comes out of reset and knows nothing.
  void reset();

  /// The n-th payload on the wire, from 1 and over all resets, shall arrive with one bit flipped.
  /// False when the list is full.
  bool corrupt_download(std::uint32_t number);

 private:
  Outcome receive_frame(Exchange& exchange);
  void receive_payload(Exchange& exchange, CarriedImages images, BootRecord& boot);
  void judge_order(Exchange& exchange, std::size_t step);
  void answer(Exchange& exchange, int shift) const;
  bool next_payload_is_corrupt();

  std::uint8_t due_ = 0;  // the step that comes next
  bool payload_due_ = false;
  std::uint8_t memory_ = 0;
  std::uint32_t address_ = 0;
  std::uint32_t size_ = 0;
  std::uint32_t checksum_ = 0;                               // of the last download
  std::array<ModuleSet, wire::images_per_module> intact_{};  // memory by memory
  std::uint32_t payloads_ = 0;
  std::uint32_t corrupt_count_ = 0;
  std::array<std::uint32_t, most_corrupt_downloads> corrupt_{};
};

}  // namespace kelvo::sim::camera

#endif
