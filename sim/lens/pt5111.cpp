#include "sim/lens/pt5111.h"

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
constexpr std::uint8_t drive_a = register_of(words::drive_a);
constexpr std::uint16_t drive_off_value = value_of(words::drive_a_off);
constexpr std::uint8_t filter_setup = register_of(words::filter_setup);
constexpr std::uint8_t filter_direction = register_of(words::filter_on);
constexpr std::uint8_t interrupter = register_of(words::interrupter_on);
static_assert(register_of(words::filter_pulse) == run_b);

}  // namespace

bool Pt5111::powered() const { return registers_[power_register] != value_of(words::power_off); }

bool Pt5111::interrupter_supplied() const {
  return registers_[interrupter] != value_of(words::interrupter_off);
}

std::uint16_t Pt5111::field(std::uint16_t base, std::int32_t word) const {
  return registers_[register_of(base | word)];
}

void Pt5111::receive(Time now, std::uint16_t word) {
  const std::uint8_t reg = register_of(word);
  const std::uint16_t value = value_of(word);
  registers_[reg] = value;
  if (reg == run_a) control(now, motor_a_, words::motor_a, value);
  if (reg == run_b) control(now, motor_b_, words::motor_b, value);
  if (reg == run_b && filter_on_b_) pulse(now, value);
  if (reg == drive_a && value == drive_off_value) motor_a_.halt(now);
  if (reg == power_register && !powered()) stop(now);
}

void Pt5111::stop(Time now) {
  motor_a_.halt(now);
  motor_b_.halt(now);
  filter_.release(now);
}

void Pt5111::lose_power(Time now) {
  stop(now);
  registers_ = {};
}

void Pt5111::pulse(Time now, std::uint16_t value) {
  const std::uint16_t direction = registers_[filter_direction];
  const bool known =
      direction == value_of(words::filter_on) || direction == value_of(words::filter_off);
  const bool set_up = registers_[filter_setup] == value_of(words::filter_setup);
  if (value == value_of(words::filter_pulse) && powered() && set_up && known) {
    filter_.drive(now,
                  direction == value_of(words::filter_on) ? FilterPlace::on : FilterPlace::off);
  } else {
    filter_.release(now);
  }
}

void Pt5111::control(Time now, Stepper& motor, std::uint16_t base, std::uint16_t value) const {
  if (value == halt_value) motor.halt(now);
  const bool driven = field(base, words::drive_a) != drive_off_value;
  if (value != run_value || !powered() || !driven) return;
  const bool backward = (field(base, 0) & words::backward) != 0;
  const std::uint32_t counts =
      (std::uint32_t{field(base, words::count_high)} << value_bits) + field(base, words::count_low);
  TickRate rate =
      step_rate(field(base, words::divider) >> divider_shift, field(base, words::period));
  rate.nanoseconds <<= divider_of_one;
  motor.start(now, {backward ? Direction::backward : Direction::forward, counts, 1, rate});
}

void Pt5111::fit(LensModule module, const Variety& variety) {
  fit_motor(motor_a_, module, Output::pt5111_a, variety);
  fit_motor(motor_b_, module, Output::pt5111_b, variety);
  filter_.fit(first_filter_place(variety));
  filter_on_b_ = module == LensModule::df033;
}

void Pt5111::connect(Time now, bool connected) {
  motor_a_.connect(now, connected);
  motor_b_.connect(now, connected);
  filter_.connect(now, connected);
}

bool Pt5111::energised(Output output) const {
  const std::uint16_t base = output == Output::pt5111_a ? words::motor_a : words::motor_b;
  return powered() && field(base, words::drive_a) != drive_off_value;
}

Stepper* Pt5111::motor(Output output) {
  if (output == Output::pt5111_a) return &motor_a_;
  return output == Output::pt5111_b ? &motor_b_ : nullptr;
}

}  // namespace kelvo::sim::camera
