#ifndef KELVO_WIRE_LENS_PROGRAM_H
#define KELVO_WIRE_LENS_PROGRAM_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "wire/lens_module.h"

// What the lens controller's downloaded programs understand. One row each: name, code, the lens
// modules whose program knows it, meaning. A setting's read-back query is its command code with the
// top bit set.

// clang-format off
#define KELVO_LENS_COMMANDS(ROW)                                                                      \
  ROW(set_mode,            5, all,         "loop mode; 0 after a normal boot")                        \
  ROW(write_register,     12, df033_t5391, "16-bit register write: 0, register, high, low")           \
  ROW(write_register_de,  15, de015,       "16-bit register write: 0, register, high, low")           \
  ROW(zoom3_direction,    22, df033,       "0 forward, 1 backward")                                   \
  ROW(zoom3_mode,         23, df033,       "always 3")                                                \
  ROW(zoom3_rate,         24, df033,       "eighth steps a second, 16 bits")                          \
  ROW(zoom3_count,        25, df033,       "steps, 16 bits")                                          \
  ROW(zoom3_drive,        26, df033,       "100 while moving")                                        \
  ROW(zoom3_enable,       27, df033,       "1 energises the coils")                                   \
  ROW(zoom3_start,        28, df033,       "1 starts the move")                                       \
  ROW(zoom3_profile,      29, df033,       "always 25, 0")                                            \
  ROW(polarity,           33, all,         "calibration: polarity, 16 bits")                          \
  ROW(loop_ready,         39, df033_t5391, "1 at the end of a boot")                                  \
  ROW(pt5111_word,        47, df033,       "2, word high, word low, 0: passed on to the PT5111")      \
  ROW(zoom1_direction,    56, de015,       "0 forward, 1 backward")                                   \
  ROW(zoom1_mode,         57, de015,       "1 micro-step, 0 2-2 phase")                               \
  ROW(zoom1_rate,         58, de015,       "steps a second, 16 bits")                                 \
  ROW(zoom1_profile,      59, de015,       "always 25, 0")                                            \
  ROW(zoom1_count,        60, de015,       "steps, 16 bits")                                          \
  ROW(zoom1_drive,        61, de015,       "100 while moving")                                        \
  ROW(zoom1_enable,       62, de015,       "1 energises the coils")                                   \
  ROW(zoom1_start,        63, de015,       "1 starts the move")                                       \
  ROW(hall_offset_x,      81, all,         "calibration: Hall offset, X axis or iris, 16 bits")       \
  ROW(hall_offset_y,      82, de015,       "calibration: Hall offset, Y axis, 16 bits")               \
  ROW(hall_gain_x,        83, all,         "calibration: Hall gain, X axis or iris, 16 bits")         \
  ROW(hall_gain_y,        84, de015,       "calibration: Hall gain, Y axis, 16 bits")                 \
  ROW(travel_min_x,       87, all,         "calibration: travel minimum, X axis or iris, 16 bits")    \
  ROW(travel_max_x,       88, all,         "calibration: travel maximum, X axis or iris, 16 bits")    \
  ROW(travel_min_y,       89, de015,       "calibration: travel minimum, Y axis, 16 bits")            \
  ROW(travel_max_y,       90, de015,       "calibration: travel maximum, Y axis, 16 bits")            \
  ROW(gyro_zero_x,        99, de015,       "calibration: gyro zero, X axis, 16 bits")                 \
  ROW(gyro_zero_y,       101, de015,       "calibration: gyro zero, Y axis, 16 bits")

