#ifndef KELVO_TOOLS_KELVOCTL_COMMON_COLUMNS_H
#define KELVO_TOOLS_KELVOCTL_COMMON_COLUMNS_H

#include <string>
#include <vector>

namespace kelvo::ctl {

/// Lines of text, every column as wide as it needs to be. A row may be short.
std::string columns(const std::vector<std::vector<std::string>>& rows);

}  // namespace kelvo::ctl

#endif
