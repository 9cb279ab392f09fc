#include <array>

#include "sim/trace/names.h"
#include "sim/trace/text.h"
#include "wire/pt5111.h"

namespace kelvo::sim::trace {
namespace {

namespace pt5111 = wire::pt5111;

struct NamedWord {
  std::int32_t word;
  const char* name;
};

#define KELVO_ROW(name) \
  NamedWord { pt5111::name, #name }
constexpr std::array words{
    KELVO_ROW(power_on),        KELVO_ROW(power_off),         KELVO_ROW(drive_a),
    KELVO_ROW(drive_a_off),     KELVO_ROW(drive_b),           KELVO_ROW(halt_a),
    KELVO_ROW(halt_b),          KELVO_ROW(filter_setup),      KELVO_ROW(filter_on),
    KELVO_ROW(filter_off),      KELVO_ROW(filter_pulse),      KELVO_ROW(filter_rest),
    KELVO_ROW(chip_setup),      KELVO_ROW(chip_mode),         KELVO_ROW(ramp_a),
    KELVO_ROW(ramp_b),          KELVO_ROW(interrupter_setup), KELVO_ROW(interrupter_on),
    KELVO_ROW(interrupter_off), KELVO_ROW(analogue_setup),    KELVO_ROW(threshold_setup),
};
/// Registers of either motor; the value is the rest of the word.
constexpr std::array fields{
    KELVO_ROW(count_low),
    KELVO_ROW(count_high),
    KELVO_ROW(period),
    KELVO_ROW(divider),
};
#undef KELVO_ROW

constexpr unsigned value_bits = 10;
constexpr std::int32_t value_mask = pt5111::word(1, 0) - 1;

/// What a motor's word of a move says, or nothing.
std::string of_move(std::int32_t word) {
  if (word == pt5111::run) return "run";
  for (const NamedWord& field : fields) {
    if ((word & ~value_mask) == field.word) {
      return dashed(field.name) + " " + std::to_string(word & value_mask);
    }
  }
  const std::int32_t direction = word & ~pt5111::full_stepping;
  const char* const stepping = direction != word ? " full-stepping" : "";
  if (direction == pt5111::forward) return std::string("forward") + stepping;
  if (direction == pt5111::backward) return std::string("backward") + stepping;
  return {};
}

}  // namespace

std::string pt5111_word(std::uint16_t word) {
  for (const NamedWord& row : words) {
    if (row.word == word) return dashed(row.name);
  }
  constexpr std::int32_t in_block = pt5111::motor_b - 1;
  const bool has_motor = word < 2 * pt5111::motor_b;
  const std::string move = has_motor ? of_move(word & in_block) : "";
  if (!move.empty()) return (word < pt5111::motor_b ? "motor-a " : "motor-b ") + move;
  return "register " + std::to_string(word >> value_bits) + " " + hex(word & value_mask, 3);
}

}  // namespace kelvo::sim::trace
