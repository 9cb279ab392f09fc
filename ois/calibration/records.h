#ifndef KELVO_OIS_CALIBRATION_RECORDS_H
#define KELVO_OIS_CALIBRATION_RECORDS_H

#include <cstddef>
#include <cstdint>

#include "wire/lens_program.h"

// The calibration records: one table each, in the order in which a quality check measures the values,
// which is also the order in which they are sent.
namespace kelvo::ois {

inline constexpr std::uint8_t not_sent = 0;

/// One 16-bit value of a record, in the low half of its 32-bit field.
struct Field {
  const char* label;     // as printed, with its query code
  std::uint8_t query;    // reads the value from the controller
  std::uint8_t command;  // sends it, or not_sent
  std::size_t index;     // its field in the record
};

namespace command = wire::command;
namespace query = wire::query;

// clang-format off
//                                  label                   query                   command                 field
inline constexpr Field iris_fields[] = {
                                   {"Pola 0xa1",            query::polarity,        command::polarity,       0},
                                   {"hofs[0] 0xd1",         query::hall_offset_x,   command::hall_offset_x,  1},
                                   {"hg 0xd3",              query::hall_gain_x,     command::hall_gain_x,    2},
                                   {"xmin 0xc5",            query::iris_travel_min, command::travel_min_x,   3},
                                   {"xmax 0xc6",            query::iris_travel_max, command::travel_max_x,   4},
                                   {"sin 0x98",             query::iris_sine,       not_sent,                5},
};
inline constexpr std::size_t iris_travel_min_index = 3;
inline constexpr std::size_t iris_travel_max_index = 4;

inline constexpr Field stabiliser_fields[] = {
                                   {"Pola 0xa1",            query::polarity,        command::polarity,       0},
                                   {"hofs[0] 0xd1",         query::hall_offset_x,   command::hall_offset_x,  1},
                                   {"hg[0] 0xd3",           query::hall_gain_x,     command::hall_gain_x,    3},
                                   {"min[0] 0xd7",          query::travel_min_x,    command::travel_min_x,   5},
                                   {"max[0] 0xd8",          query::travel_max_x,    command::travel_max_x,   7},
                                   {"gxz 0xe3",             query::gyro_zero_x,     command::gyro_zero_x,    9},
                                   {"Hall_Noise[0] 0x96",   query::hall_noise_x,    not_sent,               10},
                                   {"gyro_noise[0] 0x9a",   query::gyro_noise_x,    not_sent,               12},
                                   {"hofs[1] 0xd2",         query::hall_offset_y,   command::hall_offset_y,  2},
                                   {"hg[1] 0xd4",           query::hall_gain_y,     command::hall_gain_y,    4},
                                   {"min[1] 0xd9",          query::travel_min_y,    command::travel_min_y,   6},
                                   {"max[1] 0xda",          query::travel_max_y,    command::travel_max_y,   8},
                                   {"gyz 0xe5",             query::gyro_zero_y,     command::gyro_zero_y,   14},
                                   {"Hall_Noise[1] 0x97",   query::hall_noise_y,    not_sent,               11},
                                   {"gyro_noise[1] 0x9b",   query::gyro_noise_y,    not_sent,               13},
};
// clang-format on

// Raw fields in the processor's byte order, nothing around them.
using IrisRecord = std::uint32_t[6];
using StabiliserRecord = std::uint32_t[15];
static_assert(sizeof(IrisRecord) == 24 && sizeof(StabiliserRecord) == 60);

}  // namespace kelvo::ois

#endif
