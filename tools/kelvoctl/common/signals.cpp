#include "tools/kelvoctl/common/signals.h"

#include <poll.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>

namespace kelvo::ctl {
namespace {

constexpr std::array ending{SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t came = 0;

sigset_t set_of_ending() {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : ending) sigaddset(&set, signal);
  return set;
}

}  // namespace

void hold_signals() {
  // A handler, because the default action would end the process where a wait lets a signal in.
  struct sigaction action {};
  action.sa_handler = [](int signal) { came = signal; };
  for (const int signal : ending) sigaction(signal, &action, nullptr);
  // Whoever no longer reads what is printed does not end a process whose axis moves.
  std::signal(SIGPIPE, SIG_IGN);
  sigset_t set = set_of_ending();
  // A process that is stopped and goes on loses its place in the queue for the bus lock as well.
  sigaddset(&set, SIGTSTP);
  sigprocmask(SIG_BLOCK, &set, nullptr);
}

bool take_signal() { return wait_for_signal(std::chrono::microseconds(0)); }

void end_if_interrupted() {
  if (take_signal()) throw Interrupted("interrupted");
}

bool wait_for_signal(std::chrono::microseconds time) {
  const sigset_t set = set_of_ending();
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  const timespec longest{seconds.count(), std::chrono::nanoseconds(time - seconds).count()};
  return sigtimedwait(&set, nullptr, &longest) > 0;
}

bool wait_for_input(int descriptor) {
  constexpr int none = -1;  // which poll passes over
  return wait_for_input(descriptor, none);
}

bool wait_for_input(int descriptor, int other) {
  sigset_t let_in;
  sigprocmask(SIG_SETMASK, nullptr, &let_in);
  for (const int signal : ending) sigdelset(&let_in, signal);
  std::array<pollfd, 2> waited{{{descriptor, POLLIN, 0}, {other, POLLIN, 0}}};
  came = 0;
  while (ppoll(waited.data(), waited.size(), nullptr, &let_in) < 0) {
    if (errno != EINTR) throw Failure(ExitCode::wrong_arguments, std::strerror(errno));
    if (came != 0) return false;
  }
  return true;
}

int last_signal() { return came; }

}  // namespace kelvo::ctl