#define KELVO_LENS_QUERIES(ROW)                                                                       \
  ROW(version_de,       0x85, de015,       "program version, reply bytes 2 and 3")                    \
  ROW(version,          0x86, df033_t5391, "program version, reply bytes 2 and 3")                    \
  ROW(hall_noise_x,     0x96, de015,       "measured Hall noise, X axis")                             \
  ROW(hall_noise_y,     0x97, de015,       "measured Hall noise, Y axis")                             \
  ROW(iris_sine,        0x98, df033_t5391, "measured sine value of the iris")                         \
  ROW(gyro_noise_x,     0x9A, de015,       "measured gyro noise, X axis")                             \
  ROW(gyro_noise_y,     0x9B, de015,       "measured gyro noise, Y axis")                             \
  ROW(polarity,         0xA1, all,         "polarity")                                                \
  ROW(iris_travel_min,  0xC5, df033_t5391, "travel minimum of the iris")                              \
  ROW(iris_travel_max,  0xC6, df033_t5391, "travel maximum of the iris")                              \
  ROW(hall_offset_x,    0xD1, all,         "Hall offset, X axis or iris")                             \
  ROW(hall_offset_y,    0xD2, de015,       "Hall offset, Y axis")                                     \
  ROW(hall_gain_x,      0xD3, all,         "Hall gain, X axis or iris")                               \
  ROW(hall_gain_y,      0xD4, de015,       "Hall gain, Y axis")                                       \
  ROW(travel_min_x,     0xD7, de015,       "travel minimum, X axis")                                  \
  ROW(travel_max_x,     0xD8, de015,       "travel maximum, X axis")                                  \
  ROW(travel_min_y,     0xD9, de015,       "travel minimum, Y axis")                                  \
  ROW(travel_max_y,     0xDA, de015,       "travel maximum, Y axis")                                  \
  ROW(gyro_zero_x,      0xE3, de015,       "gyro zero, X axis")                                       \
  ROW(gyro_zero_y,      0xE5, de015,       "gyro zero, Y axis")
// clang-format on

namespace kelvo::wire {

// Command frame: code, four argument bytes, checksum, 0.
inline constexpr std::size_t command_frame_length = 7;
// Query frame: six bytes sent, the four reply bytes come back in bytes 7 to 10.
inline constexpr std::size_t query_frame_length = 12;
inline constexpr std::size_t query_reply_offset = 7;
inline constexpr std::size_t query_reply_length = 4;
/// Codes from here on are queries.
inline constexpr std::uint8_t first_query = 0x80;
// The two queries whose argument travels in byte 1 instead of byte 2; the second also leaves byte 4 at 0.
inline constexpr std::uint8_t argument_first_query = 0xA0;
inline constexpr std::uint8_t sensor_level_query   = 0x81;

/// The programs that know a code.
enum class Programs : std::uint8_t { de015 = 1, df033 = 2, t5391 = 4, df033_t5391 = 6, all = 7 };

constexpr bool knows(Programs programs, LensModule module) {
  return ((static_cast<unsigned>(programs) >> (static_cast<int>(module) - 7)) & 1U) != 0;
}

struct LensCode {
  std::uint8_t code;
  Programs programs;
  const char* name;
  const char* meaning;
};

#define KELVO_CONSTANT(name, code, programs, meaning) inline constexpr std::uint8_t name = code;
#define KELVO_ROW(name, code, programs, meaning) LensCode{code, Programs::programs, #name, meaning},
namespace command {
KELVO_LENS_COMMANDS(KELVO_CONSTANT)
inline constexpr std::array table{KELVO_LENS_COMMANDS(KELVO_ROW)};
}  // namespace command
namespace query {
KELVO_LENS_QUERIES(KELVO_CONSTANT)
inline constexpr std::array table{KELVO_LENS_QUERIES(KELVO_ROW)};
}  // namespace query
#undef KELVO_CONSTANT
#undef KELVO_ROW

/// The row that gives a code its meaning in a module's program, or null.
template <std::size_t rows>
constexpr const LensCode* find(const std::array<LensCode, rows>& table, std::uint8_t code,
                               LensModule module) {
  for (const LensCode& row : table) {
    if (row.code == code && knows(row.programs, module)) return &row;
  }
  return nullptr;
}

/// Whether no program has two meanings for one code.
template <std::size_t rows>
constexpr bool unambiguous(const std::array<LensCode, rows>& table) {
  for (const LensCode& row : table) {
    for (const LensModule module : {LensModule::de015, LensModule::df033, LensModule::t5391}) {
      if (knows(row.programs, module) && find(table, row.code, module) != &row) return false;
    }
  }
  return true;
}
static_assert(unambiguous(command::table));
static_assert(unambiguous(query::table));

}  // namespace kelvo::wire

#endif
