#include "sim/head/head_controller.h"

#include <algorithm>

#include "sim/head/head_scale.h"

namespace kelvo::sim::camera {
namespace {

namespace vetra = wire::vetra;
namespace tasmere = wire::tasmere;

// Full speed, in each of the three ways to say it.
constexpr std::uint32_t vetra_full_speed = 7'200;
constexpr std::uint32_t continuous_full_speed = 32'767;
constexpr std::uint32_t absolute_full_speed = 24'575;

// The ramp that a controller has of its own: full speed in half a second.
constexpr double own_ramp_seconds = 0.5;
constexpr std::uint32_t ramp_parts = 10;  // a ramp's register counts tenths of a unit of speed

constexpr double full_speed(std::uint32_t circle) {
  return static_cast<double>(circle) / Axis::seconds_per_circle;
}
constexpr double own_ramp(std::uint32_t circle) { return full_speed(circle) / own_ramp_seconds; }

constexpr std::uint32_t limited_travel = 2;

/// The common position in the middle of the range, or another one.
std::uint32_t first_position(HeadFamily family, HeadAxis axis, const Variety& variety) {
  const std::uint32_t circle = family == HeadFamily::tasmere ? tasmere_circle : vetra_circle;
  const bool shifted = family == HeadFamily::vetra && axis == HeadAxis::tilt;
  const std::int64_t middle = circle / 2 + (shifted ? wire::vetra_tilt_offset : 0);
  const auto number = static_cast<std::size_t>(axis);
  const std::int64_t place = middle + variety.around(Subject::axis, number, circle / 2 - 1);
  return static_cast<std::uint32_t>(place + circle) % circle;
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

HeadController::HeadController(HeadFamily family, HeadAxis axis, const Variety& variety)
    : family_(family),
      which_(axis),
      axis_(family == HeadFamily::vetra ? vetra_circle : tasmere_circle,
            first_position(family, axis, variety)),
      settings_(family),
      saved_(family),
      variety_(variety) {
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
    case vetra::set_acceleration:
    case vetra::set_deceleration: return apply_ramp();
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

void HeadController::lose_power(Time now) {
  axis_.freeze(now);
  settings_ = RegisterFile(family_);
}

void HeadController::restart(Time now) {
  axis_.freeze(now);
  settings_ = saved_;
  asleep_ = family_ == HeadFamily::tasmere && settings_.value(tasmere::set_power_up_sleep) != 0;
  apply_limits(now);
  apply_ramp();
}

/// Only Vetra controllers can be told theirs.
void HeadController::apply_ramp() {
  if (family_ == HeadFamily::tasmere) {
    axis_.set_ramp({own_ramp(tasmere_circle), own_ramp(tasmere_circle)});
  } else {
    axis_.set_ramp({ramp(vetra::set_acceleration), ramp(vetra::set_deceleration)});
  }
}

double HeadController::ramp(std::uint8_t number) const {
  const std::uint32_t value = settings_.value(number);
  if (value == 0) return own_ramp(vetra_circle);
  return value * full_speed(vetra_circle) / (ramp_parts * vetra_full_speed);
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

}  // namespace kelvo::sim::camera
