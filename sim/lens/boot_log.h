// What a camera remembers of each boot of its lens controller, for the report.
#ifndef KELVO_SIM_LENS_BOOT_LOG_H
#define KELVO_SIM_LENS_BOOT_LOG_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "sim/common/clock.h"
#include "sim/common/parts.h"
#include "sim/lens/carried_image.h"
#include "sim/lens/lens_summary.h"

namespace kelvo::sim::camera {

/// What a frame to the lens controller is, whether it was welcome or not.
enum class FrameKind : std::uint8_t {
  boot_command,
  checksum_read,
  payload,
  command,
  query,
  malformed
};
inline constexpr std::size_t frame_kinds = 6;

/// One program download, as it arrived.
struct Download {
  std::uint32_t attempt = 0;  // of its boot, from 1
  std::uint8_t memory = 0;
  ModuleSet modules = 0;  // whose image it is; none: not intact
  std::uint32_t address = 0;
  std::uint32_t size = 0;
  std::uint32_t checksum = 0;  // as it is answered

  bool intact() const { return modules != 0; }
};

/// A boot begins with a reset. Resets that follow are further attempts of the same boot, until a program
/// has been started and frames are sent to it.
struct BootRecord {
  static constexpr std::size_t most_downloads = 48;

  Time begun{};
  Time up{};             // when the last start command came
  bool started = false;  // there was a start command
  bool runs = false;     // and a program to start
  bool settled = false;  // and a frame for it
  bool cut = false;      // the power was cut
  LensModule module{};   // while a program runs
  std::uint16_t version = 0;
  std::uint32_t attempts = 0;
  std::uint32_t download_count = 0;
  std::array<Download, most_downloads> downloads{};  // the first ones
  std::array<std::uint32_t, frame_kinds> frames{};
  std::uint64_t violations = 0;
  LensSummary lens{};  // when the next boot began

  void add(const Download& download);
  std::span<const Download> listed() const;
  std::uint32_t& count(FrameKind kind) { return frames[static_cast<std::size_t>(kind)]; }
  std::uint32_t count(FrameKind kind) const { return frames[static_cast<std::size_t>(kind)]; }
};

/// The latest boots.
class BootLog {
 public:
  static constexpr std::uint32_t capacity = 16;

  /// The controller was reset at `begun`: another attempt, or another boot.
  void attempt(Time begun, const LensSummary& lens);
  /// The power is cut: whatever comes next begins another boot.
  void cut(const LensSummary& lens);
  /// The boot that is under way; frames without any reset before them make one without attempts.
  BootRecord& current(Time now);

  std::uint32_t total() const { return total_; }
  /// The number of the earliest boot that is still kept, from 1.
  std::uint32_t first() const { return total_ > capacity ? total_ - capacity + 1 : 1; }
  const BootRecord& boot(std::uint32_t number) const { return kept_[(number - 1) % capacity]; }

  /// All entries, and those that the next frame or reset may change.
  std::span<std::byte> entries() { return std::as_writable_bytes(std::span(kept_)); }
  void add_entries_at_risk(Parts& parts);

 private:
  BootRecord& begin(Time begun);
  BootRecord& last() { return kept_[(total_ - 1) % capacity]; }

  std::uint32_t total_ = 0;
  std::array<BootRecord, capacity> kept_{};
};

}  // namespace kelvo::sim::camera

#endif
