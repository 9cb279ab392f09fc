#ifndef KELVO_TOOLS_COMMON_FAILURE_H
#define KELVO_TOOLS_COMMON_FAILURE_H

#include <stdexcept>
#include <string>

#include "tools/common/exit_code.h"

namespace kelvo::tools {

/// Ends a command: one line that says what, where and what to do.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& line) : std::runtime_error(line), code_(code) {}
  ExitCode code() const { return code_; }

 private:
  ExitCode code_;
};

}  // namespace kelvo::tools

#endif
