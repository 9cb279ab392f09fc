#include "sim/state/named_camera.h"

#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace kelvo::test {

using sim::SharedCamera;

NamedCamera::NamedCamera() : name_("test-" + std::to_string(getpid())) {
  std::string pattern = (std::filesystem::temp_directory_path() / "kelvo-state-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) std::abort();
  place_ = pattern;
  setenv("XDG_RUNTIME_DIR", place_.c_str(), 1);
}

NamedCamera::~NamedCamera() {
  SharedCamera::remove(name_, sim::Removal::even_in_use);
  std::filesystem::remove_all(place_);
}

std::string NamedCamera::object() const {
  return "/kelvo-sim-" + std::to_string(geteuid()) + "-" + name_;
}

std::filesystem::path NamedCamera::file() const { return "/dev/shm" + object(); }

std::unique_ptr<SharedCamera> NamedCamera::use(const sim::WantedSettings& wanted) {
  sim::OpenedCamera opened = SharedCamera::open_or_make(name_, wanted, sim::Role::program);
  if (opened.camera == nullptr) {
    std::fprintf(stderr, "%s\n", opened.error.c_str());
    std::abort();
  }
  return std::move(opened.camera);
}

std::string NamedCamera::error_of(const sim::WantedSettings& wanted) const {
  return SharedCamera::open_or_make(name_, wanted, sim::Role::program).error;
}

sim::WantedSettings sleep_clock() {
  sim::WantedSettings wanted;
  wanted.clock = sim::ClockSetting{sim::ClockMode::sleep, 1};
  return wanted;
}

Child::Child(const std::function<int()>& act) : process_(fork()) {
  if (process_ < 0) std::abort();
  if (process_ == 0) _exit(act());
}

Child::~Child() {
  if (waited_) return;
  kill();
  wait();
}

void Child::kill() { ::kill(process_, SIGKILL); }

int Child::wait() {
  int status = 0;
  if (waitpid(process_, &status, 0) != process_) std::abort();
  waited_ = true;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace kelvo::test
