// What a controller of the head answers.
#include <algorithm>

#include "sim/head/head_controller.h"
#include "sim/head/head_scale.h"

namespace kelvo::sim::camera {
namespace {

namespace vetra = wire::vetra;
namespace tasmere = wire::tasmere;

constexpr std::uint32_t common_range = 65'535;

// What the controllers answer that nobody sets: plausible, and no more.
constexpr std::uint32_t vetra_version = 0x15;
constexpr std::uint32_t tasmere_version = 0x00'00'03'00;
constexpr std::uint32_t vetra_calibrated = 2;
constexpr std::uint32_t vetra_at_rest = 4;
constexpr std::uint32_t tasmere_calibrated = 1;
constexpr std::uint32_t program_runs = 1;
constexpr std::uint16_t even_temperature = 35;
constexpr std::int64_t temperature_noise = 1;

}  // namespace

/// Only a Vetra pan controller tells its family.
const wire::ControllerRegister* HeadController::find(std::uint8_t number) const {
  const bool tilts = which_ == HeadAxis::tilt;
  if (family_ == HeadFamily::vetra && tilts && number == vetra::family) return nullptr;
  return settings_.find(number);
}

void HeadController::read(Exchange& exchange, std::size_t length) const {
  const std::uint8_t number = exchange.sent[0];
  // Whoever does not know the family yet asks for it so, and a Tasmere controller has no answer.
  if (family_ == HeadFamily::tasmere && number == vetra::family && which_ == HeadAxis::pan) return;
  const wire::ControllerRegister* const row = find(number);
  if (row == nullptr) return exchange.violation("there is no register %u", number);
  const Reading* const reading = find_reading(family_, number);
  if (row->access != wire::Access::r && reading == nullptr) {
    return exchange.violation("register %u (%s) can only be written", number, row->name);
  }
  const bool as_four = reading != nullptr && reading->four_bytes && length == longest_value;
  if (length != row->width && !as_four) {
    return exchange.violation("%zu bytes read from register %u (%s), must be %u", length, number,
                              row->name, row->width);
  }
  const std::uint32_t value = value_of(number, exchange.now);
  for (std::size_t i = 0; i < row->width; ++i) {
    exchange.reply[i] = static_cast<std::uint8_t>(value >> 8 * (row->width - 1 - i));
  }
}

std::optional<std::uint32_t> HeadController::peek(std::uint8_t number, Time now) const {
  const wire::ControllerRegister* const row = find(number);
  if (row == nullptr) return {};
  return row->access == wire::Access::r ? value_of(number, now) : settings_.value(number);
}

std::uint32_t HeadController::value_of(std::uint8_t number, Time now) const {
  if (const Reading* const reading = find_reading(family_, number)) {
    return settings_.value(reading->source);
  }
  return family_ == HeadFamily::vetra ? vetra_value(number, now) : tasmere_value(number, now);
}

std::uint32_t HeadController::vetra_value(std::uint8_t number, Time now) const {
  switch (number) {
    case vetra::version: return vetra_version;
    case vetra::status: return vetra_calibrated | (axis_.moving(now) ? 0 : vetra_at_rest);
    case vetra::position: return axis_.position(now);
    case vetra::family: return number_in(wire::vetra_signature);
    default: return 0;
  }
}

std::uint32_t HeadController::tasmere_value(std::uint8_t number, Time now) const {
  switch (number) {
    case tasmere::calibration: return tasmere_calibrated;
    case tasmere::run_status: return axis_.moving(now) ? 1 : 0;
    case tasmere::position: return axis_.position(now);
    case tasmere::version: return tasmere_version;
    case tasmere::sleep_mode: return asleep_ ? 1 : 0;
    case tasmere::temperature: return temperature(now);
    case tasmere::program_state: return program_runs;
    default: return 0;
  }
}

std::uint32_t HeadController::temperature(Time now) const {
  const auto axis = static_cast<std::size_t>(which_);
  return noisy(even_temperature,
               variety_.noise(Subject::temperature, axis, now, temperature_noise));
}

std::uint32_t HeadController::common_position(Time now) const {
  const std::uint32_t count = axis_.position(now);
  const bool tilts = which_ == HeadAxis::tilt;
  if (family_ == HeadFamily::vetra) {
    const std::uint32_t zero = tilts ? wire::vetra_tilt_offset : 0;
    const std::uint32_t below = (count + vetra_circle - zero) % vetra_circle;
    const std::uint32_t rounding = tilts ? 0 : vetra_circle / 2;  // only pan is rounded
    return ((vetra_circle - below) * common_range + rounding) / vetra_circle;
  }
  if (!tilts || settings_.value(tasmere::set_use_hall) != 1) return count;
  constexpr std::uint32_t zero = wire::tilt_hall_offset;
  return count >= zero ? count - zero : count + common_range - zero;
}

}  // namespace kelvo::sim::camera
