#ifndef KELVO_SIM_WRAPPER_SETTINGS_H
#define KELVO_SIM_WRAPPER_SETTINGS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sim/fault/fault.h"
#include "sim/state/shared_settings.h"

namespace kelvo::sim {

/// The environment variable with the settings.
inline constexpr char settings_variable[] = "KELVO_SIM";

/// How a process ends whose settings are wrong, before its own first line runs.
inline constexpr int wrong_settings_exit_code = 2;
/// How a process ends that is to stop at its first violation.
inline constexpr int violation_exit_code = 123;

enum class ReportMode : std::uint8_t { none, text };
/// Whether a violation is listed, or ends the process that commits it as well.
enum class ViolationMode : std::uint8_t { listed, fatal };

struct Settings {
  std::string real;  // the name of a recording: the devices are the real ones, and it gets a trace
  std::string name;  // of a camera that processes share; empty: each has its own
  WantedSettings camera;  // what is not given is the default, or what a shared camera has
  std::vector<fault::Fault> faults;      // that it shall have from the start
  ReportMode report = ReportMode::text;  // of a shared camera only when it is asked for
  ViolationMode violations = ViolationMode::listed;
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
