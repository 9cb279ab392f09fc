#include "tools/kelvoctl/common/file_content.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "tools/kelvoctl/common/exit_code.h"
#include "tools/kelvoctl/common/signals.h"

namespace kelvo::ctl {
namespace {

constexpr std::size_t largest = 16UL << 20U;  // no file that the tool reads comes near

/// Standard input, or a file. Nobody waits while it is opened: a pipe may have no writer yet.
class Source {
 public:
  explicit Source(const std::string& path)
      : path_(path),
        descriptor_(path == "-" ? STDIN_FILENO
                                : open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    if (descriptor_ < 0) fail(std::strerror(errno));
  }
  ~Source() {
    if (descriptor_ > STDIN_FILENO) close(descriptor_);
  }
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  std::string content() const {
    std::string content;
    while (read_some(content)) {
      if (content.size() > largest) fail("more than 16 MiB");
    }
    return content;
  }

 private:
  /// False at the end.
  bool read_some(std::string& content) const {
    if (!wait_for_input(descriptor_)) throw Interrupted("interrupted");
    std::array<char, 65536> part{};
    const ssize_t length = read(descriptor_, part.data(), part.size());
    if (length < 0 && errno != EAGAIN) fail(std::strerror(errno));
    if (length > 0) content.append(part.data(), static_cast<std::size_t>(length));
    return length != 0;
  }

  [[noreturn]] void fail(const std::string& what) const {
    throw Failure(ExitCode::wrong_arguments, path_ + ": " + what);
  }

  std::string path_;
  int descriptor_;
};

}  // namespace

std::string content_of(const std::string& path) { return Source(path).content(); }

}  // namespace kelvo::ctl
