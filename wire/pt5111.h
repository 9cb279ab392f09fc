#ifndef KELVO_WIRE_PT5111_H
#define KELVO_WIRE_PT5111_H

#include <cstdint>

// Words of the PT5111 stepping-motor driver: bits 15-10 a register, bits 9-0 its value, sent high byte
// first. Motor A has registers 0 to 15, motor B the same ones at 16 to 31.
namespace kelvo::wire::pt5111 {

constexpr std::int32_t word(unsigned reg, unsigned value) {
  return static_cast<std::int32_t>(reg << 10 | value);
}

// Block bases: DE015 has the IR-cut filter on A and the P-iris on B, DF033 zoom 1 on A and the IR-cut
// filter on B.
inline constexpr std::uint16_t motor_a = 0x0000;
inline constexpr std::uint16_t motor_b = 0x4000;

// Directions of a move.
inline constexpr std::uint16_t forward  = 0;
inline constexpr std::uint16_t backward = 512;

// Register fields of a move's words, joined with the block base and the value.
inline constexpr std::int32_t full_stepping = 0x0080;  // set by all but the u moves
inline constexpr std::int32_t count_low     = 0x0400;  // bits 0-9 of the count
inline constexpr std::int32_t count_high    = 0x0800;  // bits 10-15
inline constexpr std::int32_t period        = 0x0C00;
inline constexpr std::int32_t divider       = 0x1000;
inline constexpr std::int32_t run           = 0x3E80;

//                                                          register  value
inline constexpr std::int32_t power_on          = word(51, 0x3C0);
inline constexpr std::int32_t power_off         = word(51, 0x000);
inline constexpr std::int32_t drive_a           = word(13, 0x000);
inline constexpr std::int32_t drive_a_off       = word(13, 0x1C0);
inline constexpr std::int32_t drive_b           = word(29, 0x000);
inline constexpr std::int32_t halt_a            = word(15, 0x000);
inline constexpr std::int32_t halt_b            = word(31, 0x000);
inline constexpr std::int32_t filter_setup      = word(16, 0x140);
inline constexpr std::int32_t filter_on         = word(28, 0x3EF);
inline constexpr std::int32_t filter_off        = word(28, 0x1EF);
inline constexpr std::int32_t filter_pulse      = word(31, 0x200);
inline constexpr std::int32_t filter_rest       = word(28, 0x01F);
inline constexpr std::int32_t chip_setup        = word(56, 0x380);
inline constexpr std::int32_t chip_mode         = word(49, 0x000);
inline constexpr std::int32_t ramp_a            = word(10, 0x000);
inline constexpr std::int32_t ramp_b            = word(11, 0x000);
inline constexpr std::int32_t interrupter_setup = word(50, 0x280);
inline constexpr std::int32_t interrupter_on    = word(50, 0x200);
inline constexpr std::int32_t interrupter_off   = word(50, 0x000);
inline constexpr std::int32_t analogue_setup    = word(32, 0x180);
inline constexpr std::int32_t threshold_setup   = word(53, 0x178);

static_assert(power_on == 0xCFC0 && power_off == 0xCC00);
static_assert(drive_a == 0x3400 && drive_a_off == 0x35C0 && drive_b == 0x7400);
static_assert(halt_a == 0x3C00 && halt_b == 0x7C00);
static_assert(filter_setup == 0x4140 && filter_on == 0x73EF && filter_off == 0x71EF);
static_assert(filter_pulse == 0x7E00 && filter_rest == 0x701F);
static_assert(chip_setup == 0xE380 && chip_mode == 0xC400 && ramp_a == 0x2800 && ramp_b == 0x2C00);
static_assert(interrupter_setup == 0xCA80 && interrupter_on == 0xCA00 && interrupter_off == 0xC800);
static_assert(analogue_setup == 0x8180 && threshold_setup == 0xD578);

}  // namespace kelvo::wire::pt5111

#endif
