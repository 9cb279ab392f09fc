#ifndef KELVO_TOOLS_KELVOCTL_COMMON_FILE_CONTENT_H
#define KELVO_TOOLS_KELVOCTL_COMMON_FILE_CONTENT_H

#include <string>

namespace kelvo::ctl {

/// All of a file; - is standard input. Throws a Failure when it cannot be read.
std::string content_of(const std::string& path);

}  // namespace kelvo::ctl

#endif
