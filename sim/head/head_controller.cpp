#include "sim/head/head_controller.h"

#include <algorithm>

namespace kelvo::sim::camera {
namespace {

namespace vetra = wire::vetra;
namespace tasmere = wire::tasmere;

constexpr std::uint32_t tasmere_circle = 65'536;
constexpr std::uint32_t common_range = 65'535;
constexpr std::uint32_t vetra_circle = wire::vetra_full_step;

// Full speed, in each of the three ways to say it.
constexpr std::uint32_t vetra_full_speed = 7'200;
constexpr std::uint32_t continuous_full_speed = 32'767;
constexpr std::uint32_t absolute_full_speed = 24'575;

// What the controllers answer that nobody sets: plausible, and no more.
constexpr std::uint32_t vetra_version = 0x15;
constexpr std::uint32_t tasmere_version = 0x00'00'03'00;
constexpr std::uint32_t vetra_calibrated = 2;
constexpr std::uint32_t vetra_at_rest = 4;
constexpr std::uint32_t tasmere_calibrated = 1;
constexpr std::uint32_t program_runs = 1;
constexpr std::uint32_t temperature = 35;

constexpr std::uint32_t limited_travel = 2;
constexpr std::size_t longest_value = 4;

/// The common position in the middle of the range.
constexpr std::uint32_t first_position(HeadFamily family, HeadAxis axis) {
  if (family == HeadFamily::tasmere) return tasmere_circle / 2;
  return vetra_circle / 2 + (axis == HeadAxis::tilt ? wire::vetra_tilt_offset : 0);
}

std::uint32_t number_in(std::span<const std::uint8_t> bytes) {
  std::uint32_t number = 0;
  for (const std::uint8_t byte : bytes) number = number << 8 | byte;
  return number;
}

std::uint32_t word(std::span<const std::uint8_t> data, std::size_t place) {
  return number_in(data.subspan(place, 2));
}

Way vetra_way(std::uint8_t direction) { return direction == 0 ? Way::up : Way::down; }

Speed vetra_speed(std::uint32_t word) { return {word, vetra_full_speed}; }

Way tasmere_way(std::uint32_t word) { return (word & 0x8000U) != 0 ? Way::down : Way::up; }

/// A continuous speed comes in one's complement: 0xFFFF is 0 downwards.
Speed continuous_speed(std::uint32_t word) {
  return {tasmere_way(word) == Way::up ? word : ~word & 0xFFFFU, continuous_full_speed};
}

/// An absolute move's speed comes in two's complement.
Speed absolute_speed(std::uint32_t word) {
  return {tasmere_way(word) == Way::up ? word : 0x1'0000U - word, absolute_full_speed};
}

}  // namespace

HeadController::HeadController(HeadFamily family, HeadAxis axis)
    : family_(family),
      which_(axis),
      axis_(family == HeadFamily::vetra ? vetra_circle : tasmere_circle,
            first_position(family, axis)),
      settings_(family),
      saved_(family) {
  for (const FactorySetting& setting : factory_settings) {
    if (setting.family == family && setting.axis == axis) {
      saved_.set(setting.number, setting.value);
    }
  }
  restart({});
}

void HeadController::write(Exchange& exchange) {
  if (exchange.sent.empty()) return wake_up(exchange);
  const std::uint8_t number = exchange.sent[0];
  const std::span<const std::uint8_t> data = exchange.sent.subspan(1);
  const wire::ControllerRegister* const row = settings_.find(number);
  if (row == nullptr) return exchange.violation("there is no register %u", number);
  if (row->access != wire::Access::w) {
    return exchange.violation("register %u (%s) can only be read", number, row->name);
  }
  if (data.size() != row->width) {
    return exchange.violation("%zu bytes for register %u (%s), must be %u", data.size(), number,
                              row->name, row->width);
  }
  // A move can be longer than a value; nobody reads it back.
  settings_.set(number, number_in(data.first(std::min(data.size(), longest_value))));
  if (family_ == HeadFamily::vetra) {
    obey_vetra(exchange.now, number, data);
  } else {
    obey_tasmere(exchange.now, number, data);
  }
}

void HeadController::obey_vetra(Time now, std::uint8_t number, std::span<const std::uint8_t> data) {
  switch (number) {
    case vetra::absolute_move:
      return axis_.reach(now, vetra_way(data[0]), vetra_speed(word(data, 3)), word(data, 1));
    case vetra::continuous_move:
      return axis_.run(now, vetra_way(data[0]), vetra_speed(word(data, 1)));
    case vetra::stop: return axis_.halt(now);
    case vetra::set_limit_enable:
    case vetra::set_limits: return apply_limits(now);
    case vetra::reset: return restart(now);
    default: return;
  }
}

void HeadController::obey_tasmere(Time now, std::uint8_t number,
                                  std::span<const std::uint8_t> data) {
  switch (number) {
    case tasmere::continuous_move:
      if (asleep_) return;
      return axis_.run(now, tasmere_way(word(data, 0)), continuous_speed(word(data, 0)));
    case tasmere::absolute_move:
      if (asleep_) return;
      return axis_.reach(now, tasmere_way(word(data, 2)), absolute_speed(word(data, 2)),
                         word(data, 0));
    case tasmere::set_limit_start:
    case tasmere::set_limit_length:
    case tasmere::set_travel_mode: return apply_limits(now);
    case tasmere::save: saved_ = settings_; return;
    case tasmere::wake_up: asleep_ = false; return;
    case tasmere::reset: return restart(now);
    default: return;
  }
}

/// The empty message, which wakes a Tasmere controller up as its register does.
void HeadController::wake_up(Exchange& exchange) {
  if (family_ == HeadFamily::vetra) return exchange.violation("an empty message");
  asleep_ = false;
}

/// The axis stands still where it is.
void HeadController::restart(Time now) {
  axis_.halt(now);
  settings_ = saved_;
  asleep_ = family_ == HeadFamily::tasmere && settings_.value(tasmere::set_power_up_sleep) != 0;
  apply_limits(now);
}

void HeadController::apply_limits(Time now) {
  axis_.bind(now, family_ == HeadFamily::vetra ? vetra_limits() : tasmere_limits());
}

/// The two axes take their limits in opposite orders. Between equal limits lies the whole range.
std::optional<Arc> HeadController::vetra_limits() const {
  if (settings_.value(vetra::set_limit_enable) == 0) return {};
  const std::uint32_t limits = settings_.value(vetra::set_limits);
  const std::uint32_t first = limits >> 16;
  const std::uint32_t second = limits & 0xFFFFU;
  const std::uint32_t top = which_ == HeadAxis::pan ? first : second;
  const std::uint32_t bottom = which_ == HeadAxis::pan ? second : first;
  const std::uint32_t length = top > bottom ? top - bottom : top + vetra_circle - bottom;
  return Arc{bottom % vetra_circle, std::min(length, vetra_circle - 1)};
}

std::optional<Arc> HeadController::tasmere_limits() const {
  if (settings_.value(tasmere::set_travel_mode) != limited_travel) return {};
  return Arc{settings_.value(tasmere::set_limit_start), settings_.value(tasmere::set_limit_length)};
}

void HeadController::read(Exchange& exchange, std::size_t length) const {
  const std::uint8_t number = exchange.sent[0];
  // Whoever does not know the family yet asks for it so, and a Tasmere controller has no answer.
  if (family_ == HeadFamily::tasmere && number == vetra::family && which_ == HeadAxis::pan) return;
  const wire::ControllerRegister* const row = settings_.find(number);
  if (row == nullptr ||
      (family_ == HeadFamily::vetra && number == vetra::family && which_ == HeadAxis::tilt)) {
    return exchange.violation("there is no register %u", number);
  }
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
    case tasmere::temperature: return temperature;
    case tasmere::program_state: return program_runs;
    default: return 0;
  }
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
