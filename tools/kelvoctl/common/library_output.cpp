#include "tools/kelvoctl/common/library_output.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tools/kelvoctl/common/exit_code.h"

namespace kelvo::ctl {
namespace {

/// A duplicate that no program inherits.
int kept(int descriptor) { return fcntl(descriptor, F_DUPFD_CLOEXEC, 3); }

}  // namespace

LibraryOutput::LibraryOutput()
    : file_(memfd_create("library output", MFD_CLOEXEC)),
      own_output_(kept(STDOUT_FILENO)),
      own_errors_(kept(STDERR_FILENO)) {
  // Before anything is printed, because it has no full effect later. A child's lines shall show at once.
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  if (file_ < 0 || own_output_ < 0 || own_errors_ < 0) {
    throw Failure(ExitCode::no_output, "the library's output cannot be kept apart: " +
                                           std::string(std::strerror(errno)));
  }
}

LibraryOutput::~LibraryOutput() {
  for (const int descriptor : {file_, own_output_, own_errors_}) {
    if (descriptor >= 0) close(descriptor);
  }
}

void LibraryOutput::begin() const {
  std::fflush(stdout);
  dup2(file_, STDOUT_FILENO);
  dup2(file_, STDERR_FILENO);
}

std::string LibraryOutput::end() const {
  std::fflush(stdout);
  dup2(own_output_, STDOUT_FILENO);
  dup2(own_errors_, STDERR_FILENO);
  const off_t size = lseek(file_, 0, SEEK_CUR);
  std::string text(static_cast<std::size_t>(size), '\0');
  const ssize_t got = pread(file_, text.data(), text.size(), 0);
  text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  lseek(file_, 0, SEEK_SET);
  return text;
}

}  // namespace kelvo::ctl
