#include "wire/pt5111.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <span>

#include "bus/spi_device.h"
#include "kelvo/bus.h"
#include "kelvo/lens.h"
#include "lens/variant/variant.h"
#include "wire/lens_program.h"
#include "wire/paths.h"

std::int32_t cMotorPower = 0;

namespace {

using kelvo::lens::LensModule;
namespace words = kelvo::wire::pt5111;

constexpr std::uint8_t pt5111_select = 2;
constexpr std::uint32_t filter_pulse_us = 200'000;
constexpr std::uint16_t actuator_speed = 100;

std::int32_t giPT5111Fd = -1;

std::int64_t send_on_own_device(std::uint16_t word) {
  if (giPT5111Fd < 0) {
    giPT5111Fd = open(kelvo::wire::pt5111_device, O_RDWR);
    if (giPT5111Fd < 0) {
      return std::fprintf(stderr, "Open %s fail\n", kelvo::wire::pt5111_device);
    }
  }
  if (giPT5111Fd == 0) return 0;
  const std::array<std::uint8_t, 8> transmit{static_cast<std::uint8_t>(word >> 8),
                                             static_cast<std::uint8_t>(word)};
  std::array<std::uint8_t, 8> receive{};
  // No bus lock: the device belongs to this chip alone.
  return kelvo::bus::spi_transfer(giPT5111Fd, transmit.data(), receive.data(), sizeof word);
}

std::int64_t send_all(std::span<const std::int32_t> sequence) {
  std::int64_t result = 0;
  for (const std::int32_t word : sequence) result = SendPT5111CMD(word);
  return result;
}

/// Divider and period word of a row; a row beyond the table reads as standstill.
struct SpeedWords {
  std::uint16_t divider;
  std::uint16_t period;
};

SpeedWords speed_words(std::uint16_t row) {
  if (row >= std::size(SpeedTable)) return {0, 0};
  return {SpeedTable[row][0], SpeedTable[row][2]};
}

std::uint16_t speed_level(std::uint16_t speed) {
  constexpr std::uint16_t top_speed = 233;
  constexpr std::uint16_t top_level = 38;
  return speed <= top_speed ? static_cast<std::uint16_t>(speed / 6) : top_level;
}

std::int64_t stepping_move(std::uint16_t block, std::uint16_t dir, std::uint16_t speed,
                           std::uint16_t steps, std::int32_t stepping) {
  cMotorPower = 1;
  if (block == words::motor_a || block == words::motor_b) {
    constexpr std::array energise{words::power_on, words::drive_a, words::drive_b};
    send_all(energise);
    speed = speed_level(speed);
  }
  const SpeedWords row = speed_words(static_cast<std::uint16_t>(255 - speed));
  const std::array move{
      block | dir | stepping,
      block | (steps & 0x3FF) | words::count_low,
      block | (steps >> 10) | words::count_high,
      block | row.period | words::period,
      block | row.divider | words::divider,
      block | words::run,
  };
  return send_all(move);
}

/// The IR-cut filter's own actuator on DE015, a pulsed coil on every other module.
std::int64_t move_filter(std::uint16_t dir, std::int32_t pulse_word, std::uint32_t steps) {
  if (kelvo::lens::lens_module() == LensModule::de015) {
    return SteppingMove(words::motor_a, dir, actuator_speed, static_cast<std::uint16_t>(steps));
  }
  const std::array pulse{words::power_on, words::filter_setup, pulse_word, words::filter_pulse};
  send_all(pulse);
  usleep(filter_pulse_us);
  return SendPT5111CMD(words::halt_b);
}

// clang-format off
// The two sequences begin alike; chip_mode is sent twice (deliberate).
constexpr std::array initialise_de015{
    words::chip_setup, words::chip_mode, words::ramp_a, words::ramp_b, words::drive_a,
    words::drive_b, words::chip_mode, words::power_on, words::interrupter_setup, words::halt_a,
    words::analogue_setup, words::threshold_setup, words::interrupter_on};
constexpr std::array initialise_others{
    words::chip_setup, words::chip_mode, words::ramp_a, words::ramp_b, words::drive_a,
    words::drive_b, words::chip_mode, words::power_on, words::halt_a, words::filter_setup,
    words::filter_rest};
// clang-format on

}  // namespace

std::int64_t SendPT5111CMD(std::int32_t word) {
  const auto bits = static_cast<std::uint16_t>(word);
  switch (kelvo::lens::lens_module()) {
    case LensModule::de015: return send_on_own_device(bits);
    case LensModule::df033:
      return SendCommand(kelvo::wire::command::pt5111_word, pt5111_select,
                         static_cast<std::uint8_t>(bits >> 8), static_cast<std::uint8_t>(bits), 0);
    default: return gi30516Ver;
  }
}

std::int64_t SteppingMove(std::uint16_t block, std::uint16_t dir, std::uint16_t speed,
                          std::uint16_t steps) {
  return stepping_move(block, dir, speed, steps, words::full_stepping);
}

std::int64_t uSteppingMove(std::uint16_t block, std::uint16_t dir, std::uint16_t speed,
                           std::uint16_t steps) {
  return stepping_move(block, dir, speed, steps, 0);
}

std::int64_t stop() {
  cMotorPower = 0;
  constexpr std::array sequence{words::power_off, words::halt_a, words::halt_b};
  return send_all(sequence);
}

std::int64_t piris_open(std::uint32_t steps) {
  return SteppingMove(words::motor_b, words::backward, actuator_speed,
                      static_cast<std::uint16_t>(steps));
}

std::int64_t piris_close(std::uint32_t steps) {
  return SteppingMove(words::motor_b, words::forward, actuator_speed,
                      static_cast<std::uint16_t>(steps));
}

std::int64_t ICR_ON(std::uint32_t steps) {
  return move_filter(words::forward, words::filter_on, steps);
}

std::int64_t ICR_OFF(std::uint32_t steps) {
  return move_filter(words::backward, words::filter_off, steps);
}

std::int64_t PT5111_Initialize() {
  if (kelvo::lens::lens_module() == LensModule::de015) {
    send_all(initialise_de015);
    delay_ms(500);
    SendPT5111CMD(words::interrupter_setup);
    return stop();
  }
  const std::int64_t result = send_all(initialise_others);
  return ICR_ON(static_cast<std::uint32_t>(result));
}

std::int64_t PT5111Zoom1Forward(std::uint8_t speed, std::uint32_t steps) {
  return SteppingMove(words::motor_a, words::forward, speed, static_cast<std::uint16_t>(steps));
}

std::int64_t PT5111Zoom1Backward(std::uint8_t speed, std::uint32_t steps) {
  return SteppingMove(words::motor_a, words::backward, speed, static_cast<std::uint16_t>(steps));
}

std::int64_t uPT5111Zoom1Forward(std::uint8_t speed, std::uint32_t steps) {
  return uSteppingMove(words::motor_a, words::forward, speed, static_cast<std::uint16_t>(steps));
}

std::int64_t uPT5111Zoom1Backward(std::uint8_t speed, std::uint32_t steps) {
  return uSteppingMove(words::motor_a, words::backward, speed, static_cast<std::uint16_t>(steps));
}

std::int64_t PT5111PI1(std::int32_t on) {
  return SendPT5111CMD(on == 1 ? words::interrupter_on : words::interrupter_off);
}

std::int32_t PT5111Zoom1OFF() {
  SendPT5111CMD(words::drive_a_off);
  return 0;
}
