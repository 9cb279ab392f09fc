#include "tools/kelvoctl/common/child.h"

#include <fcntl.h>
#include <sys/timerfd.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <span>

#include "tools/kelvoctl/common/bus_lock.h"
#include "tools/kelvoctl/common/signals.h"

namespace kelvo::ctl {
namespace {

Failure failure(const std::string& what) {
  return {ExitCode::link_failed, what + ": " + std::strerror(errno)};
}

class Pipe {
 public:
  Pipe() {
    if (pipe2(ends_.data(), O_CLOEXEC) != 0) throw failure("no pipe");
  }
  ~Pipe() {
    close_read_end();
    close_write_end();
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int read_end() const { return ends_[0]; }
  int write_end() const { return ends_[1]; }
  void close_read_end() { close_end(ends_[0]); }
  void close_write_end() { close_end(ends_[1]); }

 private:
  static void close_end(int& end) {
    if (end >= 0) close(end);
    end = -1;
  }

  std::array<int, 2> ends_{};
};

/// Between a child and whoever follows it.
struct Channel {
  Pipe printed;
  Pipe answers;
};

/// Stands behind what a child in step prints: it waits for an answer, which says that all of it has been taken.
constexpr char question = '\0';
constexpr char answer = '!';

/// It never fails: whoever no longer reads does not end the operation.
ssize_t print_and_wait(void* cookie, const char* bytes, std::size_t size) {
  const Channel& channel = *static_cast<const Channel*>(cookie);
  const std::array<iovec, 2> parts{
      {{const_cast<char*>(bytes), size}, {const_cast<char*>(&question), 1}}};
  char taken = 0;
  if (writev(channel.printed.write_end(), parts.data(), parts.size()) > 0) {
    [[maybe_unused]] const ssize_t length = ::read(channel.answers.read_end(), &taken, 1);
  }
  return static_cast<ssize_t>(size);
}

/// From here on each line of the library waits. What a shell prints for it just goes along.
void print_in_step(Channel& channel) {
  FILE* const waiting = fopencookie(&channel, "w", {nullptr, print_and_wait, nullptr, nullptr});
  if (waiting == nullptr) _exit(1);
  std::setvbuf(waiting, nullptr, _IOLBF, BUFSIZ);
  stdout = waiting;
  stderr = waiting;
}

[[noreturn]] void run_child(Channel& channel, const std::function<void()>& operation, Pace pace) {
  channel.printed.close_read_end();
  channel.answers.close_write_end();
  dup2(channel.printed.write_end(), STDOUT_FILENO);
  dup2(channel.printed.write_end(), STDERR_FILENO);
  if (pace == Pace::in_step) print_in_step(channel);
  operation();
  std::fflush(stdout);
  _exit(0);
}

/// Hands on what comes from a child line by line, until its other end is closed.
class Lines {
 public:
  Lines(const Channel& channel, const std::function<void(const std::string& line)>& on_line)
      : channel_(channel), on_line_(on_line) {}

  /// False at the end.
  bool read_some() {
    std::array<char, 4096> bytes{};
    const ssize_t length = ::read(channel_.printed.read_end(), bytes.data(), bytes.size());
    if (length <= 0) return false;
    for (const char byte : std::span(bytes).first(static_cast<std::size_t>(length))) take(byte);
    return true;
  }

  const std::string& all() const { return all_; }

 private:
  void take(char byte) {
    if (byte == question) {
      // A child that has died since does not read it.
      [[maybe_unused]] const ssize_t length = ::write(channel_.answers.write_end(), &answer, 1);
      return;
    }
    all_ += byte;
    if (byte != '\n') return;
    on_line_(all_.substr(line_, all_.size() - 1 - line_));
    line_ = all_.size();
  }

  const Channel& channel_;
  const std::function<void(const std::string& line)>& on_line_;
  std::string all_;
  std::size_t line_ = 0;  // where the last one begins
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
                  const std::function<void(const std::string& line)>& on_line, Pace pace) {
  Channel channel;
  std::fflush(stdout);
  const pid_t child = fork();
  if (child < 0) throw failure("no process");
  if (child == 0) run_child(channel, operation, pace);
  channel.printed.close_write_end();
  channel.answers.close_read_end();
  Lines lines(channel, on_line);
  bool interrupted = false;
  try {
    interrupted = follow(session, channel.printed.read_end(), lines);
  } catch (...) {
    kill(child, SIGKILL);
    wait_for_end(child);
    session.progress("");
    session.keep(lines.all());
    throw;
  }
  session.progress("");
  session.keep(lines.all());
  check_end(child);
  return interrupted;
}

}  // namespace kelvo::ctl
