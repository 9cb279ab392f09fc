// How long transfers occupy their wires.
#ifndef KELVO_SIM_COMMON_WIRE_TIME_H
#define KELVO_SIM_COMMON_WIRE_TIME_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "sim/common/clock.h"

namespace kelvo::sim::camera {

/// SPI at 1 MHz: eight clocks a byte, and none between bytes.
inline constexpr Time spi_clock{1'000};
constexpr Time spi_time(std::size_t bytes) { return spi_clock * 8 * bytes; }

/// I2C at 400 kHz: a byte and its acknowledgement are nine clocks. Each message begins with a start, or
/// a repeated one, and the byte of address and direction; behind the last comes a stop.
inline constexpr Time i2c_clock{2'500};
inline constexpr Time i2c_start = i2c_clock;
inline constexpr Time i2c_stop = i2c_clock;
constexpr Time i2c_bytes(std::size_t bytes) { return i2c_clock * 9 * bytes; }
constexpr Time i2c_message(std::size_t bytes) { return i2c_start + i2c_bytes(1 + bytes); }

/// What carries transfers, one at a time.
enum class Bus : std::uint8_t { lens_spi, pt5111_spi, i2c };

/// Until when each bus carries what was begun.
class Buses {
 public:
  Time occupy(Bus bus, Time now, Time duration) {
    Time& free = free_[static_cast<std::size_t>(bus)];
    free = std::max(free, now) + duration;
    return free;
  }

 private:
  std::array<Time, 3> free_{};
};

}  // namespace kelvo::sim::camera

#endif
