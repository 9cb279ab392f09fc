// The boot loader's frames, and the images that follow them.
#include <array>

#include "sim/trace/frames.h"
#include "wire/boot_loader.h"
#include "wire/program_images.h"

namespace kelvo::sim::trace {
namespace {

namespace loader = wire::boot_loader;

/// What the three data bytes are, or the answer.
enum class Form : std::uint8_t { bytes, nothing, memory, address, size, answer };

struct BootFrame {
  std::uint8_t code;
  const char* name;
  Form form;
};

#define KELVO_ROW(name, form) \
  BootFrame { loader::name, #name, Form::form }
constexpr std::array boot_frames{
    KELVO_ROW(clock_supply, bytes),       KELVO_ROW(clock_source, bytes),
    KELVO_ROW(division_ratio, bytes),     KELVO_ROW(divider_start, bytes),
    KELVO_ROW(pll_control, bytes),        KELVO_ROW(pll_mode, bytes),
    KELVO_ROW(payload_header, memory),    KELVO_ROW(start_program, nothing),
    KELVO_ROW(download_address, address), KELVO_ROW(download_size, size),
    KELVO_ROW(download_end, bytes),       KELVO_ROW(checksum_low, answer),
    KELVO_ROW(checksum_high, answer),
};
#undef KELVO_ROW

std::uint32_t low_first(Bytes bytes) {
  std::uint32_t number = 0;
  for (std::size_t i = bytes.size(); i > 0; --i) number = number << 8 | bytes[i - 1];
  return number;
}

bool all_zero(Bytes bytes) { return high_first(bytes) == 0; }

std::string value_of(Form form, Bytes data) {
  switch (form) {
    case Form::address: return hex(low_first(data), 6);
    case Form::size: return std::to_string(low_first(data));
    case Form::memory:
      if (data[0] != loader::payload_mode || data[2] != 0) break;
      return "memory " + hex(data[1], 2);
    case Form::nothing:
    case Form::answer:
      if (!all_zero(data)) break;
      return {};
    case Form::bytes: break;
  }
  return hex_bytes(data);
}

}  // namespace

void decode_boot_frame(const Event& event, Decoded& decoded) {
  const Bytes data = sent_of(event).subspan(1, 3);
  decoded.kind = "boot";
  decoded.code = event.sent[0];
  decoded.shown_code = hex(event.sent[0], 2);
  decoded.name = "unknown";
  decoded.value = hex_bytes(data);
  for (const BootFrame& row : boot_frames) {
    if (row.code != event.sent[0]) continue;
    decoded.name = dashed(row.name);
    decoded.value = value_of(row.form, data);
    if (row.form != Form::answer || event.received_length != loader::frame_length) continue;
    decoded.answer = hex(static_cast<std::uint32_t>(event.received[loader::answer_high]) << 8 |
                             event.received[loader::answer_low],
                         4);
  }
}

void decode_payload(const Event& event, Decoded& decoded) {
  decoded.kind = "payload";
  decoded.value = std::to_string(event.sent_length) + " bytes";
  for (const wire::ProgramImage& image : wire::program_images) {
    if (static_cast<std::uint32_t>(image.size) != event.sent_length) continue;
    decoded.name += (decoded.name.empty() ? "" : "|") + std::string(image.symbol);
  }
}

}  // namespace kelvo::sim::trace
