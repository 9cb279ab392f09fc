#ifndef KELVO_SIM_LENS_RESET_LINE_H
#define KELVO_SIM_LENS_RESET_LINE_H

#include <optional>
#include <string_view>

namespace kelvo::sim::camera {

/// The GPIO line that resets the lens controller, behind the kernel's sysfs files.
///
/// A line that nobody drives is pulled up. Writing "out" drives it low at once.
class ResetLine {
 public:
  /// Wait status of a shell command whose write the kernel refuses.
  static constexpr int refused = 256;

  /// Runs "echo VALUE > FILE"; the wait status of the shell, or nothing for any other command.
  std::optional<int> run(std::string_view command);

  bool high() const { return !driven_ || high_; }

 private:
  int export_line(std::string_view number);
  int set_direction(std::string_view direction);
  int set_value(std::string_view value);

  bool exported_ = false;
  bool driven_ = false;
  bool high_ = false;
};

}  // namespace kelvo::sim::camera

#endif
