#include "sim/camera/pt5111.h"

#include "wire/pt5111.h"

namespace kelvo::sim::camera {
namespace {

namespace words = wire::pt5111;

constexpr int value_bits = 10;
constexpr std::uint16_t value_mask = (1U << value_bits) - 1;
constexpr int divider_shift = 6;        // a divider word is 64 times the divider
constexpr unsigned divider_of_one = 2;  // this divider counts the step clock as it is

constexpr std::uint8_t register_of(std::int32_t word) {
  return static_cast<std::uint8_t>(word >> value_bits);
}
constexpr std::uint16_t value_of(std::int32_t word) {
  return static_cast<std::uint16_t>(word & value_mask);
}

constexpr std::uint8_t power_register = register_of(words::power_on);
constexpr std::uint8_t run_a = register_of(words::motor_a | words::run);
constexpr std::uint8_t run_b = register_of(words::motor_b | words::run);
constexpr std::uint16_t run_value = value_of(words::run);
constexpr std::uint16_t halt_value = value_of(words::halt_a);

}  // namespace

bool Pt5111::powered() const { return registers_[power_register] != value_of(words::power_off); }

std::uint16_t Pt5111::field(std::uint16_t base, std::int32_t word) const {
  return registers_[register_of(base | word)];
}

void Pt5111::receive(Time now, std::uint16_t word) {
  const std::uint8_t reg = register_of(word);
  const std::uint16_t value = value_of(word);
  registers_[reg] = value;
  if (reg == run_a) control(now, motor_a_, words::motor_a, value);
  if (reg == run_b) control(now, motor_b_, words::motor_b, value);
  if (reg == power_register && !powered()) {
    motor_a_.halt(now);
    motor_b_.halt(now);
  }
}

void Pt5111::control(Time now, Stepper& motor, std::uint16_t base, std::uint16_t value) const {
  if (value == halt_value) motor.halt(now);
  if (value != run_value || !powered()) return;
  const bool backward = (field(base, 0) & words::backward) != 0;
  const std::uint32_t counts =
      (std::uint32_t{field(base, words::count_high)} << value_bits) + field(base, words::count_low);
  TickRate rate =
      step_rate(field(base, words::divider) >> divider_shift, field(base, words::period));
  rate.nanoseconds <<= divider_of_one;
  motor.start(now, {backward ? Direction::backward : Direction::forward, counts, 1, rate});
}

void Pt5111::fit(LensModule module) {
  motor_a_.fit(end_stop(module, Output::pt5111_a));
  motor_b_.fit(end_stop(module, Output::pt5111_b));
}

}  // namespace kelvo::sim::camera
