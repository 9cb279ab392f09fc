#ifndef KELVO_TOOLS_COMMON_FAILURE_H
#define KELVO_TOOLS_COMMON_FAILURE_H

#include <stdexcept>
#include <string>

#include "tools/common/exit_code.h"

namespace kelvo::tools {

/// Ends a command: one line that says what, where and what to do. The code is one of the tool's own table.
class Failure : public std::runtime_error {
 public:
  template <typename Code>
  Failure(Code code, const std::string& line)
      : std::runtime_error(line), code_(static_cast<int>(code)) {}
  int code() const { return code_; }

 private:
  int code_;
};

/// A result could not be written.
class OutputFailure : public Failure {
 public:
  explicit OutputFailure(const std::string& line) : Failure(ExitCode::no_output, line) {}
};

}  // namespace kelvo::tools

#endif
