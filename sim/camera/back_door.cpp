// What tools and tests do to a camera past the wires.
#include <algorithm>
#include <array>
#include <vector>

#include "sim/camera/camera.h"
#include "wire/lens_program.h"

namespace kelvo::sim::camera {
namespace {

constexpr std::uint8_t pt5111_registers = 64;
constexpr std::uint16_t pt5111_values = 1024;

std::optional<Violation> first_of(const Violations& held) {
  if (held.total() == 0) return {};
  return held.listed()[0];
}

std::optional<Violation> objection(Time now, Unit unit, const char* reason) {
  Violations held;
  held.record(now, unit, {}, "%s", reason);
  return first_of(held);
}

std::uint8_t sum_of(std::span<const std::uint8_t> bytes) {
  unsigned sum = 0;
  for (const std::uint8_t byte : bytes) sum += byte;
  return static_cast<std::uint8_t>(sum);
}

std::uint8_t byte_of(std::uint32_t value, int place) {
  return static_cast<std::uint8_t>(value >> 8 * place);
}

Unit unit_of(HeadAxis axis) {
  return axis == HeadAxis::pan ? Unit::pan_controller : Unit::tilt_controller;
}

constexpr char no_power[] = "the power is off";
constexpr char no_program[] = "no program runs";

}  // namespace

bool Camera::push(Output output, std::int32_t counts) {
  Stepper* const of_chip = pt5111_.motor(output);
  Stepper* const motor = of_chip != nullptr ? of_chip : lens_.motor(output);
  if (motor == nullptr || !motor->present()) return false;
  motor->push(clock.now(), counts);
  return true;
}

std::optional<std::uint32_t> Camera::peek_command(std::uint8_t code) const {
  const std::optional<LensModule> module = lens_.module();
  if (!module || wire::find(wire::command::table, code, *module) == nullptr) return {};
  return lens_.program().value(code);
}

/// A copy of the controller is asked.
std::optional<std::uint32_t> Camera::peek_query(std::uint8_t code, std::uint8_t argument) const {
  if (!lens_.module()) return {};
  std::array<std::uint8_t, wire::query_frame_length> frame{code};
  frame[wire::query::argument_first(code) ? 1 : 2] = argument;
  frame[4] = wire::query::marker(code);
  frame[5] = sum_of(std::span(frame).first(5));
  Violations held;
  BootRecord boot;
  LensController lens = lens_;
  Pt5111 chip = pt5111_;
  Exchange exchange{clock.now(), Unit::lens_controller, frame, held};
  lens.receive(exchange, {}, boot, chip);
  if (held.total() != 0) return {};
  std::uint32_t answer = 0;
  for (std::size_t i = 0; i < wire::query_reply_length; ++i) {
    answer = answer << 8 | exchange.reply[wire::query_reply_offset + i];
  }
  return answer;
}

std::optional<std::uint16_t> Camera::peek_register(std::uint8_t reg) const {
  if (!lens_.module()) return {};
  return lens_.program().register_value(reg, lens_.program().motors(clock.now(), pt5111_));
}

std::optional<std::uint16_t> Camera::peek_pt5111(std::uint8_t reg) const {
  if (!powered_ || reg >= pt5111_registers) return {};
  return pt5111_.read(reg);
}

std::optional<std::uint32_t> Camera::peek_head(HeadAxis axis, std::uint8_t reg) const {
  if (!powered_) return {};
  const HeadController& controller = axis == HeadAxis::pan ? head_.pan() : head_.tilt();
  return controller.peek(reg, clock.now());
}

std::optional<Violation> Camera::poke_command(std::uint8_t code, std::uint32_t value) {
  if (!lens_.module()) return objection(clock.now(), Unit::lens_controller, no_program);
  std::array<std::uint8_t, wire::command_frame_length> frame{
      code, byte_of(value, 3), byte_of(value, 2), byte_of(value, 1), byte_of(value, 0)};
  frame[5] = sum_of(std::span(frame).first(5));
  Violations held;
  BootRecord boot;
  Exchange exchange{clock.now(), Unit::lens_controller, frame, held};
  lens_.receive(exchange, {}, boot, pt5111_);
  return first_of(held);
}

std::optional<Violation> Camera::poke_register(std::uint8_t reg, std::uint16_t value) {
  const bool de = lens_.module() == LensModule::de015;
  return poke_command(de ? wire::command::write_register_de : wire::command::write_register,
                      std::uint32_t{reg} << 16 | value);
}

std::optional<Violation> Camera::poke_pt5111(std::uint8_t reg, std::uint16_t value) {
  if (!powered_) return objection(clock.now(), Unit::pt5111, no_power);
  Violations held;
  if (reg >= pt5111_registers) {
    held.record(clock.now(), Unit::pt5111, {}, "there is no register %u", reg);
  } else if (value >= pt5111_values) {
    held.record(clock.now(), Unit::pt5111, {}, "a value of more than ten bits");
  } else {
    pt5111_.receive(clock.now(), static_cast<std::uint16_t>(reg << 10 | value));
  }
  return first_of(held);
}

std::optional<Violation> Camera::poke_head(HeadAxis axis, std::uint8_t reg,
                                           std::span<const std::uint8_t> data) {
  if (!powered_) return objection(clock.now(), unit_of(axis), no_power);
  std::vector<std::uint8_t> message{reg};
  message.insert(message.end(), data.begin(), data.end());
  Violations held;
  Exchange exchange{clock.now(), unit_of(axis), message, held};
  head_.controller(axis).write(exchange);
  return first_of(held);
}

}  // namespace kelvo::sim::camera
