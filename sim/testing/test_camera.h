// A simulated camera for tests in C++: in the place of the kernel for its own process, for as long as it
// lives. Link kelvo_testing before libc, and the library under test talks to this camera.
//
//   kelvo::sim::TestCamera camera("head=vetra");
//   EXPECT_EQ(Init30516_DF033(), 0);
//   EXPECT_EQ(camera.state().positions()[...], 250);
//   EXPECT_EQ(camera.violations(), std::vector<std::string>());
#ifndef KELVO_SIM_TESTING_TEST_CAMERA_H
#define KELVO_SIM_TESTING_TEST_CAMERA_H

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/wrapper/camera_host.h"

namespace kelvo::sim {

/// One at a time. The library's own state lasts as long as the process: give each test a process.
class TestCamera {
 public:
  /// Settings as in KELVO_SIM, but that the clock goes only when somebody sleeps unless they say otherwise.
  /// Throws std::invalid_argument, with one line that says what is wrong, for settings that cannot be.
  explicit TestCamera(std::string_view settings = {});
  ~TestCamera();
  TestCamera(const TestCamera&) = delete;
  TestCamera& operator=(const TestCamera&) = delete;

  /// A copy of the camera at this moment: everything in it can be asked for.
  camera::Camera state() { return host_.camera(); }
  std::chrono::nanoseconds now() { return state().clock.now(); }
  /// Where the motor at an output stands, in steps from the middle of its travel.
  std::int32_t position(camera::Output output);
  /// Changes the camera behind the back of the program under test.
  void change(const std::function<void(camera::Camera&)>& act) { host_.change(act); }

  /// What was done against the protocol, a line each: unit, frame, reason.
  std::vector<std::string> violations();
  /// What `kelvo-sim status` and `violations` would show.
  std::string report();

  /// The folder below which the camera's files lie under their own paths.
  const std::filesystem::path& files();

  CameraHost& host() { return host_; }

 private:
  CameraHost host_;
};

}  // namespace kelvo::sim

#endif
