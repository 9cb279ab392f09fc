// What the commands of one process share: the lens module, what is attached, how results are shown.
//
// The library keeps its state as long as the process lives, so a session is one process: a command
// line, a script or a shell.
#ifndef KELVO_TOOLS_KELVOCTL_COMMON_SESSION_H
#define KELVO_TOOLS_KELVOCTL_COMMON_SESSION_H

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "tools/common/output.h"
#include "tools/kelvoctl/common/bus_lock.h"
#include "tools/kelvoctl/common/exit_code.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/common/library_output.h"
#include "wire/lens_module.h"

namespace kelvo::ctl {

using tools::Json;
using wire::LensModule;

inline constexpr char tool_name[] = "kelvoctl";

/// Grows with every change that a reader of the JSON would have to know.
inline constexpr int json_schema = 1;

struct Modes {
  bool json = false;
  bool verbose = false;                               // the library's own lines on standard error
  bool yes = false;                                   // questions are answered
  std::optional<std::chrono::microseconds> patience;  // with the bus lock
};

/// The line for a motor controller that does not answer, of "pan" or "tilt". `hence` goes on behind the
/// fact: ", and ...".
std::string silence(const std::string& axis, const std::string& hence = "");

class Session {
 public:
  Modes modes;
  /// What --lens gave; KELVO_LENS counts where this is nothing.
  std::optional<LensModule> given_lens;

  /// The lens module that is fitted. Throws a Failure when nobody has said which.
  LensModule lens() const;

  /// Makes the lens controller usable for commands and queries, once: the device is open, the library
  /// knows the module. The controller is not changed. Throws a Failure without a device.
  void attach_lens();
  /// Makes the head usable, once: the device is open, the family is known (1 Vetra, 2 Tasmere). Throws a
  /// Failure while the pan controller is silent.
  int attach_head();
  /// The same, but a silent pan controller is nothing: what needs no family can be done then.
  std::optional<int> find_head();
  /// For what has reset the lens controller or closed a device: the next command attaches anew.
  void detach();

  /// Throws a Failure if the lens link has failed since it was attached: the library sends nothing
  /// then. The next command can try again.
  void check_lens_link();

  /// Calls the library: what it prints goes to printed(), and to standard error with --verbose.
  template <typename Function>
  auto call(Function&& function) {
    output_.begin();
    if constexpr (std::is_void_v<std::invoke_result_t<Function>>) {
      std::forward<Function>(function)();
      keep(output_.end());
    } else {
      auto result = std::forward<Function>(function)();
      keep(output_.end());
      return result;
    }
  }
  /// The same for what takes the bus lock: commands of the lens controller, but no queries. While another
  /// process has the lock nothing is called. Throws a Failure when that takes too long, or Interrupted.
  template <typename Function>
  auto send(Function&& function) {
    // Who takes the lock behind this look is waited for in the library, as long as a transfer takes.
    await_bus_lock();
    return call(std::forward<Function>(function));
  }
  /// For what calls the library by itself, before it begins.
  void await_bus_lock();
  /// The command that begins waits for the bus lock so long at most, unless --patience is shorter.
  void limit_patience(std::chrono::microseconds time) {
    patience_left_ = std::min(patience_left_, time);
  }
  void begin_command();

  /// What the library printed in the last call.
  const std::string& printed() const { return printed_; }
  /// Takes what a library call in another process printed.
  void keep(std::string text);

  /// Sleeps on the camera's clock. Throws Interrupted when somebody wants the command to end.
  void sleep(std::chrono::microseconds time) const;

  /// Something has been set in motion, and may be for longer than its command. `stop` ends that, if it still
  /// moves, and says so; otherwise nothing.
  void set_in_motion(const std::string& name, std::function<std::string()> stop);
  /// What has just been stopped, or cannot be.
  void forget_motion(const std::string& name) { in_motion_.erase(name); }
  /// Stops whatever still moves, after Ctrl-C, and says so.
  std::string stop_motion();

  /// Goes on after a yes. Throws a Failure for a no, and where there is nobody to ask.
  void confirm(const std::string& question) const;

  /// Whether progress is shown: standard error is a terminal.
  bool shows_progress() const;
  /// Shows a line in place of the last one; an empty one takes it away.
  void progress(const std::string& line) const;

  /// The command ends with a failure, but its result is printed first. The first one counts.
  void complain(ExitCode code, const std::string& line);
  /// Throws what was complained of.
  void end_command();

 private:
  LibraryOutput output_;
  std::string printed_;
  bool lens_attached_ = false;
  int head_family_ = 0;
  std::chrono::microseconds patience_left_ = lock_patience;  // of the command
  std::optional<Failure> complaint_;
  std::map<std::string, std::function<std::string()>> in_motion_;  // by name, how to stop it
};

/// A line of progress, which is taken away however a wait ends.
class Progress {
 public:
  explicit Progress(const Session& session) : session_(session) {}
  ~Progress() { session_.progress(""); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  void show(const std::string& line) const { session_.progress(line); }

 private:
  const Session& session_;
};

/// Something that takes time and can be stopped.
struct Wait {
  std::string what;                   // "zoom1 moves", for the line of a time-out
  std::chrono::microseconds timeout;  // by the camera's clock
  std::function<bool()> over;         // asked every `pause`
  std::function<std::string()> stop;  // after Ctrl-C: stops it, and says so
  std::chrono::microseconds pause = std::chrono::milliseconds(20);
};

/// Waits until it is over and returns the time that it took. Throws a Failure after the time-out, without
/// stopping it, and Interrupted after Ctrl-C, when it has been stopped.
std::chrono::microseconds wait_until_over(const Session& session, const Wait& wait);

}  // namespace kelvo::ctl

#endif
