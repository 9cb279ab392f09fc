#ifndef KELVO_TOOLS_LAUNCH_LAUNCH_SETTINGS_H
#define KELVO_TOOLS_LAUNCH_LAUNCH_SETTINGS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvo::tools {

/// What the options of `run` ask for; an empty one asks for nothing.
struct LaunchOptions {
  std::string name;
  std::string head;
  std::string module;
  std::string seed;
  std::string clock;
  std::vector<std::uint32_t> corrupt;
  std::vector<std::string> faults;
  bool report = false;
  bool stop_at_violation = false;
};

/// The settings of the preload library: the options, and of the words that the environment has already
/// those that no option replaces. Without a word on it there is no report.
std::string launch_settings(const LaunchOptions& options, std::string_view environment);

/// The settings without the faults, for a camera that has them already.
std::string without_faults(std::string_view settings);

}  // namespace kelvo::tools

#endif
