#include "script/child.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include "script/transcript.h"
#include "sim/seam/real.h"

// A sanitizer's report must not end in the captured standard error.
extern "C" [[gnu::weak]] void __sanitizer_set_report_fd(void* descriptor);

namespace kelvo::test {
namespace {

constexpr unsigned longest_life = 50;  // seconds

void write_all(int descriptor, const std::string& text) {
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t written = write(descriptor, text.data() + done, text.size() - done);
    if (written < 0) _exit(2);
    done += static_cast<std::size_t>(written);
  }
}

std::string read_all(int descriptor) {
  std::string text;
  char buffer[4096];
  for (;;) {
    const ssize_t got = read(descriptor, buffer, sizeof buffer);
    if (got <= 0) return text;
    text.append(buffer, static_cast<std::size_t>(got));
  }
}

std::string trouble_of(int status) {
  if (WIFSIGNALED(status)) return format("killed by signal %d", WTERMSIG(status));
  return WEXITSTATUS(status) == 0 ? "" : format("exit status %d", WEXITSTATUS(status));
}

}  // namespace

Told in_a_process(const std::function<void(const Tell&)>& work) {
  int ends[2];
  if (pipe(ends) != 0) return {"", "no pipe"};
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child < 0) return {"", "no process"};
  if (child == 0) {
    alarm(longest_life);
    if (__sanitizer_set_report_fd != nullptr) {
      // NOLINTNEXTLINE(performance-no-int-to-ptr): this is how the interface takes a descriptor
      __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<long>(dup(STDERR_FILENO))));
    }
    work([&](const std::string& text) { write_all(ends[1], text); });
    _exit(0);
  }
  sim::real().close(ends[1]);
  const std::string text = read_all(ends[0]);
  sim::real().close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  return {text, trouble_of(status)};
}

}  // namespace kelvo::test
