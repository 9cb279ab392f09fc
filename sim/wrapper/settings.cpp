#include "sim/wrapper/settings.h"

#include <array>
#include <charconv>
#include <set>

#include "sim/fault/fault_table.h"
#include "sim/fault/parse.h"
#include "sim/lens/boot_loader.h"

namespace kelvo::sim {
namespace {

bool read_name(std::string_view value, Settings& settings) {
  settings.name = value;
  return is_camera_name(value);
}

bool read_clock(std::string_view value, Settings& settings) {
  settings.camera.clock = parse_clock(value);
  return settings.camera.clock.has_value();
}

bool read_files(std::string_view value, Settings& settings) {
  settings.camera.files = value;
  return !value.empty();
}

/// Numbers from 1 on, joined by "+".
bool read_corrupt(std::string_view value, Settings& settings) {
  std::vector<std::uint32_t>& numbers = settings.camera.corrupt.emplace();
  const char* place = value.data();
  const char* const end = place + value.size();
  while (true) {
    std::uint32_t number = 0;
    const auto [behind, error] = std::from_chars(place, end, number);
    if (error != std::errc{} || number == 0) return false;
    numbers.push_back(number);
    if (behind == end) return numbers.size() <= camera::BootLoader::most_corrupt_downloads;
    if (*behind != '+') return false;
    place = behind + 1;
  }
}

bool read_head(std::string_view value, Settings& settings) {
  settings.camera.head = value == "vetra" ? wire::HeadFamily::vetra : wire::HeadFamily::tasmere;
  return value == "vetra" || value == "tasmere";
}

bool read_module(std::string_view value, Settings& settings) {
  settings.camera.module = parse_module(value);
  return settings.camera.module.has_value();
}

bool read_seed(std::string_view value, Settings& settings) {
  settings.camera.seed = parse_seed(value);
  return settings.camera.seed.has_value();
}

bool read_fault(std::string_view value, Settings& settings) {
  const fault::ParsedFault parsed = fault::parse(value);
  settings.faults.push_back(parsed.fault);
  return parsed.error.empty() && settings.faults.size() <= fault::FaultTable::capacity;
}

/// A fault has too many ways to be wrong for one line about what it takes.
std::string why_no_fault(std::string_view value) {
  const std::string error = fault::parse(value).error;
  return error.empty() ? fault::table_is_full : error;
}

bool read_report(std::string_view value, Settings& settings) {
  settings.report = value == "none" ? ReportMode::none : ReportMode::text;
  return value == "none" || value == "text";
}

bool read_report_file(std::string_view value, Settings& settings) {
  settings.report_file = value;
  return !value.empty();
}

bool read_real(std::string_view value, Settings& settings) {
  settings.real = value;
  return !value.empty();
}

bool read_violations(std::string_view value, Settings& settings) {
  settings.violations = value == "fatal" ? ViolationMode::fatal : ViolationMode::listed;
  return value == "fatal" || value == "listed";
}

struct Setting {
  std::string_view name;
  std::string_view values;
  bool (*read)(std::string_view value, Settings& settings);
  std::string (*why_not)(std::string_view value) = nullptr;  // of one that may be repeated
};

constexpr std::array settings_table{
    Setting{"name", camera_name_values, read_name},
    Setting{"clock", clock_values, read_clock},
    Setting{"files", "a folder", read_files},
    Setting{"corrupt", "up to 16 numbers of program downloads from 1, joined by + (corrupt=1+4)",
            read_corrupt},
    Setting{"head", "tasmere or vetra", read_head},
    Setting{"module", module_values, read_module},
    Setting{"seed", seed_values, read_seed},
    Setting{"fault", "a fault with : between its words (fault=spi:command=62:error=EIO)",
            read_fault, why_no_fault},
    Setting{"report", "none or text", read_report},
    Setting{"report-file", "a file", read_report_file},
    Setting{"real", "the name of a recording", read_real},
    Setting{"violations", "listed or fatal", read_violations},
};
static_assert(camera::BootLoader::most_corrupt_downloads == 16);

std::string quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

std::string all_names() {
  std::string names;
  for (const Setting& setting : settings_table) {
    if (!names.empty()) names += ", ";
    names += setting.name;
  }
  return names;
}

/// Reads one word; what is wrong with it, or nothing.
std::string read_word(std::string_view word, std::set<std::string_view>& seen, Settings& settings) {
  const std::size_t equals = word.find('=');
  const std::string_view name = word.substr(0, equals);
  for (const Setting& setting : settings_table) {
    if (setting.name != name) continue;
    if (equals == std::string_view::npos) {
      return quoted(name) + " has no value: write " + std::string(name) + "= and " +
             std::string(setting.values);
    }
    const std::string_view value = word.substr(equals + 1);
    if (!seen.insert(name).second && setting.why_not == nullptr) {
      return quoted(name) + " is given twice";
    }
    if (setting.read(value, settings)) return {};
    return quoted(name) + " cannot be " + quoted(value) + ": " +
           (setting.why_not != nullptr ? setting.why_not(value)
                                       : "it takes " + std::string(setting.values));
  }
  return "there is no setting " + quoted(name) + ": there are " + all_names();
}

}  // namespace

ParsedSettings parse_settings(std::string_view text) {
  constexpr std::string_view separators = " \t\n,";
  ParsedSettings parsed;
  std::set<std::string_view> seen;
  std::size_t begin = text.find_first_not_of(separators);
  while (begin != std::string_view::npos) {
    const std::size_t end = std::min(text.find_first_of(separators, begin), text.size());
    const std::string error = read_word(text.substr(begin, end - begin), seen, parsed.settings);
    if (!error.empty()) {
      parsed.error = std::string(settings_variable) + ": " + error;
      return parsed;
    }
    begin = text.find_first_not_of(separators, end);
  }
  if (!parsed.settings.real.empty() && seen.size() > 1) {
    parsed.error = std::string(settings_variable) +
                   ": \"real\" goes without any other setting: no camera is simulated";
  }
  const bool shared = !parsed.settings.name.empty();
  if (shared && !seen.contains("report")) parsed.settings.report = ReportMode::none;
  return parsed;
}

}  // namespace kelvo::sim
