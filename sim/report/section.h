// What is told about a camera, once: rows from which both the tables and the JSON of the tools are made.
#ifndef KELVO_SIM_REPORT_SECTION_H
#define KELVO_SIM_REPORT_SECTION_H

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace kelvo::sim {

/// Nothing, a truth, a number or a text.
using Value = std::variant<std::monostate, bool, std::int64_t, double, std::string>;

/// How a table shows a number. JSON has it as it is.
enum class Format : std::uint8_t { plain, hex2, hex4, hex8, position, seconds };

struct Column {
  const char* key;      // in JSON
  const char* heading;  // in a table
  Format format = Format::plain;
};

/// Rows of a kind: a table of text, an array of objects in JSON.
struct Section {
  const char* key;
  std::vector<Column> columns;
  std::vector<std::vector<Value>> rows{};
};

/// As a cell of a table: nothing is a dash, times are nanoseconds.
std::string text_of(const Value& value, Format format = Format::plain);
/// A table; nothing at all for a section without rows.
std::string text_of(const Section& section);

/// A number of any kind as a value.
constexpr std::int64_t number(auto value) { return static_cast<std::int64_t>(value); }

}  // namespace kelvo::sim

#endif
