#ifndef KELVO_WIRE_MOTOR_CHANNELS_H
#define KELVO_WIRE_MOTOR_CHANNELS_H

#include <cstdint>

// The 16-bit registers of the lens controller's motor block.
namespace kelvo::wire {

/// One motor channel; the two channels have the same registers at different numbers.
struct MotorChannel {
  std::uint8_t control;     // 0 stop, 3842 armed, 3850 run
  std::uint8_t mode;        // drive mode and direction
  std::uint8_t count_low;   // bits 0-9 of the step count
  std::uint8_t count_high;  // bits 10-19
  std::uint8_t period;      // step-period word: clock range * 1024 + period
  std::uint8_t current;     // 0 while moving, a holding word when powered off
  std::uint8_t counter;     // position, 15 bits folded or 16 bits
  std::uint8_t status;      // read: not 0 in the high byte while moving
};

//                                        control mode low high period current counter status
inline constexpr MotorChannel focus_channel{30, 0, 2, 4, 6, 24, 20, 28};
inline constexpr MotorChannel zoom_channel{62, 32, 34, 36, 38, 56, 52, 60};

namespace motor_current {
inline constexpr std::int16_t off       = 0x3DF;
inline constexpr std::int16_t off_df033 = 0x1DF;
}  // namespace motor_current

namespace motor_control {
inline constexpr std::int16_t stop  = 0;
inline constexpr std::int16_t armed = 3842;
inline constexpr std::int16_t run   = 3850;
}  // namespace motor_control

namespace motor_mode {
inline constexpr std::int16_t phase_backward      = 0x300;  // 2-2 or 1-2 phase
inline constexpr std::int16_t phase_forward       = 0x340;
inline constexpr std::int16_t micro_step_forward  = 0x600;  // 512 micro-step
inline constexpr std::int16_t micro_step_backward = 0x640;
}  // namespace motor_mode

// Written before every move.
struct RegisterValue {
  std::uint8_t reg;
  std::int16_t value;
};
inline constexpr RegisterValue motor_block_enable{134, 1};
inline constexpr RegisterValue motor_block_clock{142, 73};
inline constexpr RegisterValue motor_block_commit{252, 499};

// Supply of the photo-interrupters.
inline constexpr std::uint8_t interrupter_supply = 136;
namespace interrupter_power {
inline constexpr std::int16_t off     = 0;
inline constexpr std::int16_t measure = 2;  // before a level is read
inline constexpr std::int16_t on      = 3;
}  // namespace interrupter_power

// The coil of T5391's IR-cut filter: set up, driven, released.
inline constexpr std::uint8_t filter_coil      = 130;
inline constexpr std::uint8_t filter_direction = 186;
namespace filter_drive {
inline constexpr std::int16_t released = 0;
inline constexpr std::int16_t braking  = 1;
inline constexpr std::int16_t driven   = 3;
inline constexpr std::int16_t into     = 255;  // direction: filter on
inline constexpr std::int16_t away     = 767;  // filter off
}  // namespace filter_drive
// Written in this order; the direction follows the first list.
inline constexpr RegisterValue filter_set_up[] = {
    {252, 496}, {filter_coil, filter_drive::released}, {144, 403}, {160, 0}, {182, 0},
};
inline constexpr RegisterValue filter_start[] = {
    {190, 8},
    motor_block_commit,
    {filter_coil, filter_drive::driven},
};

/// A step-period word is range * 1024 + period; the step clock is 5 MHz / 1024, doubled by each range.
inline constexpr int step_range_shift               = 10;
inline constexpr std::uint32_t step_period_mask     = 1023;
inline constexpr std::int64_t step_clock_millionths = 4'882'812'500;  // millionths of a hertz

}  // namespace kelvo::wire

#endif
