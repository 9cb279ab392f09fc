#ifndef KELVO_TESTS_SCRIPT_CAPTURE_H
#define KELVO_TESTS_SCRIPT_CAPTURE_H

#include <string>

namespace kelvo::test {

/// Keeps what is written to one standard stream, from construction to destruction.
class Capture {
 public:
  explicit Capture(int descriptor);
  ~Capture();
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;

  /// What has come since the last call.
  std::string take();

  /// Has everything shown in the end, also what was taken: a failed test's own words are in it.
  void show_all() { taken_ = 0; }

 private:
  int descriptor_;
  int original_;
  int kept_;
  long taken_ = 0;
};

}  // namespace kelvo::test

#endif
