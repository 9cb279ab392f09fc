#ifndef KELVO_LENS_MOTORS_MOTOR_STATE_H
#define KELVO_LENS_MOTORS_MOTOR_STATE_H

#include <cstdint>

extern "C" {

/// Motors started and not powered off since, one bit each. Nothing reads it, and it is kept up to date.
extern std::int32_t giMotorBusy;

// 0 until a motor's first move after load or after its power-off.
extern std::int32_t giZoom1Started;
extern std::int32_t giZoom2Started;
extern std::int32_t giZoom3Started;
extern std::int32_t giFocusStarted;
}

namespace kelvo::lens {

/// One stepping motor of the lens.
struct Motor {
  std::int32_t* started;
  std::int32_t busy_bit;

  void mark_busy() const { giMotorBusy |= busy_bit; }
  void mark_idle() const { giMotorBusy &= ~busy_bit; }
  /// Gives a freshly energised coil time to settle, the first time only.
  void settle(std::uint32_t milliseconds) const;
  void mark_started() const { *started = 1; }
  /// Has the next move wait again.
  void mark_powered_off() const { *started = 0; }
};

namespace motor {
inline constexpr Motor zoom1{&giZoom1Started, 1};
inline constexpr Motor zoom2{&giZoom2Started, 2};
inline constexpr Motor focus{&giFocusStarted, 4};
inline constexpr Motor zoom3{&giZoom3Started, 32};
}  // namespace motor

enum class Direction : std::uint8_t { forward = 0, backward = 1 };

}  // namespace kelvo::lens

#endif
