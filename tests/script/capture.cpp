#include "script/capture.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "sim/seam/real.h"

namespace kelvo::test {
namespace {

[[noreturn]] void give_up(const char* what) {
  std::perror(what);
  std::abort();
}

}  // namespace

Capture::Capture(int descriptor)
    : descriptor_(descriptor),
      original_(dup(descriptor)),
      kept_(memfd_create("captured", MFD_CLOEXEC)) {
  std::fflush(nullptr);
  if (original_ < 0 || kept_ < 0 || dup2(kept_, descriptor_) < 0) give_up("capture");
}

Capture::~Capture() {
  std::fflush(nullptr);
  const std::string rest = take();
  dup2(original_, descriptor_);
  // What nobody asked for belongs to the test's reader (a failure's message, for one).
  if (!rest.empty() && write(descriptor_, rest.data(), rest.size()) < 0) give_up("write");
  sim::real().close(original_);
  sim::real().close(kept_);
}

std::string Capture::take() {
  // Only the streams that are captured: whether the library flushes its files is for tests to see.
  std::fflush(stdout);
  std::fflush(stderr);
  std::string text;
  char buffer[4096];
  for (;;) {
    const ssize_t got = pread(kept_, buffer, sizeof buffer, taken_);
    if (got <= 0) return text;
    text.append(buffer, static_cast<std::size_t>(got));
    taken_ += got;
  }
}

}  // namespace kelvo::test
