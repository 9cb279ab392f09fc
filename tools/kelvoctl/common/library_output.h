#ifndef KELVO_TOOLS_KELVOCTL_COMMON_LIBRARY_OUTPUT_H
#define KELVO_TOOLS_KELVOCTL_COMMON_LIBRARY_OUTPUT_H

#include <string>

namespace kelvo::ctl {

/// What the library prints during a call, on either stream, kept apart from the tool's own.
class LibraryOutput {
 public:
  LibraryOutput();
  ~LibraryOutput();
  LibraryOutput(const LibraryOutput&) = delete;
  LibraryOutput& operator=(const LibraryOutput&) = delete;

  void begin() const;
  /// What was printed since then.
  std::string end() const;

 private:
  int file_;
  int own_output_;
  int own_errors_;
};

}  // namespace kelvo::ctl

#endif
