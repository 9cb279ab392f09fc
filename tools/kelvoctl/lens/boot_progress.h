#ifndef KELVO_TOOLS_KELVOCTL_LENS_BOOT_PROGRESS_H
#define KELVO_TOOLS_KELVOCTL_LENS_BOOT_PROGRESS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvo::ctl {

/// One image on its way into the controller.
struct Download {
  int attempt = 1;
  int image = 1;
  std::int64_t bytes = 0;
  std::uint32_t expected = 0;  // checksums
  std::uint32_t received = 0;
  bool finished = false;
  bool confirmed = false;
};

/// Where a boot is, from what the library prints.
class BootProgress {
 public:
  static constexpr int images_of_a_module = 3;
  static constexpr int most_attempts = 10;

  /// Takes a line that was printed.
  void take(std::string_view line);

  const std::vector<Download>& downloads() const { return downloads_; }
  /// Whether the boot loader could not be asked.
  bool transfers_failed() const { return transfers_failed_; }
  /// Whether every checksum was 0, as read from wires that nobody drives.
  bool silent() const;
  int attempts() const { return downloads_.empty() ? 0 : downloads_.back().attempt; }
  /// "attempt 1 of 10, image 2 of 3, 1228 bytes, checksum 0xDB9F8EF5 confirmed"
  std::string text() const;

 private:
  void begin(std::string_view bytes);

  std::vector<Download> downloads_;
  bool transfers_failed_ = false;
};

}  // namespace kelvo::ctl

#endif
