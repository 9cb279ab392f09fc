#include "sim/lens/stabiliser.h"

#include <algorithm>
#include <array>

namespace kelvo::sim::camera {
namespace {

namespace commands = wire::command;
namespace queries = wire::query;
using std::chrono::milliseconds;

constexpr Time repeat = std::chrono::seconds(8);
constexpr Time steady = std::chrono::seconds(6);  // at the beginning of each repetition
constexpr std::int64_t tremor = 24;               // greatest swing of a gyro
constexpr std::int64_t shake = 600;

struct Axis {
  std::uint8_t gyro_zero;
  std::uint8_t hall_offset;
  std::uint8_t travel_min;
  std::uint8_t travel_max;
  Time swing;  // there and back
};

constexpr std::array axes{
    Axis{commands::gyro_zero_x, commands::hall_offset_x, commands::travel_min_x,
         commands::travel_max_x, milliseconds(400)},
    Axis{commands::gyro_zero_y, commands::hall_offset_y, commands::travel_min_y,
         commands::travel_max_y, milliseconds(500)},
};

std::int64_t greatest_swing(Time now) { return now % repeat < steady ? tremor : shake; }

/// A triangle: 0 at the beginning of a swing, up, down through 0, and back.
std::int64_t swing(const Axis& axis, Time now) {
  const std::int64_t quarter = axis.swing.count() / 4;
  const std::int64_t phase = now % axis.swing / Time(1);
  const std::int64_t rising = phase < quarter       ? phase
                              : phase < 3 * quarter ? 2 * quarter - phase
                                                    : phase - 4 * quarter;
  return greatest_swing(now) * rising / quarter;
}

std::uint16_t gyro(const Axis& axis, Time now, const CommandValues& values) {
  return low_word(values[axis.gyro_zero] + static_cast<std::uint32_t>(swing(axis, now)));
}

std::uint32_t pair(std::uint16_t first, std::uint16_t second) {
  return std::uint32_t{first} << 16 | second;
}

}  // namespace

void Stabiliser::obey(std::uint8_t command, CommandValues& values) {
  if (command == commands::stabiliser_on) on_ = true;
  if (command == commands::stabiliser_off) on_ = false;
  if (command != commands::range_xy) return;
  values[commands::range_x] = values[command];
  values[commands::range_y] = values[command];
}

std::uint16_t Stabiliser::hall(std::size_t axis, Time now, const CommandValues& values) const {
  const Axis& row = axes[axis];
  const auto rest = static_cast<std::int64_t>(low_word(values[row.hall_offset]));
  if (!on_ || values[commands::stabiliser_pause] != 0) return low_word(values[row.hall_offset]);
  const std::int64_t low = low_word(values[row.travel_min]);
  const std::int64_t high = std::max<std::int64_t>(low, low_word(values[row.travel_max]));
  return static_cast<std::uint16_t>(std::clamp(rest - swing(row, now), low, high));
}

std::optional<std::uint32_t> Stabiliser::answer(std::uint8_t query, Time now,
                                                const CommandValues& values) const {
  switch (query) {
    case queries::hall_xy: return pair(hall(0, now, values), hall(1, now, values));
    case queries::hall_x: return hall(0, now, values);
    case queries::hall_y: return hall(1, now, values);
    case queries::gyro_xy: return pair(gyro(axes[0], now, values), gyro(axes[1], now, values));
    case queries::gyro_stable:
      return greatest_swing(now) <= low_word(values[commands::gyro_stability]) ? 1 : 0;
    default: return std::nullopt;
  }
}

}  // namespace kelvo::sim::camera
