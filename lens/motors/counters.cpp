#include <cstdint>

#include "kelvo/bus.h"
#include "kelvo/lens.h"
#include "lens/motors/by_module.h"
#include "wire/lens_program.h"
#include "wire/motor_channels.h"

namespace {

using kelvo::lens::ByModule;
namespace command = kelvo::wire::command;
namespace query = kelvo::wire::query;

constexpr std::uint8_t zoom_counter = kelvo::wire::zoom_channel.counter;
constexpr std::uint8_t focus_counter = kelvo::wire::focus_channel.counter;

enum class Encoding : std::uint8_t { none, wide, folded, raw };

struct CounterRead {
  Encoding encoding = Encoding::none;
  std::uint8_t query = 0;
  std::uint8_t reg = 0;
};

enum class Way : std::uint8_t { none, clear, send, write };

struct Preset {
  Way way = Way::none;
  std::uint8_t code = 0;  // of a command, or a register's number
};

struct Counter {
  ByModule<CounterRead> read;
  ByModule<Preset> preset;
};

// clang-format off
constexpr Counter zoom1{
    .read   = {.de015 = {Encoding::wide,   query::zoom1_count_de,   0},
               .df033 = {Encoding::wide,   query::zoom1_count,      0},
               .t5391 = {Encoding::folded, query::read_register_de, zoom_counter}},
    .preset = {.de015 = {Way::clear, command::zoom1_clear_count},  // the count is not sent (deliberate)
               .df033 = {Way::send,  command::zoom1_preset_count},
               .t5391 = {Way::write, zoom_counter}}};
constexpr Counter zoom2{
    .read   = {.de015 = {Encoding::folded, query::read_register_de, zoom_counter}},
    .preset = {.de015 = {Way::write, zoom_counter}}};
constexpr Counter zoom3{
    .read   = {.df033 = {Encoding::wide,   query::zoom3_count,      0}},
    .preset = {.df033 = {Way::clear, command::zoom3_clear_count}}};  // likewise
constexpr Counter focus{
    .read   = {.de015 = {Encoding::folded, query::read_register_de, focus_counter},
               .df033 = {Encoding::raw,    query::read_register,    focus_counter}},
    .preset = {.de015 = {Way::write, focus_counter},
               .df033 = {Way::write, focus_counter},
               .t5391 = {Way::write, focus_counter}}};
// clang-format on

/// Runs downwards in two halves: 0x3FFF to 0 are the counts 0 to 16383, 0x7FFF to 0x4000 the counts
/// 16384 to 32767. With bit 15 set and bit 14 clear the result wraps below zero (deliberate).
constexpr std::uint32_t unfold(std::uint32_t raw) {
  constexpr std::uint32_t upper_half = 0x4000;
  return (raw & upper_half) != 0 ? (raw ^ 0x7FFFU) + upper_half : 0x3FFFU - raw;
}
static_assert(unfold(0x3FFF) == 0 && unfold(0) == 16383);
static_assert(unfold(0x7FFF) == 16384 && unfold(0x4000) == 32767);

std::uint32_t read(const Counter& counter) {
  const CounterRead& row = counter.read.fitted();
  if (row.encoding == Encoding::none) return 0;
  std::uint8_t reply[4] = {};
  RecvCommand(row.query, row.reg, reply);
  const auto low = static_cast<std::uint32_t>(reply[2] << 8 | reply[3]);
  switch (row.encoding) {
    case Encoding::folded: return unfold(low);
    case Encoding::raw: return low;
    default: return static_cast<std::uint32_t>(reply[0] << 8 | reply[1]) << 16 | low;
  }
}

/// Of a signed count; its lowest value stays as it is.
std::uint32_t magnitude(std::uint32_t count) {
  return static_cast<std::int32_t>(count) < 0 ? 0U - count : count;
}

std::uint8_t preset(const Counter& counter, std::uint32_t count) {
  const Preset& row = counter.preset.fitted();
  switch (row.way) {
    case Way::clear: return SendCommand(row.code, 0, 0, 0, 0);
    case Way::send:
      return SendCommand(row.code, static_cast<std::uint8_t>(count >> 24),
                         static_cast<std::uint8_t>(count >> 16),
                         static_cast<std::uint8_t>(count >> 8), static_cast<std::uint8_t>(count));
    case Way::write: return reg_wt16_0x0c(row.code, static_cast<std::int16_t>(count));
    default: return 0;
  }
}

}  // namespace

std::uint32_t GetZoom1Count() { return magnitude(read(zoom1)); }
std::uint32_t GetZoom2Count() { return read(zoom2); }
std::uint32_t GetZoom3Count() { return magnitude(read(zoom3)); }
std::uint32_t GetFocusCount() { return read(focus); }

std::uint8_t SetZoom1Count(std::uint32_t count) { return preset(zoom1, count); }
std::uint8_t SetZoom2Count(std::uint32_t count) { return preset(zoom2, count); }
std::uint8_t SetZoom3Count(std::uint32_t count) { return preset(zoom3, count); }
std::uint8_t SetFocusCount(std::uint32_t count) { return preset(focus, count); }
