#include "sim/lens/reset_line.h"

#include <charconv>

#include "wire/paths.h"

namespace kelvo::sim::camera {
namespace {

struct Echo {
  std::string_view value;
  std::string_view file;
};

constexpr std::string_view trimmed(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

constexpr std::string_view unquoted(std::string_view text) {
  const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
  return quoted ? text.substr(1, text.size() - 2) : text;
}

/// Takes "echo VALUE > FILE" apart; anything else has no file.
constexpr Echo parse(std::string_view command) {
  constexpr std::string_view echo = "echo ";
  std::size_t arrow = 0;
  while (arrow < command.size() && command[arrow] != '>') ++arrow;
  if (!command.starts_with(echo) || arrow == command.size()) return {};
  return {unquoted(trimmed(command.substr(echo.size(), arrow - echo.size()))),
          trimmed(command.substr(arrow + 1))};
}

constexpr std::string_view export_file = parse(wire::reset_line_export).file;
constexpr std::string_view direction_file = parse(wire::reset_line_output).file;
constexpr std::string_view value_file = parse(wire::reset_line_assert).file;
constexpr std::string_view line_number = parse(wire::reset_line_export).value;

}  // namespace

std::optional<int> ResetLine::run(std::string_view command) {
  const auto [value, file] = parse(command);
  if (file == export_file) return export_line(value);
  if (file == direction_file) return set_direction(value);
  if (file == value_file) return set_value(value);
  return {};
}

int ResetLine::export_line(std::string_view number) {
  if (exported_ || number != line_number) return refused;
  exported_ = true;
  return 0;
}

int ResetLine::set_direction(std::string_view direction) {
  const bool output = direction == "out" || direction == "low" || direction == "high";
  if (!exported_ || (!output && direction != "in")) return refused;
  driven_ = output;
  high_ = direction == "high";
  return 0;
}

int ResetLine::set_value(std::string_view value) {
  int number = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  const bool is_number = error == std::errc{} && end == value.data() + value.size();
  if (!exported_ || !driven_ || !is_number) return refused;
  high_ = number != 0;
  return 0;
}

}  // namespace kelvo::sim::camera
