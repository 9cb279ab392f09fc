// A simulated camera in the place of the kernel, for as long as it lives. Its clock moves only when
// somebody sleeps, unless the settings say otherwise.
#ifndef KELVO_TESTS_SIM_HOST_INSTALLED_CAMERA_H
#define KELVO_TESTS_SIM_HOST_INSTALLED_CAMERA_H

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "sim/wrapper/camera_host.h"

namespace kelvo::test {

class InstalledCamera {
 public:
  explicit InstalledCamera(std::string_view settings = "clock=sleep");
  ~InstalledCamera();
  InstalledCamera(const InstalledCamera&) = delete;
  InstalledCamera& operator=(const InstalledCamera&) = delete;

  sim::CameraHost& host() { return host_; }
  sim::camera::Camera state() { return host_.camera(); }
  std::chrono::nanoseconds now() { return state().clock.now(); }
  std::int32_t position(sim::camera::Output output);
  /// The camera's report.
  std::string report();

 private:
  sim::CameraHost host_;
};

/// A folder of the test's own, removed with what is in it.
class TestFolder {
 public:
  TestFolder();
  ~TestFolder();
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// While it lives, the machine has no folder for temporary files.
class NoTemporaryFolder {
 public:
  NoTemporaryFolder();
  ~NoTemporaryFolder();
  NoTemporaryFolder(const NoTemporaryFolder&) = delete;
  NoTemporaryFolder& operator=(const NoTemporaryFolder&) = delete;

 private:
  std::optional<std::string> before_;
};

}  // namespace kelvo::test

#endif
