#include "sim/host/installed_camera.h"

#include <stdlib.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

#include "sim/report/report.h"

namespace kelvo::test {
namespace {

sim::Settings parsed(std::string_view text) {
  const sim::ParsedSettings settings = sim::parse_settings(text);
  if (!settings.error.empty()) {
    std::fprintf(stderr, "%s\n", settings.error.c_str());
    std::abort();
  }
  return settings.settings;
}

/// Whoever asks for a shared camera by a name gets it, or the test ends.
std::unique_ptr<sim::SharedCamera> opened(const sim::Settings& settings) {
  sim::OpenedCamera shared = sim::open_shared(settings);
  if (!shared.error.empty()) {
    std::fprintf(stderr, "%s\n", shared.error.c_str());
    std::abort();
  }
  return std::move(shared.camera);
}

}  // namespace

InstalledCamera::InstalledCamera(std::string_view settings)
    : host_(parsed(settings), opened(parsed(settings))) {
  sim::install(&host_);
}

InstalledCamera::~InstalledCamera() { sim::install(nullptr); }

std::int32_t InstalledCamera::position(sim::camera::Output output) {
  return state().positions()[static_cast<std::size_t>(output)];
}

std::string InstalledCamera::report() { return sim::report(state(), host_.name()); }

TestFolder::TestFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "kelvo-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) std::abort();
  path_ = pattern;
}

TestFolder::~TestFolder() { std::filesystem::remove_all(path_); }

NoTemporaryFolder::NoTemporaryFolder() {
  if (const char* const folder = getenv("TMPDIR")) before_ = folder;
  setenv("TMPDIR", "/no/such/folder", 1);
}

NoTemporaryFolder::~NoTemporaryFolder() {
  if (before_) {
    setenv("TMPDIR", before_->c_str(), 1);
  } else {
    unsetenv("TMPDIR");
  }
}

}  // namespace kelvo::test
