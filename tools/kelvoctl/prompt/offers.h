#ifndef KELVO_TOOLS_KELVOCTL_PROMPT_OFFERS_H
#define KELVO_TOOLS_KELVOCTL_PROMPT_OFFERS_H

#include <string>
#include <vector>

namespace kelvo::ctl {

/// What can stand behind these words of a line and begins like `begun`, in the order of the alphabet.
std::vector<std::string> offers(const std::vector<std::string>& words, const std::string& begun);

/// The longest beginning that all of them have.
std::string common_beginning(const std::vector<std::string>& all);

}  // namespace kelvo::ctl

#endif
