#include "tools/kelvoctl/common/printable.h"

#include <cstdio>

#include "tools/kelvoctl/common/session.h"

namespace kelvo::ctl {
namespace {

constexpr std::size_t longest_shown = 1000;
constexpr std::size_t end_shown = 300;

bool is_control(char letter) {
  const auto code = static_cast<unsigned char>(letter);
  return code < ' ' || code == 0x7F;
}

std::string escaped(std::string_view text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string shown;
  for (const char letter : text) {
    if (!is_control(letter)) {
      shown += letter;
      continue;
    }
    const auto code = static_cast<unsigned char>(letter);
    shown += {'\\', 'x', digits[code >> 4U], digits[code & 0xFU]};
  }
  return shown;
}

}  // namespace

std::string printable(std::string_view text) {
  if (text.size() <= longest_shown) return escaped(text);
  return escaped(text.substr(0, longest_shown - end_shown)) + "..." +
         escaped(text.substr(text.size() - end_shown));
}

void print_error(std::string_view line) {
  std::fprintf(stderr, "%s: %s\n", tool_name, printable(line).c_str());
}

}  // namespace kelvo::ctl
