#include "sim/lens/program_values.h"

namespace kelvo::sim::camera {
namespace {

namespace commands = wire::command;
namespace queries = wire::query;

struct Value {
  std::uint8_t code;
  std::uint16_t value;
};

constexpr Value program_settings[] = {
    {commands::gyro_stability, 0x0020}, {commands::polarity, 0x0001},
    {commands::hall_offset_x, 0x0800},  {commands::hall_offset_y, 0x0800},
    {commands::hall_gain_x, 0x0400},    {commands::hall_gain_y, 0x0400},
    {commands::travel_min_x, 0x0100},   {commands::travel_max_x, 0x0F00},
    {commands::travel_min_y, 0x0100},   {commands::travel_max_y, 0x0F00},
    {commands::gyro_zero_x, 0x8000},    {commands::gyro_zero_y, 0x8000},
    {commands::gyro_gain_x, 0x1000},    {commands::gyro_gain_y, 0x1000},
    {commands::range_xy, 0x0001},       {commands::range_x, 0x0001},
    {commands::range_y, 0x0001},
};

/// What a calibration run finds, setting by setting.
struct Measured {
  std::uint8_t code;
  std::uint16_t stabiliser;
  std::uint16_t iris;  // on the modules that have a loop for it
};

constexpr Measured measured_settings[] = {
    {commands::polarity, 0x0003, 0x0002},     {commands::hall_offset_x, 0x07D4, 0x0851},
    {commands::hall_offset_y, 0x0823, 0},     {commands::hall_gain_x, 0x0431, 0x0417},
    {commands::hall_gain_y, 0x03EE, 0},       {commands::travel_min_x, 0x0162, 0x0193},
    {commands::travel_max_x, 0x0E9B, 0x0E7C}, {commands::travel_min_y, 0x014D, 0},
    {commands::travel_max_y, 0x0EB0, 0},      {commands::gyro_zero_x, 0x7FE6, 0},
    {commands::gyro_zero_y, 0x8013, 0},
};

// Measured all the time.
constexpr Value noises[] = {
    {queries::hall_noise_x, 0x0003}, {queries::hall_noise_y, 0x0004}, {queries::iris_sine, 0x0212},
    {queries::gyro_noise_x, 0x0005}, {queries::gyro_noise_y, 0x0006},
};

// Queries that read a setting back: all but two have its code with the top bit set.
constexpr struct {
  std::uint8_t query;
  std::uint8_t command;
} read_backs[] = {
    {queries::stabiliser_pause, commands::stabiliser_pause},
    {queries::stationary_detection, commands::stationary_detection},
    {queries::gyro_stability, commands::gyro_stability},
    {queries::polarity, commands::polarity},
    {queries::coma, commands::coma},
    {queries::iris_travel_min, commands::travel_min_x},
    {queries::iris_travel_max, commands::travel_max_x},
    {queries::hall_offset_x, commands::hall_offset_x},
    {queries::hall_offset_y, commands::hall_offset_y},
    {queries::hall_gain_x, commands::hall_gain_x},
    {queries::hall_gain_y, commands::hall_gain_y},
    {queries::travel_min_x, commands::travel_min_x},
    {queries::travel_max_x, commands::travel_max_x},
    {queries::travel_min_y, commands::travel_min_y},
    {queries::travel_max_y, commands::travel_max_y},
    {queries::gyro_zero_x, commands::gyro_zero_x},
    {queries::gyro_zero_y, commands::gyro_zero_y},
    {queries::gyro_gain_x, commands::gyro_gain_x},
    {queries::gyro_gain_y, commands::gyro_gain_y},
};

}  // namespace

CommandValues own_values() {
  CommandValues values{};
  for (const Value& row : program_settings) values[row.code] = row.value;
  return values;
}

std::uint16_t measured(wire::LensModule module, std::uint8_t command) {
  const bool stabiliser = module == wire::LensModule::de015;
  for (const Measured& row : measured_settings) {
    if (row.code == command) return stabiliser ? row.stabiliser : row.iris;
  }
  return 0;
}

void store_measured(wire::LensModule module, CommandValues& values) {
  for (const Measured& row : measured_settings) {
    if (wire::find(commands::table, row.code, module) == nullptr) continue;
    values[row.code] = measured(module, row.code);
  }
}

std::optional<std::uint32_t> read_back(std::uint8_t query, const CommandValues& values) {
  for (const Value& row : noises) {
    if (row.code == query) return row.value;
  }
  for (const auto& row : read_backs) {
    if (row.query == query) return values[row.command];
  }
  return std::nullopt;
}

}  // namespace kelvo::sim::camera
