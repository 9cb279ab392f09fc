#ifndef KELVO_TOOLS_LAUNCH_PRELOAD_LIBRARY_H
#define KELVO_TOOLS_LAUNCH_PRELOAD_LIBRARY_H

#include <string>

namespace kelvo::tools {

/// Names another preload library than the one that belongs to this tool.
inline constexpr char library_variable[] = "KELVO_SIM_LIBRARY";

/// The absolute path of a preload library that the loader will take. Throws a Failure when there is
/// none: the loader would go on without it.
std::string find_preload_library();

}  // namespace kelvo::tools

#endif
