#include "sim/state/shared_settings.h"

#include <algorithm>
#include <charconv>

namespace kelvo::sim {

std::optional<ClockSetting> parse_clock(std::string_view text) {
  if (text == "real") return ClockSetting{};
  if (text == "sleep") return ClockSetting{ClockMode::sleep, 1};
  double speed = 0;
  const char* const end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, speed, std::chars_format::fixed);
  // Written so that what is not a number fails too.
  const bool fits = speed >= ClockSetting::slowest && speed <= ClockSetting::fastest;
  if (error != std::errc{} || behind != end || !fits) return {};
  return ClockSetting{ClockMode::scaled, speed};
}

std::string to_text(const ClockSetting& clock) {
  if (clock.mode == ClockMode::real) return "real";
  if (clock.mode == ClockMode::sleep) return "sleep";
  char text[32];
  const auto [end, error] =
      std::to_chars(text, text + sizeof text, clock.speed, std::chars_format::fixed);
  return {text, end};
}

namespace {

struct ModuleName {
  wire::LensModule module;
  std::string_view name;
};
constexpr ModuleName module_names[] = {{wire::LensModule::de015, "de015"},
                                       {wire::LensModule::df033, "df033"},
                                       {wire::LensModule::t5391, "t5391"}};

}  // namespace

std::optional<wire::LensModule> parse_module(std::string_view text) {
  for (const ModuleName& row : module_names) {
    if (row.name == text) return row.module;
  }
  return {};
}

std::string to_text(wire::LensModule module) {
  for (const ModuleName& row : module_names) {
    if (row.module == module) return std::string(row.name);
  }
  return {};
}

std::optional<std::uint64_t> parse_seed(std::string_view text) {
  std::uint64_t seed = 0;
  const char* const end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, seed);
  if (error != std::errc{} || behind != end) return {};
  return seed;
}

bool is_camera_name(std::string_view name) {
  const auto allowed = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_';
  };
  return !name.empty() && name.size() <= longest_camera_name &&
         std::all_of(name.begin(), name.end(), allowed);
}

}  // namespace kelvo::sim
