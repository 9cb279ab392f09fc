#ifndef KELVO_SIM_WRAPPER_SETTINGS_H
#define KELVO_SIM_WRAPPER_SETTINGS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "wire/pan_tilt.h"

namespace kelvo::sim {

/// The environment variable with the settings.
inline constexpr char settings_variable[] = "KELVO_SIM";

/// How a process ends whose settings are wrong, before its own first line runs.
inline constexpr int wrong_settings_exit_code = 2;

enum class ClockMode : std::uint8_t { real, sleep };
enum class ReportMode : std::uint8_t { none, text };

struct Settings {
  ClockMode clock = ClockMode::real;   // as time passes, or only when somebody sleeps
  std::string files;                   // folder of the camera's files; empty: a private one
  std::vector<std::uint32_t> corrupt;  // downloads on the wire that lose a bit, from 1
  wire::HeadFamily head = wire::HeadFamily::tasmere;
  ReportMode report = ReportMode::text;
  std::string report_file;  // empty: standard error
};

/// Either the settings or one line that says what is wrong with them.
struct ParsedSettings {
  Settings settings;
  std::string error;
};

/// Reads words `name=value`, separated by blanks or commas.
ParsedSettings parse_settings(std::string_view text);

}  // namespace kelvo::sim

#endif
