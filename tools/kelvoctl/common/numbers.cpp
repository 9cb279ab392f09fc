#include "tools/kelvoctl/common/numbers.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>

namespace kelvo::ctl {
namespace {

using std::chrono::microseconds;

struct Unit {
  std::string_view name;
  std::int64_t microseconds;
};

// The longer names first: each ends with the last.
constexpr std::array units{Unit{"us", 1}, Unit{"ms", 1'000}, Unit{"s", 1'000'000}};
constexpr std::int64_t longest = 86'400'000'000;  // a day, in microseconds

bool is_digit(char letter) { return letter >= '0' && letter <= '9'; }

bool parse_digits(std::string_view text, std::int64_t& number) {
  if (text.empty() || !std::ranges::all_of(text, is_digit)) return false;
  return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
}

/// Digits behind the point; what is finer than a microsecond is cut.
bool add_fraction(std::string_view digits, const Unit& unit, std::int64_t& time) {
  if (digits.empty() || !std::ranges::all_of(digits, is_digit)) return false;
  std::int64_t place = unit.microseconds;
  for (const char digit : digits) {
    place /= 10;
    time += place * (digit - '0');
  }
  return true;
}

std::string range_text(const Range& range) {
  return std::to_string(range.low) + " to " + std::to_string(range.high);
}

std::int64_t number_of(const std::string& name, const std::string& text, const Range& range) {
  const std::optional<std::int64_t> number = parse_number(text);
  if (number && *number >= range.low && *number <= range.high) return *number;
  throw CLI::ValidationError(name, "\"" + text + "\" is no number from " + range_text(range));
}

template <typename Number>
CLI::Option* add_any_number(CLI::App& command, const std::string& name, Number& number,
                            const Range& range, const std::string& description,
                            const std::string& type) {
  return command
      .add_option_function<std::string>(
          name,
          [&number, name, range](const std::string& text) {
            number = number_of(name, text, range);
          },
          description)
      ->type_name(type);
}

template <typename Time>
CLI::Option* add_any_duration(CLI::App& command, const std::string& name, Time& time,
                              const std::string& description) {
  return command
      .add_option_function<std::string>(
          name,
          [&time, name](const std::string& text) {
            const std::optional<microseconds> parsed = parse_duration(text);
            if (!parsed) {
              throw CLI::ValidationError(
                  name, "\"" + text + "\" is no time up to a day: write 2s, 250ms or 40us");
            }
            time = *parsed;
          },
          description)
      ->type_name("TIME");
}

}  // namespace

std::optional<std::int64_t> parse_number(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  int base = 10;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    base = 16;
    text.remove_prefix(2);
  }
  std::uint32_t size = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, size, base);
  if (error != std::errc() || rest != end) return {};
  return negative ? -std::int64_t{size} : std::int64_t{size};
}

std::optional<microseconds> parse_duration(std::string_view text) {
  for (const Unit& unit : units) {
    if (!text.ends_with(unit.name)) continue;
    text.remove_suffix(unit.name.size());
    const std::size_t point = std::min(text.find('.'), text.size());
    std::int64_t whole = 0;
    if (!parse_digits(text.substr(0, point), whole)) return {};
    if (whole > longest / unit.microseconds) return {};
    std::int64_t time = whole * unit.microseconds;
    if (point < text.size() && !add_fraction(text.substr(point + 1), unit, time)) return {};
    return microseconds(time);
  }
  return {};
}

std::string duration_text(microseconds time) {
  const Unit* best = units.data();
  for (const Unit& unit : units) {
    if (time.count() != 0 && time.count() % unit.microseconds == 0) best = &unit;
  }
  return std::to_string(time.count() / best->microseconds) + std::string(best->name);
}

CLI::Option* add_number(CLI::App& command, const std::string& name, std::int64_t& number,
                        const Range& range, const std::string& description,
                        const std::string& type) {
  return add_any_number(command, name, number, range, description, type);
}

CLI::Option* add_number(CLI::App& command, const std::string& name,
                        std::optional<std::int64_t>& number, const Range& range,
                        const std::string& description, const std::string& type) {
  return add_any_number(command, name, number, range, description, type);
}

CLI::Option* add_duration(CLI::App& command, const std::string& name, microseconds& time,
                          const std::string& description) {
  return add_any_duration(command, name, time, description);
}

CLI::Option* add_duration(CLI::App& command, const std::string& name,
                          std::optional<microseconds>& time, const std::string& description) {
  return add_any_duration(command, name, time, description);
}

}  // namespace kelvo::ctl
