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
constexpr std::int64_t own_gain =
    0x1000;  // of the program's, with which the lens makes up for the swing

struct StabilisedAxis {
  std::uint8_t gyro_zero;
  std::uint8_t hall_offset;
  std::uint8_t travel_min;
  std::uint8_t travel_max;
  std::uint8_t gyro_gain;
  std::uint8_t range;
  Time swing;  // there and back
};

constexpr std::array axes{
    StabilisedAxis{commands::gyro_zero_x, commands::hall_offset_x, commands::travel_min_x,
                   commands::travel_max_x, commands::gyro_gain_x, commands::range_x,
                   milliseconds(400)},
    StabilisedAxis{commands::gyro_zero_y, commands::hall_offset_y, commands::travel_min_y,
                   commands::travel_max_y, commands::gyro_gain_y, commands::range_y,
                   milliseconds(500)},
};

std::int64_t greatest_swing(Time now) { return now % repeat < steady ? tremor : shake; }

/// A triangle: 0 at the beginning of a swing, up, down through 0, and back.
std::int64_t swing(const StabilisedAxis& axis, Time now) {
  const std::int64_t quarter = axis.swing.count() / 4;
  const std::int64_t phase = now % axis.swing / Time(1);
  const std::int64_t rising = phase < quarter       ? phase
                              : phase < 3 * quarter ? 2 * quarter - phase
                                                    : phase - 4 * quarter;
  return greatest_swing(now) * rising / quarter;
}

std::uint16_t gyro(std::size_t axis, const Stabiliser::View& view) {
  const StabilisedAxis& row = axes[axis];
  const auto seen =
      low_word(view.values[row.gyro_zero] + static_cast<std::uint32_t>(swing(row, view.now)));
  return noisy(seen, view.variety.noise(Subject::gyro, axis, view.now, Stabiliser::gyro_noise));
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

std::uint16_t Stabiliser::hall(std::size_t axis, const View& view) const {
  if (view.hall) return (*view.hall)[axis];
  const StabilisedAxis& row = axes[axis];
  const CommandValues& values = view.values;
  const std::int64_t noise = view.variety.noise(Subject::hall, axis, view.now, hall_noise);
  const std::uint16_t rest = low_word(values[row.hall_offset]);
  const bool moves = on_ && values[commands::stabiliser_pause] == 0 && values[row.range] != 0;
  if (!moves) return noisy(rest, noise);
  const std::int64_t way = swing(row, view.now) * values[row.gyro_gain] / own_gain;
  const std::int64_t low = low_word(values[row.travel_min]);
  const std::int64_t high = std::max<std::int64_t>(low, low_word(values[row.travel_max]));
  return noisy(static_cast<std::uint16_t>(std::clamp(rest - way, low, high)), noise);
}

std::optional<std::uint32_t> Stabiliser::answer(std::uint8_t query, const View& view) const {
  switch (query) {
    case queries::hall_xy: return pair(hall(0, view), hall(1, view));
    case queries::hall_x: return hall(0, view);
    case queries::hall_y: return hall(1, view);
    case queries::gyro_xy: return pair(gyro(0, view), gyro(1, view));
    case queries::gyro_stable:
      return greatest_swing(view.now) <= low_word(view.values[commands::gyro_stability]) ? 1 : 0;
    default: return std::nullopt;
  }
}

}  // namespace kelvo::sim::camera
