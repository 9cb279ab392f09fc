#include "sim/testing/test_camera.h"

#include <memory>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "sim/report/report.h"

namespace kelvo::sim {
namespace {

Settings read(std::string_view text) {
  ParsedSettings parsed = parse_settings(text);
  if (!parsed.error.empty()) throw std::invalid_argument(parsed.error);
  Settings& settings = parsed.settings;
  // A camera with a name keeps the clock that it has.
  const bool open_to_us = settings.name.empty() && !settings.camera.clock;
  if (open_to_us) settings.camera.clock = ClockSetting{ClockMode::sleep, 1};
  return std::move(settings);
}

/// Of the settings that name one.
std::unique_ptr<SharedCamera> open(const Settings& settings) {
  OpenedCamera opened = open_shared(settings);
  if (!opened.error.empty()) throw std::invalid_argument(opened.error);
  return std::move(opened.camera);
}

}  // namespace

TestCamera::TestCamera(std::string_view settings) : host_(read(settings), open(read(settings))) {
  install(&host_);
}

TestCamera::~TestCamera() { install(nullptr); }

std::int32_t TestCamera::position(camera::Output output) {
  return state().positions()[static_cast<std::size_t>(output)];
}

std::vector<std::string> TestCamera::violations() {
  std::vector<std::string> lines;
  const camera::Camera now = state();
  for (const camera::Violation& violation : now.violations().listed()) {
    lines.push_back(std::string(name_of(violation.unit)) + ": " + frame_text(violation) + ": " +
                    violation.reason.data());
  }
  return lines;
}

std::string TestCamera::report() { return sim::report(state(), host_.name()); }

const std::filesystem::path& TestCamera::files() {
  if (const std::error_code error = host_.prepare_files()) {
    throw std::filesystem::filesystem_error("the camera's files", host_.files().folder(), error);
  }
  return host_.files().folder();
}

}  // namespace kelvo::sim
