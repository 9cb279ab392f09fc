// Numbers and times as they are typed: decimal or hexadecimal, and with their unit.
#ifndef KELVO_TOOLS_KELVOCTL_COMMON_NUMBERS_H
#define KELVO_TOOLS_KELVOCTL_COMMON_NUMBERS_H

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace CLI {  // NOLINT(readability-identifier-naming): the name that it has
class App;
class Option;
}  // namespace CLI

namespace kelvo::ctl {

/// Both ends belong to it.
struct Range {
  std::int64_t low;
  std::int64_t high;
};

inline constexpr Range byte_range{0, 0xFF};
inline constexpr Range word_range{0, 0xFFFF};

/// 12, -12, 0x1F. A leading zero means nothing.
std::optional<std::int64_t> parse_number(std::string_view text);

/// 250ms, 2s, 1.5s, 40us; a number alone is refused.
std::optional<std::chrono::microseconds> parse_duration(std::string_view text);
/// The shortest way to write it.
std::string duration_text(std::chrono::microseconds time);

/// Options and arguments that take a number of a range, or a time. What is typed otherwise is refused
/// with a line that says what it takes. `type` stands for the value in help.
CLI::Option* add_number(CLI::App& command, const std::string& name, std::int64_t& number,
                        const Range& range, const std::string& description,
                        const std::string& type = "N");
CLI::Option* add_number(CLI::App& command, const std::string& name,
                        std::optional<std::int64_t>& number, const Range& range,
                        const std::string& description, const std::string& type = "N");
CLI::Option* add_duration(CLI::App& command, const std::string& name,
                          std::chrono::microseconds& time, const std::string& description);
CLI::Option* add_duration(CLI::App& command, const std::string& name,
                          std::optional<std::chrono::microseconds>& time,
                          const std::string& description);

}  // namespace kelvo::ctl

#endif
