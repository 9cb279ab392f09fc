// What goes to the controllers of the head.
#include <array>

#include "sim/trace/frames.h"
#include "wire/pan_tilt.h"
#include "wire/pan_tilt_registers.h"

namespace kelvo::sim::trace {
namespace {

using wire::ControllerRegister;
using wire::HeadFamily;

template <std::size_t rows>
void add_names(const std::array<ControllerRegister, rows>& registers, std::uint8_t number,
               std::string& names) {
  for (const ControllerRegister& row : registers) {
    if (row.number == number) add_meaning(names, row.name);
  }
}

/// What a register is called in the family that is there; in both, where that is not known.
std::string name_of(std::uint8_t number, std::int8_t family) {
  std::string names;
  if (family != static_cast<int>(HeadFamily::tasmere))
    add_names(wire::vetra::registers, number, names);
  if (family != static_cast<int>(HeadFamily::vetra))
    add_names(wire::tasmere::registers, number, names);
  return names.empty() ? "unknown" : names;
}

/// Up to two bytes are one number.
std::string data_text(Bytes kept, std::size_t length) {
  if (length == 1 || length == 2) return std::to_string(high_first(kept));
  return hex_bytes(kept, length);
}

std::string letters(Bytes bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (byte < 0x20 || byte > 0x7E) return hex_bytes(bytes);
    text += static_cast<char>(byte);
  }
  return '"' + text + '"';
}

void decode_register(const Event& event, Decoded& decoded) {
  decoded.code = event.sent[0];
  decoded.shown_code = std::to_string(event.sent[0]);
  decoded.name = name_of(event.sent[0], event.family);
}

void decode_write(const Event& event, Decoded& decoded) {
  decoded.kind = "write";
  if (event.sent_length == 0) {
    if (event.family == static_cast<int>(HeadFamily::tasmere)) {
      add_names(wire::tasmere::registers, wire::tasmere::wake_up, decoded.name);
    }
    decoded.value = "(no bytes)";
    return;
  }
  decode_register(event, decoded);
  decoded.value = data_text(sent_of(event).subspan(1), event.sent_length - 1);
}

void decode_read(const Event& event, Decoded& decoded) {
  decoded.kind = "read";
  const bool signature = event.sent_length == 1 && event.sent[0] == wire::vetra::family &&
                         event.family != static_cast<int>(HeadFamily::tasmere);
  const Bytes data = received_of(event);
  decoded.answer = signature ? letters(data) : data_text(data, event.received_length);
  if (event.sent_length == 1) return decode_register(event, decoded);
  decoded.value = counted_bytes(sent_of(event), event.sent_length);
}

}  // namespace

void decode_head_request(const Event& event, Decoded& decoded) {
  const bool reads = event.received_length != 0;
  if (event.messages == 1 && !reads) return decode_write(event, decoded);
  if (event.messages == 2 && reads) return decode_read(event, decoded);
  decoded.kind = std::to_string(event.messages) + (event.messages == 1 ? " message" : " messages");
  decoded.value = hex_bytes(sent_of(event), event.sent_length);
  decoded.answer = hex_bytes(received_of(event), event.received_length);
}

}  // namespace kelvo::sim::trace
