#include "sim/lens/sensors.h"

#include <algorithm>

#include "wire/lens_program.h"
#include "wire/motor_channels.h"

namespace kelvo::sim::camera {
namespace {

namespace commands = wire::command;
namespace queries = wire::query;
namespace tasks = wire::sensor_task;
using wire::Programs;

constexpr Time calibration_time = std::chrono::milliseconds(500);
constexpr Time conversion_time = std::chrono::milliseconds(5);

enum class Effect : std::uint8_t { calibration, verification, conversion };

/// Which program does what for which command.
struct Service {
  Programs programs;
  std::uint8_t command;
  std::uint8_t what;
  Effect effect;
};

constexpr Service services[] = {
    {Programs::de015, commands::interrupter_service, tasks::calibrate, Effect::calibration},
    {Programs::de015, commands::interrupter_service, tasks::verify, Effect::verification},
    {Programs::df033, commands::sensor_service, tasks::calibrate, Effect::calibration},
    {Programs::t5391, commands::sensor_service, tasks::calibrate_t5391, Effect::calibration},
    {Programs::df033_t5391, commands::sensor_service, tasks::verify, Effect::verification},
    {Programs::df033_t5391, commands::sensor_service, tasks::none, Effect::verification},
    {Programs::all, commands::sensor_service, tasks::convert, Effect::conversion},
};

// The converter's channels: temperature, supply, reference, nothing connected.
constexpr std::array<std::uint16_t, Sensors::converter_channels> channels{0x0A3C, 0x07E1, 0x0C58,
                                                                          0x0004};

constexpr std::uint8_t temperature_channel = 0;

// What a camera with a seed sees too much or too little at most.
constexpr std::int64_t converter_noise = 4;
constexpr std::int64_t level_noise = 25;

constexpr std::uint16_t level_interrupted = 2600;
constexpr std::uint16_t level_clear = 310;
static_assert(level_clear + level_noise <= wire::interrupted_level &&
              level_interrupted - level_noise > wire::interrupted_level);

constexpr bool sensors_fit() {
  return std::all_of(wiring.begin(), wiring.end(), [](const Wire& wire) {
    return wire.sensor < static_cast<int>(Sensors::most);
  });
}
static_assert(sensors_fit());

bool supplied(const Wire& wire, const SensorView& view) {
  if (view.module == LensModule::de015) {
    return view.supply == wire::interrupter_power::measure ||
           view.supply == wire::interrupter_power::on;
  }
  const bool at_pt5111 = wire.output == Output::pt5111_a || wire.output == Output::pt5111_b;
  return !at_pt5111 || view.pt5111_supply;
}

bool interrupted(const Wire& wire, const SensorView& view) {
  return supplied(wire, view) && view.motors.position_at(wire.output) <= wire.edge;
}

}  // namespace

void Sensors::obey(Exchange& exchange, LensModule module) {
  const std::uint8_t command = exchange.sent[0];
  const std::uint8_t sensor = exchange.sent[1];
  const std::uint8_t what = exchange.sent[4];
  if (command != commands::sensor_service && command != commands::interrupter_service) return;
  const auto* const found =
      std::find_if(std::begin(services), std::end(services), [&](const Service& row) {
        return row.command == command && row.what == what && knows(row.programs, module);
      });
  if (found == std::end(services)) {
    exchange.violation("%s's command %d has no service %d", name_of(module), command, what);
    return;
  }
  if (found->effect == Effect::conversion) {
    converted_at_ = exchange.now + conversion_time;
  } else if (find_sensor(module, sensor) == nullptr) {
    exchange.violation("%s has no photo-interrupter %d", name_of(module), sensor);
  } else if (found->effect == Effect::calibration) {
    calibrated_at_[sensor] = exchange.now + calibration_time;
  }
}

bool Sensors::calibrated(int sensor, Time now) const {
  const std::optional<Time> at = calibrated_at_[static_cast<std::size_t>(sensor)];
  return at && now >= *at;
}

std::uint16_t Sensors::level(std::uint8_t argument, const SensorView& view) const {
  if (converted_at_) return view.now >= *converted_at_ ? converted(argument, view) : 0;
  const Wire* const wire = find_sensor(view.module, argument);
  if (view.module != LensModule::de015 || wire == nullptr || !supplied(*wire, view)) return 0;
  const std::uint16_t seen = interrupted(*wire, view) ? level_interrupted : level_clear;
  return noisy(seen, view.variety.noise(Subject::interrupter, argument, view.now, level_noise));
}

std::uint16_t Sensors::converted(std::uint8_t channel, const SensorView& view) {
  if (channel >= channels.size()) return 0;
  const std::uint16_t warmth = channel == temperature_channel ? view.warmth : 0;
  return noisy(static_cast<std::uint16_t>(channels[channel] + warmth),
               view.variety.noise(Subject::converter, channel, view.now, converter_noise));
}

std::uint16_t Sensors::offset(const Wire* wire, Time now) const {
  return wire != nullptr && calibrated(wire->sensor, now) ? wire->offset : 0;
}

std::uint16_t Sensors::offset_of(Output output, const SensorView& view) const {
  for (const Wire& wire : wiring) {
    if (wire.module == view.module && wire.output == output) return offset(&wire, view.now);
  }
  return 0;
}

std::optional<Sensors::Interrupter> Sensors::interrupter(int sensor, const SensorView& view) const {
  const Wire* const wire = find_sensor(view.module, sensor);
  if (wire == nullptr) return {};
  return Interrupter{supplied(*wire, view), interrupted(*wire, view), calibrated(sensor, view.now),
                     offset(wire, view.now)};
}

std::optional<std::uint32_t> Sensors::answer(std::uint8_t query, std::uint8_t argument,
                                             const SensorView& view) const {
  const Wire* const wire = find_sensor(view.module, argument);
  switch (query) {
    case queries::sensor_level: return level(argument, view);
    case queries::interrupter_state: return wire != nullptr && interrupted(*wire, view) ? 1 : 0;
    case queries::zoom2_offset: return offset_of(Output::zoom_channel, view);
    case queries::focus_offset:
      if (view.module == LensModule::de015) return std::nullopt;
      return offset_of(Output::focus_channel, view);
    // One number for two questions: the lowest bit of the offset says that there is one.
    case queries::interrupter_offset:
      return wire != nullptr && calibrated(argument, view.now) ? wire->offset | 1U : 0;
    default: return std::nullopt;
  }
}

}  // namespace kelvo::sim::camera
