#ifndef KELVO_WIRE_PAN_TILT_REGISTERS_H
#define KELVO_WIRE_PAN_TILT_REGISTERS_H

#include <array>
#include <cstdint>

// The registers of the two pan/tilt controller families. One row each: name, number, direction (r read,
// w written), data bytes behind the register byte, meaning. Numbers travel high byte first.

// clang-format off
#define KELVO_VETRA_REGISTERS(ROW)                                                                     \
  ROW(absolute_move,       1, w, 5, "direction, target count u16, speed u16")                          \
  ROW(continuous_move,     3, w, 3, "direction, speed u16")                                            \
  ROW(set_limit_enable,    4, w, 1, "travel limits: 1 on, 0 off")                                      \
  ROW(set_limits,          5, w, 4, "travel limits: two counts u16; pan start, end; tilt end, start")  \
  ROW(stop,                6, w, 0, "stops the axis")                                                  \
  ROW(set_limit_step,     10, w, 2, "limit step u16")                                                  \
  ROW(set_position_gains, 16, w, 4, "position loop: P u16, I u16")                                     \
  ROW(set_speed_gains,    17, w, 4, "speed loop: P u16, I u16")                                        \
  ROW(set_current,        18, w, 2, "motor current u16")                                               \
  ROW(set_acceleration,   19, w, 4, "acceleration u32")                                                \
  ROW(set_deceleration,   21, w, 4, "deceleration u32")                                                \
  ROW(reset,              34, w, 0, "restarts the controller")                                         \
  ROW(version,            48, r, 1, "firmware version")                                                \
  ROW(status,             49, r, 1, "bits 0-1: 2 calibrated; bit 2: at rest")                          \
  ROW(position,           50, r, 2, "count u16, 0 to full range - 1")                                  \
  ROW(limit_enable,       51, r, 1, "travel limits: 1 on, 0 off")                                      \
  ROW(limits,             52, r, 4, "travel limits: start u16, end u16, in counts")                    \
  ROW(family,            240, r, 2, "signature of the family, \"VX\" (pan controller)")

#define KELVO_TASMERE_REGISTERS(ROW)                                                                   \
  ROW(reset,               1, w, 0, "restarts the controller")                                         \
  ROW(calibration,         2, r, 1, "1 calibrated")                                                    \
  ROW(run_status,          3, r, 1, "0 at rest")                                                       \
  ROW(position,            4, r, 2, "position u16, 0 to 65535")                                        \
  ROW(continuous_move,     7, w, 2, "signed speed u16, 32767 at full; 0 stops")                        \
  ROW(drive_8,             8, w, 2, "drive parameter")                                                 \
  ROW(set_p,              12, w, 2, "P u16")                                                           \
  ROW(set_i,              14, w, 2, "I u16")                                                           \
  ROW(set_d,              16, w, 2, "D u16")                                                           \
  ROW(set_limit_start,    18, w, 2, "travel-limit start u16")                                          \
  ROW(set_limit_length,   19, w, 2, "travel-limit length u16: end - start, wrapped")                   \
  ROW(set_travel_mode,    25, w, 2, "1 continuous rotation, 2 limited travel")                         \
  ROW(travel_mode,        26, r, 2, "travel mode; low byte 2 limited")                                 \
  ROW(version,            27, r, 4, "firmware version")                                                \
  ROW(wake_up,            28, w, 0, "wakes the axis up")                                               \
  ROW(set_power_up_sleep, 29, w, 1, "sleep on power-up: 0 off")                                        \
  ROW(save,               35, w, 0, "saves the settings to flash")                                     \
  ROW(sleep_mode,         48, r, 1, "0 awake")                                                         \
  ROW(absolute_move,      66, w, 4, "position u16, signed speed u16, 24575 at full")                   \
  ROW(drive_67,           67, w, 1, "drive parameter")                                                 \
  ROW(drive_70,           70, w, 2, "drive parameter")                                                 \
  ROW(limit_start,        74, r, 2, "travel-limit start u16")                                          \
  ROW(limit_length,       75, r, 2, "travel-limit length u16")                                         \
  ROW(drive_76,           76, w, 1, "drive parameter")                                                 \
  ROW(set_use_hall,       78, w, 1, "Hall sensor: 1 in use, 0 not")                                    \
  ROW(use_hall,           79, r, 1, "Hall sensor: 1 in use")                                           \
  ROW(max_current,        81, w, 2, "maximum current")                                                 \
  ROW(turbo,              83, w, 1, "turbo mode: 1 on, 0 off")                                         \
  ROW(drive_86,           86, w, 1, "drive parameter")                                                 \
  ROW(drive_88,           88, w, 4, "drive parameter")                                                 \
  ROW(current_117,       117, w, 2, "current parameter, written with the maximum current")             \
  ROW(drive_131,         131, w, 1, "drive parameter")                                                 \
  ROW(drive_149,         149, w, 4, "drive parameter")                                                 \
  ROW(drive_151,         151, w, 1, "drive parameter")                                                 \
  ROW(temperature,       155, r, 2, "temperature u16")                                                 \
  ROW(program_state,     254, r, 1, "program state")
// clang-format on

namespace kelvo::wire {

enum class Access : std::uint8_t { r, w };

struct ControllerRegister {
  std::uint8_t number;
  Access access;
  std::uint8_t width;  // data bytes behind the register byte
  const char* name;
  const char* meaning;
};

#define KELVO_CONSTANT(name, number, access, width, meaning) \
  inline constexpr std::uint8_t name = number;
#define KELVO_ROW(name, number, access, width, meaning) \
  ControllerRegister{number, Access::access, width, #name, meaning},
namespace vetra {
KELVO_VETRA_REGISTERS(KELVO_CONSTANT)
inline constexpr std::array registers{KELVO_VETRA_REGISTERS(KELVO_ROW)};
}  // namespace vetra
namespace tasmere {
KELVO_TASMERE_REGISTERS(KELVO_CONSTANT)
inline constexpr std::array registers{KELVO_TASMERE_REGISTERS(KELVO_ROW)};
}  // namespace tasmere
#undef KELVO_CONSTANT
#undef KELVO_ROW

/// Whether the rows stand in the order of their numbers, each number once.
template <std::size_t rows>
constexpr bool ascending(const std::array<ControllerRegister, rows>& registers) {
  for (std::size_t i = 1; i < rows; ++i) {
    if (registers[i - 1].number >= registers[i].number) return false;
  }
  return true;
}
static_assert(ascending(vetra::registers));
static_assert(ascending(tasmere::registers));

/// The first two bytes of vetra::family.
inline constexpr std::uint8_t vetra_signature[] = {'V', 'X'};

/// Counts of a Vetra controller for one full range.
inline constexpr std::int32_t vetra_full_step = 18000;
/// The zero of a Vetra tilt controller lies so many counts from the common one.
inline constexpr std::int32_t vetra_tilt_offset = 3500;
/// The zero of a Tasmere tilt axis that positions by its Hall sensor, on the common scale.
inline constexpr std::int32_t tilt_hall_offset = 27852;

}  // namespace kelvo::wire

#endif
