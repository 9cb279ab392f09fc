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
#define KELVO_LENS_COMMANDS(ROW)                                                                             \
  ROW(stabiliser_on,           2, all,         "starts stabilisation")                                       \
  ROW(stabiliser_off,          3, all,         "stops stabilisation")                                        \
  ROW(quality_check,           4, de015_df033, "1 before a quality check")                                   \
  ROW(set_mode,                5, all,         "loop mode; 0 after a normal boot, 1 calibrates")             \
  ROW(heater,                  7, all,         "heater level")                                               \
  ROW(stabiliser_pause,       10, de015,       "pauses stabilisation")                                       \
  ROW(write_register,         12, df033_t5391, "16-bit register write: 0, register, high, low")              \
  ROW(write_register_de,      15, de015,       "16-bit register write: 0, register, high, low")              \
  ROW(stationary_detection,   17, all,         "0 off, else the mode of detection")                          \
  ROW(gyro_stability,         18, all,         "limit of gyro stability, 16 bits")                           \
  ROW(zoom3_direction,        22, df033,       "0 forward, 1 backward")                                      \
  ROW(zoom3_mode,             23, df033,       "always 3")                                                   \
  ROW(zoom3_rate,             24, df033,       "eighth steps a second, 16 bits")                             \
  ROW(zoom3_count,            25, df033,       "steps, 16 bits")                                             \
  ROW(zoom3_drive,            26, df033,       "100 while moving, 34 powered off")                           \
  ROW(zoom3_enable,           27, df033,       "1 energises the coils")                                      \
  ROW(zoom3_start,            28, df033,       "1 starts the move")                                          \
  ROW(zoom3_profile,          29, df033,       "always 25, 0")                                               \
  ROW(sensor_service,         32, all,         "photo-interrupters and converter: sensor, 0, 0, what to do") \
  ROW(polarity,               33, all,         "calibration: polarity, 16 bits")                             \
  ROW(coma,                   34, all,         "coma setting")                                               \
  ROW(zoom3_clear_count,      35, df033,       "sets the position counter to 0")                             \
  ROW(loop_ready,             39, df033_t5391, "1 at the end of a boot")                                     \
  ROW(pt5111_word,            47, df033,       "2, word high, word low, 0: passed on to the PT5111")         \
  ROW(zoom1_direction,        56, de015,       "0 forward, 1 backward")                                      \
  ROW(zoom1_mode,             57, de015,       "1 micro-step, 0 2-2 phase")                                  \
  ROW(zoom1_rate,             58, de015,       "steps a second, 16 bits")                                    \
  ROW(zoom1_profile,          59, de015,       "always 25, 0")                                               \
  ROW(zoom1_count,            60, de015,       "steps, 16 bits")                                             \
  ROW(zoom1_drive,            61, de015,       "100 while moving, 20 powered off")                           \
  ROW(zoom1_enable,           62, de015,       "1 energises the coils")                                      \
  ROW(zoom1_start,            63, de015,       "1 starts the move")                                          \
  ROW(zoom1_clear_count,      70, de015,       "sets the position counter to 0")                             \
  ROW(zoom1_preset_count,     78, df033,       "sets the position counter, 32 bits")                         \
  ROW(hall_offset_x,          81, all,         "calibration: Hall offset, X axis or iris, 16 bits")          \
  ROW(hall_offset_y,          82, de015,       "calibration: Hall offset, Y axis, 16 bits")                  \
  ROW(hall_gain_x,            83, all,         "calibration: Hall gain, X axis or iris, 16 bits")            \
  ROW(hall_gain_y,            84, de015,       "calibration: Hall gain, Y axis, 16 bits")                    \
  ROW(travel_min_x,           87, all,         "calibration: travel minimum, X axis or iris, 16 bits")       \
  ROW(travel_max_x,           88, all,         "calibration: travel maximum, X axis or iris, 16 bits")       \
  ROW(travel_min_y,           89, de015,       "calibration: travel minimum, Y axis, 16 bits")               \
  ROW(travel_max_y,           90, de015,       "calibration: travel maximum, Y axis, 16 bits")               \
  ROW(dc_iris,                97, all,         "target of the DC iris, 16 bits")                             \
  ROW(gyro_zero_x,            99, de015,       "calibration: gyro zero, X axis, 16 bits")                    \
  ROW(gyro_zero_y,           101, de015,       "calibration: gyro zero, Y axis, 16 bits")                    \
  ROW(gyro_gain_x,           104, all,         "gyro gain, X axis, 32 bits")                                 \
  ROW(gyro_gain_y,           105, all,         "gyro gain, Y axis, 32 bits")                                 \
  ROW(range_xy,              107, all,         "stabilisation range, both axes")                             \
  ROW(range_x,               108, all,         "stabilisation range, X axis")                                \
  ROW(range_y,               109, all,         "stabilisation range, Y axis")                                \
  ROW(interrupter_service,   113, de015,       "photo-interrupters: sensor, 0, 0, what to do")

