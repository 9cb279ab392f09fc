#ifndef KELVO_TOOLS_KELVOCTL_COMMON_RESULTS_H
#define KELVO_TOOLS_KELVOCTL_COMMON_RESULTS_H

#include <string>

#include "tools/common/output.h"

namespace kelvo::ctl {

/// A result as text: its plain members as lines of name and value, then each list of objects as a table
/// with a column for each member. Null is shown as -, underlines of names as blanks.
std::string result_text(const tools::Json& result);

/// A result as JSON, with the number of the schema and the command before its own members.
std::string result_json(const std::string& command, const tools::Json& result);

}  // namespace kelvo::ctl

#endif
