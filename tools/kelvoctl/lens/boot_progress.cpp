#include "tools/kelvoctl/lens/boot_progress.h"

#include <algorithm>
#include <charconv>

#include "tools/kelvoctl/common/hexadecimal.h"

namespace kelvo::ctl {
namespace {

// What a download prints, in this order; the halves only where they are not what was expected.
constexpr std::string_view size_line = "Download FW size:";
constexpr std::string_view expected_line = "Checksum:";
constexpr std::string_view low_line = "66 Read Checksum:";
constexpr std::string_view high_line = "67 Read Checksum:";
constexpr std::string_view end_line = "ChecksumError:";
// Where a checksum could not be asked for, at the second try either.
constexpr std::string_view failure_line = "ReadSpi Error";

constexpr int half = 16;  // bits

std::uint32_t number(std::string_view text, int base) {
  std::uint32_t value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value, base);
  return value;
}

/// What stands behind a beginning; nothing for another line.
bool takes(std::string_view& line, std::string_view beginning) {
  if (!line.starts_with(beginning)) return false;
  line.remove_prefix(beginning.size());
  return true;
}

}  // namespace

void BootProgress::begin(std::string_view bytes) {
  const int before = static_cast<int>(downloads_.size());
  Download& download = downloads_.emplace_back();
  download.attempt = before / images_of_a_module + 1;
  download.image = before % images_of_a_module + 1;
  download.bytes = number(bytes, 10);
}

void BootProgress::take(std::string_view line) {
  if (takes(line, size_line)) return begin(line);
  if (line.starts_with(failure_line)) transfers_failed_ = true;
  if (downloads_.empty()) return;
  Download& download = downloads_.back();
  if (takes(line, expected_line)) {
    download.expected = number(line, 16);
    download.received = download.expected;
  } else if (takes(line, low_line)) {
    download.received = (download.received >> half << half) | number(line, 16);
  } else if (takes(line, high_line)) {
    download.received = (download.received & 0xFFFF) | number(line, 16) << half;
  } else if (takes(line, end_line)) {
    download.finished = true;
    download.confirmed = number(line, 10) == 0;
  }
}

bool BootProgress::silent() const {
  return !downloads_.empty() && std::ranges::all_of(downloads_, [](const Download& download) {
    return !download.confirmed && download.received == 0;
  });
}

std::string BootProgress::text() const {
  if (downloads_.empty()) return "reset";
  const Download& download = downloads_.back();
  std::string text = "attempt " + std::to_string(download.attempt) + " of " +
                     std::to_string(most_attempts) + ", image " + std::to_string(download.image) +
                     " of " + std::to_string(images_of_a_module) + ", " +
                     std::to_string(download.bytes) + " bytes";
  if (download.expected != 0) text += ", checksum " + hexadecimal(download.expected, 8);
  if (download.finished) text += download.confirmed ? " confirmed" : " not confirmed";
  return text;
}

}  // namespace kelvo::ctl