#define KELVO_LENS_QUERIES(ROW)                                                                                 \
  ROW(zoom3_count,          0x3A, df033,       "position of zoom 3, 32 bits: the one query below 0x80")         \
  ROW(calibration_state,    0x80, de015_df033, "reply byte 3: 0 idle, 4 finished")                              \
  ROW(sensor_level,         0x81, all,         "level at the converter or photo-interrupter that is asked for") \
  ROW(calibration_error,    0x82, de015_df033, "error code, reply bytes 2 and 3")                               \
  ROW(version_de,           0x85, de015,       "program version, reply bytes 2 and 3")                          \
  ROW(version,              0x86, df033_t5391, "program version, reply bytes 2 and 3")                          \
  ROW(zoom1_count,          0x87, df033,       "position of zoom 1, 32 bits")                                   \
  ROW(stabiliser_pause,     0x8A, de015,       "pause setting")                                                 \
  ROW(read_register,        0x8C, df033_t5391, "reads a register of the motor block")                           \
  ROW(zoom1_running,        0x8D, df033,       "reply byte 3: not 0 while zoom 1 moves")                        \
  ROW(read_register_de,     0x8F, de015_t5391, "reads a register of the motor block")                           \
  ROW(stationary_detection, 0x91, de015,       "mode of stationary detection")                                  \
  ROW(focus_offset,         0x91, df033_t5391, "offset of the focus interrupter, 32 bits")                      \
  ROW(gyro_stability,       0x92, all,         "limit of gyro stability")                                       \
  ROW(hall_noise_x,         0x96, de015,       "measured Hall noise, X axis")                                   \
  ROW(hall_noise_y,         0x97, de015,       "measured Hall noise, Y axis")                                   \
  ROW(iris_sine,            0x98, df033_t5391, "measured sine value of the iris")                               \
  ROW(gyro_noise_x,         0x9A, de015,       "measured gyro noise, X axis")                                   \
  ROW(gyro_noise_y,         0x9B, de015,       "measured gyro noise, Y axis")                                   \
  ROW(interrupter_state,    0xA0, df033_t5391, "reply byte 3, bit 0: interrupted")                              \
  ROW(polarity,             0xA1, all,         "polarity")                                                      \
  ROW(coma,                 0xA2, all,         "coma setting")                                                  \
  ROW(zoom3_running,        0xAC, df033,       "reply byte 3: not 0 while zoom 3 moves")                        \
  ROW(zoom1_running_de,     0xBF, de015,       "reply byte 3: not 0 while zoom 1 moves")                        \
  ROW(iris_travel_min,      0xC5, df033_t5391, "travel minimum of the iris")                                    \
  ROW(iris_travel_max,      0xC6, df033_t5391, "travel maximum of the iris")                                    \
  ROW(zoom1_count_de,       0xC7, de015,       "position of zoom 1, 32 bits")                                   \
  ROW(interrupter_offset,   0xCD, all,         "focus offset, 32 bits; bit 0: calibrated")                      \
  ROW(zoom2_offset,         0xCE, de015,       "offset of the zoom-2 interrupter, 32 bits")                     \
  ROW(hall_offset_x,        0xD1, all,         "Hall offset, X axis or iris")                                   \
  ROW(hall_offset_y,        0xD2, de015,       "Hall offset, Y axis")                                           \
  ROW(hall_gain_x,          0xD3, all,         "Hall gain, X axis or iris")                                     \
  ROW(hall_gain_y,          0xD4, de015,       "Hall gain, Y axis")                                             \
  ROW(travel_min_x,         0xD7, de015,       "travel minimum, X axis")                                        \
  ROW(travel_max_x,         0xD8, de015,       "travel maximum, X axis")                                        \
  ROW(travel_min_y,         0xD9, de015,       "travel minimum, Y axis")                                        \
  ROW(travel_max_y,         0xDA, de015,       "travel maximum, Y axis")                                        \
  ROW(gyro_zero_x,          0xE3, de015,       "gyro zero, X axis")                                             \
  ROW(gyro_zero_y,          0xE5, de015,       "gyro zero, Y axis")                                             \
  ROW(gyro_gain_x,          0xE8, all,         "gyro gain, X axis, 32 bits")                                    \
  ROW(gyro_gain_y,          0xE9, all,         "gyro gain, Y axis, 32 bits")                                    \
  ROW(hall_xy,              0xF2, all,         "Hall values of both axes, 16 bits each")                        \
  ROW(hall_x,               0xF3, all,         "Hall value, X axis")                                            \
  ROW(hall_y,               0xF4, all,         "Hall value, Y axis")                                            \
  ROW(gyro_xy,              0xF7, all,         "gyro values of both axes, 16 bits each")                        \
  ROW(gyro_stable,          0xF9, all,         "whether the gyro is stable")
