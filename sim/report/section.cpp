#include "sim/report/section.h"

#include <array>
#include <cstdio>

#include "sim/report/table.h"

namespace kelvo::sim {
namespace {

struct Pattern {
  Format format;
  const char* text;
};
constexpr std::array patterns{
    Pattern{Format::plain, "%lld"},     Pattern{Format::hex2, "0x%02llX"},
    Pattern{Format::hex4, "%04llX"},    Pattern{Format::hex8, "%08llX"},
    Pattern{Format::position, "%+lld"},
};

std::string seconds(std::int64_t nanoseconds) {
  const long long milliseconds = nanoseconds / 1'000'000;
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%lld.%03lld s", milliseconds / 1000,
                milliseconds % 1000);
  return text.data();
}

std::string number_text(std::int64_t value, Format format) {
  if (format == Format::seconds) return seconds(value);
  if (format == Format::position && value == 0) return "0";
  std::array<char, 32> text{};
  for (const Pattern& pattern : patterns) {
    if (pattern.format != format) continue;
    // NOLINTNEXTLINE(clang-diagnostic-format-nonliteral): of the table above
    std::snprintf(text.data(), text.size(), pattern.text, static_cast<long long>(value));
  }
  return text.data();
}

std::string real_text(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f", value);
  return text.data();
}

}  // namespace

std::string text_of(const Value& value, Format format) {
  if (const auto* const truth = std::get_if<bool>(&value)) return *truth ? "yes" : "no";
  if (const auto* const whole = std::get_if<std::int64_t>(&value)) {
    return number_text(*whole, format);
  }
  if (const auto* const real = std::get_if<double>(&value)) return real_text(*real);
  if (const auto* const text = std::get_if<std::string>(&value)) return *text;
  return "-";
}

std::string text_of(const Section& section) {
  if (section.rows.empty()) return {};
  std::vector<std::string> headings;
  headings.reserve(section.columns.size());
  for (const Column& column : section.columns) headings.emplace_back(column.heading);
  Table table(std::move(headings));
  for (const std::vector<Value>& row : section.rows) {
    std::vector<std::string> cells;
    for (std::size_t i = 0; i < row.size(); ++i) {
      cells.push_back(text_of(row[i], section.columns[i].format));
    }
    table.add(std::move(cells));
  }
  return table.text();
}

}  // namespace kelvo::sim
