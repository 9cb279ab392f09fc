// Lines that somebody types, or that come from elsewhere.
#ifndef KELVO_TOOLS_KELVOCTL_PROMPT_LINE_READER_H
#define KELVO_TOOLS_KELVOCTL_PROMPT_LINE_READER_H

#include <memory>
#include <optional>
#include <string>

namespace kelvo::ctl {

class LineReader {
 public:
  LineReader() = default;
  virtual ~LineReader() = default;
  LineReader(const LineReader&) = delete;
  LineReader& operator=(const LineReader&) = delete;

  /// The next line; nothing at the end. Throws Interrupted when a signal came first: the line that was
  /// begun is lost.
  virtual std::optional<std::string> next() = 0;
};

/// Reads standard input as it comes, with a prompt or without.
std::unique_ptr<LineReader> make_plain_reader(bool prompt);

/// Reads a terminal, with history and completion. Only where the build has line editing.
std::unique_ptr<LineReader> make_editor();

inline constexpr char prompt_text[] = "kelvoctl> ";

}  // namespace kelvo::ctl

#endif
