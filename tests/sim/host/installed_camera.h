// What the tests with a camera behind the seam share.
#ifndef KELVO_TESTS_SIM_HOST_INSTALLED_CAMERA_H
#define KELVO_TESTS_SIM_HOST_INSTALLED_CAMERA_H

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "sim/testing/test_camera.h"

namespace kelvo::test {

using InstalledCamera = sim::TestCamera;

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
