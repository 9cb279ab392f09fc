#include "sim/fault/transfer.h"

#include "wire/boot_loader.h"
#include "wire/lens_program.h"

namespace kelvo::sim::fault {
namespace {

constexpr std::size_t register_place = 2;  // in the frames that write or read a register

Frame kind_of(std::span<const std::uint8_t> sent) {
  namespace boot = wire::boot_loader;
  switch (sent.size()) {
    case boot::frame_length:
      return sent[0] == boot::checksum_low || sent[0] == boot::checksum_high ? Frame::checksum_read
                                                                             : Frame::boot_command;
    case wire::command_frame_length: return Frame::command;
    case wire::query_frame_length: return Frame::query;
    default: return Frame::payload;
  }
}

bool is_about_a_register(Frame frame, std::uint8_t code) {
  if (frame == Frame::command) {
    return code == wire::command::write_register || code == wire::command::write_register_de;
  }
  return frame == Frame::query &&
         (code == wire::query::read_register || code == wire::query::read_register_de);
}

}  // namespace

Transfer opening(Port port) { return {.port = port, .frame = Frame::open}; }

Transfer lens_transfer(std::span<const std::uint8_t> sent) {
  Transfer transfer{
      .port = Port::spi, .frame = kind_of(sent), .sent = sent.size(), .received = sent.size()};
  if (transfer.frame == Frame::payload) return transfer;
  transfer.code = sent[0];
  if (is_about_a_register(transfer.frame, sent[0])) transfer.reg = sent[register_place];
  return transfer;
}

Transfer pt5111_transfer(std::span<const std::uint8_t> sent) {
  Transfer transfer{
      .port = Port::pt5111, .frame = Frame::word, .sent = sent.size(), .received = sent.size()};
  if (!sent.empty()) transfer.reg = static_cast<std::uint8_t>(sent[0] >> 2);
  return transfer;
}

Transfer head_transfer(wire::HeadFamily family, std::uint16_t slave,
                       std::span<const std::uint8_t> sent, std::size_t received) {
  Transfer transfer{.port = Port::i2c,
                    .frame = received != 0 ? Frame::read : Frame::write,
                    .slave = slave,
                    .family = family,
                    .sent = sent.size(),
                    .received = received};
  if (!sent.empty()) transfer.reg = sent[0];
  return transfer;
}

Transfer shell_command() { return {.port = Port::gpio, .frame = Frame::shell}; }

Transfer file_opening(std::string_view path, std::string_view mode) {
  const bool reads = mode.starts_with('r') && mode.find('+') == std::string_view::npos;
  return {.port = Port::file, .frame = reads ? Frame::file_read : Frame::file_write, .path = path};
}

}  // namespace kelvo::sim::fault
