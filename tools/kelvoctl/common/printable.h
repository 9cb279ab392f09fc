#ifndef KELVO_TOOLS_KELVOCTL_COMMON_PRINTABLE_H
#define KELVO_TOOLS_KELVOCTL_COMMON_PRINTABLE_H

#include <string>
#include <string_view>

namespace kelvo::ctl {

/// What came from arguments and files, for a terminal and in one line: control characters as \x1B. Of a very
/// long text the middle is left out.
std::string printable(std::string_view text);

/// One line on standard error, behind the tool's name.
void print_error(std::string_view line);

}  // namespace kelvo::ctl

#endif