// clang-format on

namespace kelvo::wire {

// Command frame: code, four argument bytes, checksum, 0.
inline constexpr std::size_t command_frame_length = 7;
// Query frame: six bytes sent, the four reply bytes come back in bytes 7 to 10.
inline constexpr std::size_t query_frame_length = 12;
inline constexpr std::size_t query_reply_offset = 7;
inline constexpr std::size_t query_reply_length = 4;
/// Codes from here on are queries, and zoom 3's counter is the one query below.
inline constexpr std::uint8_t first_query = 0x80;

/// The programs that know a code.
enum class Programs : std::uint8_t {
  de015       = 1,
  df033       = 2,
  de015_df033 = 3,
  t5391       = 4,
  de015_t5391 = 5,
  df033_t5391 = 6,
  all         = 7,
};

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

/// The two queries whose argument travels in byte 1 instead of byte 2.
constexpr bool argument_first(std::uint8_t code) {
  return code == interrupter_state || code == sensor_level;
}
/// Byte 4 of a query frame.
constexpr std::uint8_t marker(std::uint8_t code) { return code == sensor_level ? 0 : 1; }
}  // namespace query
#undef KELVO_CONSTANT
#undef KELVO_ROW

// What sensor_service and interrupter_service are to do: their last argument.
namespace sensor_task {
inline constexpr std::uint8_t none            = 0;
inline constexpr std::uint8_t verify          = 16;
inline constexpr std::uint8_t convert         = 96;  // the converter
inline constexpr std::uint8_t calibrate_t5391 = 97;
inline constexpr std::uint8_t calibrate       = 99;  // DE015, DF033
}  // namespace sensor_task

/// A photo-interrupter's level (DE015) above this one is an interrupted one.
inline constexpr std::uint32_t interrupted_level = 1228;

// Drive words of a motor that is powered off.
inline constexpr std::uint8_t zoom1_drive_off = 20;
inline constexpr std::uint8_t zoom3_drive_off = 34;

// States of a calibration.
inline constexpr std::uint8_t calibration_idle     = 0;
inline constexpr std::uint8_t calibration_finished = 4;

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
