#ifndef KELVO_TOOLS_LAUNCH_PROGRAM_H
#define KELVO_TOOLS_LAUNCH_PROGRAM_H

#include <filesystem>
#include <string>

namespace kelvo::tools {

/// The file that a name stands for: itself if there is a slash in it, else the first of PATH. Throws a
/// Failure when there is none that can be executed.
std::filesystem::path find_program(const std::string& name);

/// Throws a Failure for a program, or the interpreter of a script, that would not load the preload
/// library: the loader says nothing then, and the real devices would be used.
void check_reach(const std::filesystem::path& program);

}  // namespace kelvo::tools

#endif
