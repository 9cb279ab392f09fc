#include "tools/kelvoctl/common/session.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kelvo.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/common/signals.h"
#include "wire/pan_tilt.h"
#include "wire/pan_tilt_registers.h"
#include "wire/paths.h"

namespace kelvo::ctl {
namespace {

using std::chrono::microseconds;

constexpr useconds_t family_pause = 2'000;  // between two transfers, before the family is known

/// Throws a Failure for a device that cannot be opened: the library does not say why.
void require_device(const char* path) {
  const int descriptor = open(path, O_RDWR | O_CLOEXEC);
  if (descriptor < 0) {
    throw Failure(ExitCode::no_device, std::string(path) + ": " + std::strerror(errno) + ": see " +
                                           tool_name + " doctor");
  }
  close(descriptor);
}

}  // namespace

std::string silence(const std::string& axis, const std::string& hence) {
  return std::string(wire::pan_tilt_device) + ": the " + axis + " controller does not answer" +
         hence + ": see whether it has power";
}

LensModule Session::lens() const {
  if (given_lens) return *given_lens;
  const char* const text = std::getenv(lens_variable);
  if (text == nullptr || *text == '\0') {
    throw Failure(ExitCode::wrong_arguments, "which lens module is fitted? Say so with --lens " +
                                                 lens_names() + ", or set " + lens_variable);
  }
  const std::optional<LensModule> module = lens_of(text);
  if (module) return *module;
  throw Failure(ExitCode::wrong_arguments, std::string(lens_variable) + ": \"" + text +
                                               "\" is no lens module: write " + lens_names());
}

void Session::attach_lens() {
  const LensModule module = lens();
  const bool failed = call([] { return GetLensType(); }) < 0;
  if (lens_attached_ && !failed) return;
  require_device(wire::lens_controller_device);
  call([module] {
    SetLensType(static_cast<std::int32_t>(module));
    return InitSPI();
  });
  lens_attached_ = true;
}

int Session::attach_head() {
  if (const std::optional<int> family = find_head()) return *family;
  throw Failure(ExitCode::link_failed, silence("pan"));
}

std::optional<int> Session::find_head() {
  if (head_family_ != 0) return head_family_;
  require_device(wire::pan_tilt_device);
  call([] {
    Release_I2C();
    return Init_I2C();
  });
  // The library takes silence for an answer, once and for good.
  std::array<std::uint8_t, 2> signature{};
  const int silent = call([&] {
    return ReadI2C(wire::pan_slave, wire::vetra::family, signature.data(), signature.size());
  });
  usleep(family_pause);
  if (silent != 0) return {};
  head_family_ = call([] { return GetMotorType(); });
  return head_family_;
}

void Session::detach() {
  lens_attached_ = false;
  head_family_ = 0;
}

void Session::check_lens_link() {
  if (call([] { return GetLensType(); }) >= 0) return;
  throw Failure(ExitCode::link_failed,
                std::string(wire::lens_controller_device) +
                    ": a transfer failed: see whether the controller has power, and boot it");
}

void Session::keep(std::string text) {
  printed_ = std::move(text);
  if (!modes.verbose || printed_.empty()) return;
  std::fputs(printed_.c_str(), stderr);
  if (printed_.back() != '\n') std::fputc('\n', stderr);
}

void Session::begin_command() { patience_left_ = modes.patience.value_or(lock_patience); }

void Session::await_bus_lock() {
  const auto begun = std::chrono::steady_clock::now();
  std::optional<Progress> line;
  try {
    wait_for_bus_lock(patience_left_, [&](const std::string& text) {
      if (!line) line.emplace(*this);
      line->show(text);
    });
  } catch (const Failure&) {
    // What stops a motor, or puts things right, does not wait as long once more.
    const auto waited = std::chrono::steady_clock::now() - begun;
    patience_left_ -= std::min(patience_left_, std::chrono::duration_cast<microseconds>(waited));
    throw;
  }
}

void Session::sleep(microseconds time) const {
  constexpr microseconds longest = std::chrono::milliseconds(20);
  while (time.count() > 0) {
    end_if_interrupted();
    const microseconds slice = std::min(time, longest);
    usleep(static_cast<useconds_t>(slice.count()));
    time -= slice;
  }
  end_if_interrupted();
}

void Session::set_in_motion(const std::string& name, std::function<std::string()> stop) {
  in_motion_[name] = std::move(stop);
}

std::string Session::stop_motion() {
  std::string all;
  for (const auto& [name, stop] : std::exchange(in_motion_, {})) {
    const std::string stopped = stop();
    if (!stopped.empty()) all += (all.empty() ? "" : "; ") + stopped;
  }
  return all;
}

bool Session::shows_progress() const { return isatty(STDERR_FILENO) != 0; }

void Session::progress(const std::string& line) const {
  if (!shows_progress()) return;
  // To the first column, and clear what stands there.
  std::fprintf(stderr, "\r\x1b[K%s", line.c_str());
  std::fflush(stderr);
}

void Session::confirm(const std::string& question) const {
  if (modes.yes) return;
  if (isatty(STDIN_FILENO) == 0 || isatty(STDERR_FILENO) == 0) {
    throw Failure(ExitCode::refused, question + " There is no terminal to ask: say so with -y");
  }
  std::fprintf(stderr, "%s [y/N] ", question.c_str());
  std::fflush(stderr);
  std::array<char, 256> answer{};
  if (!wait_for_input(STDIN_FILENO)) {
    std::fputc('\n', stderr);
    throw Interrupted("interrupted: nothing was done");
  }
  const ssize_t length = ::read(STDIN_FILENO, answer.data(), answer.size() - 1);
  const std::string word(answer.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
  if (word == "y\n" || word == "Y\n" || word == "yes\n") return;
  throw Failure(ExitCode::refused, "not confirmed: nothing was done");
}

void Session::complain(ExitCode code, const std::string& line) {
  if (!complaint_) complaint_.emplace(code, line);
}

void Session::end_command() {
  const std::optional<Failure> complaint = std::exchange(complaint_, std::nullopt);
  if (complaint) throw Failure(*complaint);
}

namespace {

/// The time that passes for the camera while somebody waits for it.
class Waiting {
 public:
  void sleep(const Session& session, microseconds time) {
    const auto before = std::chrono::steady_clock::now();
    session.sleep(time);
    slept_ += time;
    // No sleep is shorter than it was asked for, unless the camera has a clock of its own.
    if (std::chrono::steady_clock::now() - before < time) own_clock_ = true;
  }

  microseconds passed() const {
    const auto real = std::chrono::steady_clock::now() - begun_;
    return own_clock_ ? slept_ : std::chrono::duration_cast<microseconds>(real);
  }

 private:
  std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
  microseconds slept_{0};
  bool own_clock_ = false;
};

}  // namespace

microseconds wait_until_over(const Session& session, const Wait& wait) {
  Waiting waiting;
  try {
    while (!wait.over()) {
      if (waiting.passed() >= wait.timeout) {
        throw Failure(ExitCode::time_out, wait.what + " for longer than the time-out");
      }
      waiting.sleep(session, wait.pause);
    }
    return waiting.passed();
  } catch (const Interrupted&) {
    throw Interrupted("interrupted: " + wait.stop());
  }
}

}  // namespace kelvo::ctl
