// One line of commands, wherever it comes from.
#ifndef KELVO_TOOLS_KELVOCTL_PROMPT_LINE_H
#define KELVO_TOOLS_KELVOCTL_PROMPT_LINE_H

#include <string>
#include <vector>

#include "tools/kelvoctl/common/command_table.h"

namespace kelvo::ctl {

/// Does what a line says and prints its result. Throws a Failure, whose line names the command.
void perform(Session& session, const Line& line);

/// The same for a line of a script or shell; an empty one does nothing.
void perform_words(Session& session, const std::vector<std::string>& words);

}  // namespace kelvo::ctl

#endif
