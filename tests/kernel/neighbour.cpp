#include "kernel/neighbour.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "sim/seam/real.h"

namespace kelvo::test {
namespace {

constexpr int patience = 10;  // seconds

void breathe() {
  const timespec millisecond = {0, 1'000'000};
  sim::real().nanosleep(&millisecond, nullptr);
}

}  // namespace

void limit_waits(int seconds) {
  // A handler, so that the wait is interrupted instead of the process.
  struct sigaction action = {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, nullptr);
  alarm(static_cast<unsigned>(seconds));
}

bool eventually(const std::function<bool()>& holds) {
  for (int i = 0; i < patience * 1000; ++i) {
    if (holds()) return true;
    breathe();
  }
  return holds();
}

Neighbour::Neighbour(const std::function<void(const Tell& tell)>& work) {
  int ends[2];
  if (pipe(ends) != 0) std::abort();
  std::fflush(nullptr);
  process_ = fork();
  if (process_ < 0) std::abort();
  if (process_ == 0) {
    limit_waits(2 * patience);
    work([&](int number) {
      if (write(ends[1], &number, sizeof number) != sizeof number) _exit(2);
    });
    _exit(0);
  }
  sim::real().close(ends[1]);
  line_ = ends[0];
}

Neighbour::~Neighbour() {
  kill();
  sim::real().close(line_);
}

bool Neighbour::has_told() const {
  pollfd line = {line_, POLLIN, 0};
  return poll(&line, 1, 0) == 1 && (line.revents & POLLIN) != 0;
}

std::optional<int> Neighbour::hear() {
  pollfd line = {line_, POLLIN, 0};
  int number = 0;
  if (poll(&line, 1, patience * 1000) != 1) return std::nullopt;
  if (read(line_, &number, sizeof number) != sizeof number) return std::nullopt;
  return number;
}

bool Neighbour::ends() {
  int status = -1;
  const bool ended =
      eventually([&] { return process_ > 0 && waitpid(process_, &status, WNOHANG) == process_; });
  if (ended) process_ = -1;
  return ended && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void Neighbour::kill() {
  if (process_ < 0) return;
  ::kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  process_ = -1;
}

}  // namespace kelvo::test
