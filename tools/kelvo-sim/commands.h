// The commands: each adds itself, with its options and what it does, to the option table from which
// help, completion and manual page are made.
#ifndef KELVO_TOOLS_KELVO_SIM_COMMANDS_H
#define KELVO_TOOLS_KELVO_SIM_COMMANDS_H

#include <string>
#include <vector>

#include "tools/common/exit_code.h"

namespace CLI {  // NOLINT(readability-identifier-naming): the name that it has
class App;
}  // namespace CLI

namespace kelvo::tools {

inline constexpr char tool_name[] = "kelvo-sim";

/// What commands get beside their options, and how the tool is to end.
struct Context {
  std::vector<std::string> program;  // what stands behind --
  ExitCode result = ExitCode::done;
};

void add_run(CLI::App& app, Context& context);
void add_list(CLI::App& app);
void add_remove(CLI::App& app);
void add_status(CLI::App& app);
/// peek, poke, push, power.
void add_hands(CLI::App& app);
void add_violations(CLI::App& app, Context& context);
void add_fault(CLI::App& app);
void add_trace(CLI::App& app, Context& context);

}  // namespace kelvo::tools

#endif
