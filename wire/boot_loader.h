#ifndef KELVO_WIRE_BOOT_LOADER_H
#define KELVO_WIRE_BOOT_LOADER_H

#include <cstddef>
#include <cstdint>

// The lens controller's boot loader: what it understands before a program runs.
namespace kelvo::wire::boot_loader {

// Every frame but the payload: code, three data bytes, end byte.
inline constexpr std::size_t frame_length = 5;
inline constexpr std::uint8_t end_byte    = 0xA0;

// Commands.                                               data bytes
inline constexpr std::uint8_t clock_supply     = 0xF0;  // 01 13 03
inline constexpr std::uint8_t clock_source     = 0xF1;  // 01 00 00
inline constexpr std::uint8_t division_ratio   = 0xF2;  // 33 92 00
inline constexpr std::uint8_t divider_start    = 0xF3;  // 01 00 00
inline constexpr std::uint8_t pll_control      = 0xF4;  // 01 00 00
inline constexpr std::uint8_t pll_mode         = 0xF5;  // 04 00 00
inline constexpr std::uint8_t payload_header   = 0xE1;  // 11, memory id, 00; the payload follows
inline constexpr std::uint8_t start_program    = 0xE2;  // 00 00 00
inline constexpr std::uint8_t download_address = 0xE3;  // address, low byte first
inline constexpr std::uint8_t download_size    = 0xE4;  // size in bytes, low byte first
inline constexpr std::uint8_t download_end     = 0xE5;  // 00 02 00

inline constexpr std::uint8_t payload_mode = 0x11;  // first data byte of a payload header

// Reads: the answer is in received bytes 2 (low) and 3 (high).
inline constexpr std::uint8_t checksum_low  = 0x66;  // bits 0-15 of the last download's checksum
inline constexpr std::uint8_t checksum_high = 0x67;  // bits 16-31
inline constexpr std::size_t answer_low     = 2;
inline constexpr std::size_t answer_high    = 3;

}  // namespace kelvo::wire::boot_loader

#endif
