// The commands: each adds itself, with its options and what it does, to the option table from which
// help, completion and manual page are made.
#ifndef KELVO_TOOLS_KELVO_SIM_COMMANDS_H
#define KELVO_TOOLS_KELVO_SIM_COMMANDS_H

#include <string>
#include <vector>

#include "tools/common/exit_code.h"
#include "tools/common/tool_page.h"

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

/// Shows in the command's usage that a program stands behind the options.
void takes_program(CLI::App& command, const char* usage);

/// What the text of a fault consists of.
Glossary fault_words();

}  // namespace kelvo::tools

#endif
