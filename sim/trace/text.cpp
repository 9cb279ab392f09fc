#include "sim/trace/text.h"

#include <algorithm>
#include <cstdio>

namespace kelvo::sim::trace {

std::string dashed(std::string_view name) {
  std::string text(name);
  std::replace(text.begin(), text.end(), '_', '-');
  return text;
}

void add_meaning(std::string& meanings, std::string_view name) {
  const std::string added = dashed(name);
  if (("|" + meanings + "|").find("|" + added + "|") != std::string::npos) return;
  meanings += (meanings.empty() ? "" : "|") + added;
}

std::string hex(std::uint32_t number, int digits) {
  char text[16];
  std::snprintf(text, sizeof text, "%0*X", digits, number);
  return text;
}

std::string hex_bytes(Bytes kept, std::size_t length) {
  std::string text;
  for (const std::uint8_t byte : kept.first(std::min(kept.size(), length))) {
    text += (text.empty() ? "" : " ") + hex(byte, 2);
  }
  return length > kept.size() ? text + " ..." : text;
}

std::string counted_bytes(Bytes kept, std::size_t length) {
  const std::string count = std::to_string(length) + (length == 1 ? " byte" : " bytes");
  return length == 0 ? count : count + ": " + hex_bytes(kept, length);
}

std::uint32_t high_first(Bytes bytes) {
  std::uint32_t number = 0;
  for (const std::uint8_t byte : bytes) number = number << 8 | byte;
  return number;
}

std::string joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) {
    if (!part.empty() && !text.empty()) text += ' ';
    text += part;
  }
  return text;
}

}  // namespace kelvo::sim::trace
