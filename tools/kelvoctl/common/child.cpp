#include "tools/kelvoctl/common/child.h"

#include <fcntl.h>
#include <sys/timerfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "tools/kelvoctl/common/bus_lock.h"
#include "tools/kelvoctl/common/signals.h"

namespace kelvo::ctl {
namespace {

Failure failure(const std::string& what) {
  return {ExitCode::link_failed, what + ": " + std::strerror(errno)};
}

[[noreturn]] void run_child(int pipe, const std::function<void()>& operation) {
  dup2(pipe, STDOUT_FILENO);
  dup2(pipe, STDERR_FILENO);
  operation();
  std::fflush(stdout);
  _exit(0);
}

/// Hands on what comes from a pipe line by line, until its other end is closed.
class Lines {
 public:
  Lines(int pipe, const std::function<void(const std::string& line)>& on_line)
      : pipe_(pipe), on_line_(on_line) {}

  /// False at the end.
  bool read_some() {
    std::array<char, 4096> bytes{};
    const ssize_t length = ::read(pipe_, bytes.data(), bytes.size());
    if (length <= 0) return false;
    all_.append(bytes.data(), static_cast<std::size_t>(length));
    for (std::size_t end = all_.find('\n', done_); end != std::string::npos;
         end = all_.find('\n', done_)) {
      on_line_(all_.substr(done_, end - done_));
      done_ = end + 1;
    }
    return true;
  }

  const std::string& all() const { return all_; }

 private:
  int pipe_;
  const std::function<void(const std::string& line)>& on_line_;
  std::string all_;
  std::size_t done_ = 0;  // so much has been handed on
};

int wait_for_end(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

void check_end(pid_t child) {
  const int status = wait_for_end(child);
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return;
  const std::string how = WIFSIGNALED(status) ? strsignal(WTERMSIG(status)) : "with an error";
  throw Failure(ExitCode::link_failed, "ended half-way (" + how + "): boot the controller");
}

/// Ticks once a second by real time, whatever clock the camera has.
class Ticks {
 public:
  Ticks() : timer_(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)) {
    const itimerspec second{{1, 0}, {1, 0}};
    timerfd_settime(timer_, 0, &second, nullptr);
  }
  ~Ticks() {
    if (timer_ >= 0) close(timer_);
  }
  Ticks(const Ticks&) = delete;
  Ticks& operator=(const Ticks&) = delete;

  int descriptor() const { return timer_; }
  /// Whether one has come since it was asked.
  bool take() const {
    std::uint64_t number = 0;
    return ::read(timer_, &number, sizeof number) == sizeof number;
  }

 private:
  int timer_;
};

/// What a child waits for in the library is said here, once it has been silent for so long.
void show_waiting(const Session& session, int silent_ticks) {
  constexpr int patient_ticks = 2;
  if (silent_ticks < patient_ticks || !bus_lock_taken()) return;
  session.progress("waiting for the bus lock: " + holder_text(bus_lock_set(bus_lock_key())));
}

/// Hands on what a child prints until it ends. Returns whether somebody wanted the command to end.
bool follow(Session& session, int pipe, Lines& lines) {
  const Ticks ticks;
  int silent_ticks = 0;
  bool interrupted = false;
  while (true) {
    if (wait_for_input(pipe, ticks.descriptor())) {
      if (ticks.take()) {
        show_waiting(session, ++silent_ticks);
        continue;
      }
      silent_ticks = 0;
      if (!lines.read_some()) return interrupted;
    } else if (!interrupted) {
      interrupted = true;
      session.progress("");
      std::fprintf(stderr, "%s: ends as soon as it can without leaving it half-way\n", tool_name);
    }
  }
}

}  // namespace

SharedMemory::SharedMemory(std::size_t size)
    : size_(size),
      address_(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
  if (address_ == MAP_FAILED) throw failure("no memory to share");
}

SharedMemory::~SharedMemory() { munmap(address_, size_); }

bool run_in_child(Session& session, const std::function<void()>& operation,
                  const std::function<void(const std::string& line)>& on_line) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw failure("no pipe");
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) run_child(ends[1], operation);
  close(ends[1]);
  if (child < 0) {
    close(ends[0]);
    throw failure("no process");
  }
  Lines lines(ends[0], on_line);
  bool interrupted = false;
  try {
    interrupted = follow(session, ends[0], lines);
  } catch (...) {
    kill(child, SIGKILL);
    wait_for_end(child);
    close(ends[0]);
    session.progress("");
    session.keep(lines.all());
    throw;
  }
  close(ends[0]);
  session.progress("");
  session.keep(lines.all());
  check_end(child);
  return interrupted;
}

}  // namespace kelvo::ctl
