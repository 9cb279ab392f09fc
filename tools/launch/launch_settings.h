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
  std::string clock;
  std::vector<std::uint32_t> corrupt;
  bool report = false;
};

/// The settings of the preload library: the options, and of the words that the environment has already
/// those that no option replaces. Without a word on it there is no report.
std::string launch_settings(const LaunchOptions& options, std::string_view environment);

}  // namespace kelvo::tools

#endif
