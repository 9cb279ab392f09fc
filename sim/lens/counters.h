#ifndef KELVO_SIM_LENS_COUNTERS_H
#define KELVO_SIM_LENS_COUNTERS_H

#include <array>
#include <cstdint>
#include <optional>

#include "sim/lens/motor_states.h"

namespace kelvo::sim::camera {

/// The position counters of the lens controller's program: one for each motor that it can be asked for.
///
/// A counter counts what is driven, in the counts of the motor's drive: eighth steps in micro-step drive,
/// half steps in 2-2 phase, else steps. Where a motor has met an end stop it goes on, so that it is wrong
/// by what the motor could not do. A preset is the count itself, whatever the answers are encoded in.
class Counters {
 public:
  /// The program starts: all of them are 0.
  void clear(const MotorStates& motors);
  /// A command that presets or clears a counter; any other does nothing.
  void obey(std::uint8_t command, std::uint32_t value, const MotorStates& motors);
  /// A write to a channel's counter register; one to any other does nothing.
  void write(std::uint8_t reg, std::uint16_t value, const MotorStates& motors);

  /// The answer to a query for a counter, 32 bits; nothing for any other query.
  std::optional<std::uint32_t> answer(std::uint8_t query, const MotorStates& motors) const;
  /// Whether this is a channel's counter register.
  static bool has(std::uint8_t reg);
  /// A channel's counter register, by its low 16 bits; nothing for any other register.
  std::optional<std::uint16_t> read(std::uint8_t reg, const MotorStates& motors) const;

  std::int32_t count(Output output, const MotorStates& motors) const;

 private:
  void preset(Output output, std::uint32_t count, const MotorStates& motors);
  std::uint32_t counted(Output output, const MotorStates& motors) const;

  std::array<std::uint32_t, outputs> offsets_{};
};

/// How a counter register is read on the modules whose program folds it: 15 bits that run down, from
/// 0x3FFF for a count of 0 to 0 for 16383, and on from 0x7FFF for 16384 to 0x4000 for 32767.
constexpr std::uint16_t folded(std::uint16_t count) {
  return static_cast<std::uint16_t>((0x3FFFU - count) & 0x7FFFU);
}

}  // namespace kelvo::sim::camera

#endif
