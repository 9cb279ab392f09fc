// What a program is about to do with the camera, as faults see it.
#ifndef KELVO_SIM_FAULT_TRANSFER_H
#define KELVO_SIM_FAULT_TRANSFER_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "wire/pan_tilt.h"

namespace kelvo::sim::fault {

/// Where a program reaches the camera: three device nodes, the GPIO lines, the calibration files.
enum class Port : std::uint8_t { spi, pt5111, i2c, gpio, file };

/// Kinds of frames; those to the lens controller are told by their length.
enum class Frame : std::uint8_t {
  open,  // of a device node
  boot_command,
  checksum_read,
  payload,
  command,
  query,
  word,
  write,  // of a register of the head
  read,
  shell,
  file_write,  // a file is opened for writing
  file_read,
};

/// A set of frames, a bit each.
using Frames = std::uint16_t;
constexpr Frames bit(Frame frame) {
  return static_cast<Frames>(1U << static_cast<unsigned>(frame));
}

/// Frames that bring an answer, and those that only tell something.
inline constexpr Frames asking =
    bit(Frame::checksum_read) | bit(Frame::query) | bit(Frame::read) | bit(Frame::file_read);
inline constexpr Frames telling = bit(Frame::boot_command) | bit(Frame::payload) |
                                  bit(Frame::command) | bit(Frame::word) | bit(Frame::write) |
                                  bit(Frame::shell) | bit(Frame::file_write);

struct Transfer {
  Port port;
  Frame frame;
  std::optional<std::uint8_t> code{};  // of a frame to the lens controller: its first byte
  std::optional<std::uint8_t> reg{};   // that it writes or reads
  std::optional<std::uint16_t> slave{};
  wire::HeadFamily family = wire::HeadFamily::tasmere;
  std::size_t sent = 0;  // bytes
  std::size_t received = 0;
  std::string_view path{};  // of a file
};

/// A device node is opened.
Transfer opening(Port port);
Transfer lens_transfer(std::span<const std::uint8_t> sent);
Transfer pt5111_transfer(std::span<const std::uint8_t> sent);
/// What is sent to a slave of the head, and how many bytes it shall answer.
Transfer head_transfer(wire::HeadFamily family, std::uint16_t slave,
                       std::span<const std::uint8_t> sent, std::size_t received);
Transfer shell_command();
/// A file is opened; the mode is fopen's.
Transfer file_opening(std::string_view path, std::string_view mode);

}  // namespace kelvo::sim::fault

#endif
