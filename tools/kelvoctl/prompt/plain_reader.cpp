#include <unistd.h>

#include <array>
#include <cstdio>
#include <utility>

#include "tools/kelvoctl/common/signals.h"
#include "tools/kelvoctl/prompt/line_reader.h"

namespace kelvo::ctl {
namespace {

class PlainReader : public LineReader {
 public:
  explicit PlainReader(bool prompt) : prompt_(prompt) {}

  std::optional<std::string> next() override {
    if (prompt_) {
      std::fputs(prompt_text, stderr);
      std::fflush(stderr);
    }
    while (waiting_.find('\n') == std::string::npos) {
      if (!read_some()) return rest();
    }
    const std::size_t end = waiting_.find('\n');
    std::string line = waiting_.substr(0, end);
    waiting_.erase(0, end + 1);
    return line;
  }

 private:
  bool read_some() {
    if (!wait_for_input(STDIN_FILENO)) {
      leave_line();
      waiting_.clear();
      throw Interrupted("interrupted");
    }
    std::array<char, 4096> part{};
    const ssize_t length = ::read(STDIN_FILENO, part.data(), part.size());
    if (length <= 0) return false;
    waiting_.append(part.data(), static_cast<std::size_t>(length));
    return true;
  }

  /// A last line may lack its end.
  std::optional<std::string> rest() {
    if (!waiting_.empty()) return std::exchange(waiting_, "");
    leave_line();
    return {};
  }

  /// Whatever comes next does not stand behind the prompt.
  void leave_line() const {
    if (prompt_) std::fputc('\n', stderr);
  }

  bool prompt_;
  std::string waiting_;
};

}  // namespace

std::unique_ptr<LineReader> make_plain_reader(bool prompt) {
  return std::make_unique<PlainReader>(prompt);
}

}  // namespace kelvo::ctl
