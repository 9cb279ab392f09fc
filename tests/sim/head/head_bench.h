// The head of a camera on a test bench: messages of bytes, and what comes back.
#ifndef KELVO_TESTS_SIM_HEAD_HEAD_BENCH_H
#define KELVO_TESTS_SIM_HEAD_HEAD_BENCH_H

#include <cstdint>
#include <string>
#include <vector>

#include "sim/camera/bench.h"

namespace kelvo::test {

inline sim::camera::Time ms(std::int64_t milliseconds) {
  return std::chrono::milliseconds(milliseconds);
}

inline constexpr int pan = 40;
inline constexpr int tilt = 41;
inline constexpr int up = 0;  // directions of a Vetra controller, by its counts
inline constexpr int down = 1;

class HeadBench : public Bench {
 public:
  explicit HeadBench(sim::camera::HeadFamily family) { camera.fit_head(family); }

  /// The camera's result.
  int write(int slave, Frame bytes);
  /// What was read; empty when nobody acknowledged.
  Frame read(int slave, std::uint8_t reg, std::size_t length);
  /// The 16-bit value of a register.
  int read_word(int slave, std::uint8_t reg);
  void wait(std::chrono::nanoseconds time) { camera.clock.advance(time); }
};

/// Nobody has asked for the family, so no pause is due.
class VetraBench : public HeadBench {
 public:
  VetraBench() : HeadBench(sim::camera::HeadFamily::vetra) {}

  void continuous(int slave, int direction, int speed);
  void absolute(int slave, int direction, int target, int speed);
  void limits(int slave, int first, int second);
  void enable_limits(int slave, int on);
  int position(int slave) { return read_word(slave, 50); }
  bool at_rest(int slave) { return (read(slave, 49, 1).at(0) & 4) != 0; }
};

class TasmereBench : public HeadBench {
 public:
  TasmereBench() : HeadBench(sim::camera::HeadFamily::tasmere) {}

  /// Two bytes into a register.
  void set(int slave, std::uint8_t reg, int value);
  void absolute(int slave, int target, int speed);
  int position(int slave) { return read_word(slave, 4); }
  bool at_rest(int slave) { return read(slave, 3, 1).at(0) == 0; }
};

}  // namespace kelvo::test

#endif
