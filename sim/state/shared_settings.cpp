#include "sim/state/shared_settings.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace kelvo::sim {
namespace {

// Speeds are read and written without std::from_chars() and std::to_chars(), which need libm.
constexpr std::size_t most_digits = 15;  // a double keeps them

/// Digits, with a point among them or without.
std::optional<double> parse_speed(std::string_view text) {
  std::uint64_t number = 0;
  double scale = 1;
  std::size_t digits = 0;
  bool behind_point = false;
  for (const char letter : text) {
    if (letter == '.' && !behind_point) {
      behind_point = true;
      continue;
    }
    if (letter < '0' || letter > '9' || ++digits > most_digits) return {};
    number = number * 10 + static_cast<std::uint64_t>(letter - '0');
    if (behind_point) scale *= 10;
  }
  if (digits == 0) return {};
  return static_cast<double>(number) / scale;
}

}  // namespace

std::optional<ClockSetting> parse_clock(std::string_view text) {
  if (text == "real") return ClockSetting{};
  if (text == "sleep") return ClockSetting{ClockMode::sleep, 1};
  const std::optional<double> speed = parse_speed(text);
  if (!speed || *speed < ClockSetting::slowest || *speed > ClockSetting::fastest) return {};
  return ClockSetting{ClockMode::scaled, *speed};
}

std::string to_text(const ClockSetting& clock) {
  if (clock.mode == ClockMode::real) return "real";
  if (clock.mode == ClockMode::sleep) return "sleep";
  // As short as it can be read back.
  std::uint64_t scale = 1;
  std::size_t digits = 0;
  const auto scaled = [&] {
    const double product = clock.speed * static_cast<double>(scale);
    const auto below = static_cast<std::uint64_t>(product);
    return product - static_cast<double>(below) < 0.5 ? below : below + 1;
  };
  while (digits < most_digits &&
         static_cast<double>(scaled()) / static_cast<double>(scale) != clock.speed) {
    scale *= 10;
    ++digits;
  }
  std::string whole = std::to_string(scaled() / scale);
  if (digits == 0) return whole;
  const std::string fraction = std::to_string(scaled() % scale);
  return whole + "." + std::string(digits - fraction.size(), '0') + fraction;
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
