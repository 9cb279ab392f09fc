#ifndef KELVO_TOOLS_LAUNCH_LAUNCH_H
#define KELVO_TOOLS_LAUNCH_LAUNCH_H

#include <string>
#include <vector>

namespace kelvo::tools {

/// The value of an environment variable; empty without one.
std::string environment(const char* name);

/// Executes a program in this process's place, on the camera of these settings of the preload library. A
/// camera with a name is made if there is none. Throws a Failure when that cannot be, and then nothing
/// of the program has run.
[[noreturn]] void execute_on_camera(std::vector<std::string>& program, const std::string& settings);

}  // namespace kelvo::tools

#endif
