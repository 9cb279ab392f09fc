#ifndef KELVO_TOOLS_KELVOCTL_COMMON_HEXADECIMAL_H
#define KELVO_TOOLS_KELVOCTL_COMMON_HEXADECIMAL_H

#include <cstdint>
#include <span>
#include <string>

namespace kelvo::ctl {

/// 0x and as many digits, capitals.
inline std::string hexadecimal(std::uint32_t value, int digits) {
  std::string text = "0x";
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
    text += "0123456789ABCDEF"[value >> shift & 0xF];
  }
  return text;
}

/// Two digits each, with blanks between.
inline std::string hexadecimal_bytes(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += (text.empty() ? "" : " ") + hexadecimal(byte, 2).substr(2);
  }
  return text;
}

}  // namespace kelvo::ctl

#endif
