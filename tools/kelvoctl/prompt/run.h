#ifndef KELVO_TOOLS_KELVOCTL_PROMPT_RUN_H
#define KELVO_TOOLS_KELVOCTL_PROMPT_RUN_H

namespace kelvo::ctl {

/// Whether what is done now stands in a script.
bool in_script();

}  // namespace kelvo::ctl

#endif
