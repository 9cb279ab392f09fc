#ifndef KELVO_TOOLS_KELVOCTL_COMMON_WORDS_H
#define KELVO_TOOLS_KELVOCTL_COMMON_WORDS_H

#include <string>
#include <string_view>
#include <vector>

namespace kelvo::ctl {

constexpr std::string_view blanks = " \t\r";

/// The words of a line of a script. Blanks part them; quotes, double or single, and a backslash keep them
/// together; # begins a comment. Throws a Failure when a quote is not closed.
std::vector<std::string> words_of(std::string_view line);

}  // namespace kelvo::ctl

#endif
