#ifndef KELVO_TOOLS_KELVOCTL_PROMPT_HISTORY_FILE_H
#define KELVO_TOOLS_KELVOCTL_PROMPT_HISTORY_FILE_H

#include <string>

namespace kelvo::ctl {

/// Names the shell's history file; empty there is none.
inline constexpr char history_variable[] = "KELVOCTL_HISTORY";

/// Where the shell's history lies, with its folder made; empty where there is no place for one.
std::string history_file();

}  // namespace kelvo::ctl

#endif
