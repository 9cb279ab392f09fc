#include <charconv>
#include <limits>

#include "tools/kelvo-sim/registers.h"

namespace kelvo::tools {

std::optional<std::uint64_t> parse_number(std::string_view text, std::uint64_t most) {
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (hexadecimal) text.remove_prefix(2);
  std::uint64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, number, hexadecimal ? 16 : 10);
  if (error != std::errc{} || behind != end || number > most) return {};
  return number;
}

std::optional<std::int32_t> parse_counts(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const auto number = parse_number(text, std::numeric_limits<std::int32_t>::max());
  if (!number) return {};
  const auto counts = static_cast<std::int32_t>(*number);
  return negative ? -counts : counts;
}

}  // namespace kelvo::tools
