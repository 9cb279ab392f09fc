// A camera with a name of the test's own, and other processes that use it.
#ifndef KELVO_TESTS_SIM_STATE_NAMED_CAMERA_H
#define KELVO_TESTS_SIM_STATE_NAMED_CAMERA_H

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "sim/state/shared_camera.h"

namespace kelvo::test {

/// While it lives, private folders lie in a place of the test's own. No camera is left behind.
class NamedCamera {
 public:
  NamedCamera();
  ~NamedCamera();
  NamedCamera(const NamedCamera&) = delete;
  NamedCamera& operator=(const NamedCamera&) = delete;

  const std::string& name() const { return name_; }
  /// The shared memory's own name, and its file.
  std::string object() const;
  std::filesystem::path file() const;
  const std::filesystem::path& place() const { return place_; }

  /// Opens it, or makes it; an error ends the test.
  std::unique_ptr<sim::SharedCamera> use(const sim::WantedSettings& wanted = {});
  std::string error_of(const sim::WantedSettings& wanted = {}) const;

 private:
  std::string name_;
  std::filesystem::path place_;
};

/// A clock that goes only when somebody sleeps.
sim::WantedSettings sleep_clock();

/// Another process, forked. Its exit code is what it returns.
class Child {
 public:
  explicit Child(const std::function<int()>& act);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  pid_t process() const { return process_; }
  void kill();
  /// Its exit code, or the negative number of the signal that ended it.
  int wait();

 private:
  pid_t process_;
  bool waited_ = false;
};

}  // namespace kelvo::test

#endif
