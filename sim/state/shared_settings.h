// What all programs of one shared camera have in common, whoever starts first.
#ifndef KELVO_SIM_STATE_SHARED_SETTINGS_H
#define KELVO_SIM_STATE_SHARED_SETTINGS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "wire/lens_module.h"
#include "wire/pan_tilt.h"

namespace kelvo::sim {

/// As time passes, at a multiple of that, or only when somebody sleeps.
enum class ClockMode : std::uint8_t { real, scaled, sleep };

/// How a camera's clock goes.
struct ClockSetting {
  static constexpr double slowest = 0.1;
  static constexpr double fastest = 1000;

  ClockMode mode = ClockMode::real;
  double speed = 1;  // times real time, of a scaled clock; 1 for the others

  bool operator==(const ClockSetting&) const = default;
};

/// Reads `real`, `sleep`, or a number from 0.1 to 1000; nothing for any other text.
std::optional<ClockSetting> parse_clock(std::string_view text);
/// The text that parse_clock() reads back.
std::string to_text(const ClockSetting& clock);
/// What parse_clock() takes, for messages.
inline constexpr std::string_view clock_values = "real, sleep, or a number from 0.1 to 1000";

/// The settings that a camera has. They are fixed when it is made.
struct SharedSettings {
  wire::HeadFamily head = wire::HeadFamily::tasmere;
  std::optional<wire::LensModule> module;  // the lens that stays; else it is that of the program
  ClockSetting clock;
  std::string files;                   // folder of the calibration files, absolute
  std::vector<std::uint32_t> corrupt;  // downloads on the wire that lose a bit, from 1; at most 16
  std::uint64_t seed = 0;              // of its variety; 0: the middle of everything, without noise
};

/// What somebody asks of a camera. What is left open takes the default when the camera is made, and
/// whatever it has when there is one. What is given must agree with a camera that there is.
struct WantedSettings {
  std::optional<wire::HeadFamily> head;
  std::optional<wire::LensModule> module;
  std::optional<ClockSetting> clock;
  std::optional<std::string> files;  // without it the camera has a private folder of its own
  std::optional<std::vector<std::uint32_t>> corrupt;
  std::optional<std::uint64_t> seed;
};

/// Reads `de015`, `df033` or `t5391`; nothing for any other text.
std::optional<wire::LensModule> parse_module(std::string_view text);
/// The text that parse_module() reads back.
std::string to_text(wire::LensModule module);
/// What parse_module() takes, for messages.
inline constexpr std::string_view module_values = "de015, df033 or t5391";

/// Reads a seed in decimal digits; nothing for any other text.
std::optional<std::uint64_t> parse_seed(std::string_view text);
/// What parse_seed() takes, for messages.
inline constexpr std::string_view seed_values = "a number below 2^64";

/// Letters, digits, - and _, from 1 to 32 of them.
inline constexpr std::size_t longest_camera_name = 32;
bool is_camera_name(std::string_view name);
/// What is_camera_name() takes, for messages.
inline constexpr std::string_view camera_name_values = "up to 32 letters, digits, - and _";

}  // namespace kelvo::sim

#endif
