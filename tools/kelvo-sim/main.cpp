#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <sstream>
#include <string_view>

#include "sim/wrapper/settings.h"
#include "tools/common/failure.h"
#include "tools/common/output.h"
#include "tools/common/tool_page.h"
#include "tools/kelvo-sim/commands.h"
#include "tools/launch/preload_library.h"

namespace kelvo::tools {
namespace {

ToolPage page() {
  ToolPage page{tool_name,
                "run programs on simulated cameras",
                "A program that is run has its own.",
                std::string(tool_name) + " list",
                {},
                {{sim::settings_variable, "Settings of the camera, where options do not give them"},
                 {library_variable, "The preload library, if it is another one"},
                 {"XDG_RUNTIME_DIR", "The folder for the files of cameras, if not /tmp"}},
                {fault_words()}};
  for (const ExitCodeRow& row : exit_codes) {
    page.exit_codes.emplace_back(static_cast<int>(row.code), row.meaning);
  }
  return page;
}

void add_commands(CLI::App& app, Context& context) {
  app.set_version_flag("--version", std::string(tool_name) + " " KELVO_VERSION);
  app.require_subcommand(1);
  app.footer(exit_codes_text());
  add_run(app, context);
  add_list(app);
  add_remove(app);
  add_status(app);
  add_violations(app, context);
  add_fault(app);
  add_hands(app);
  add_trace(app, context);
  add_pages(app, page());
}

/// The command that the arguments name, as one types it.
std::string command_of(const CLI::App& app) {
  const std::vector<CLI::App*> named = app.get_subcommands();
  return named.empty() ? tool_name : std::string(tool_name) + " " + named.front()->get_name();
}

int report_arguments(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == 0) {
    std::ostringstream text;
    app.exit(error, text, text);
    print(text.str());
    return 0;
  }
  const std::string command = command_of(app);
  std::string line = error.what();
  std::replace(line.begin(), line.end(), '\n', ' ');
  std::fprintf(stderr, "%s: %s: see %s --help\n", command.c_str(), line.c_str(), command.c_str());
  return static_cast<int>(ExitCode::wrong_arguments);
}

/// The first word is a command or an option: the parser would say no more than that one is missing.
void check_command(const CLI::App& app, char** first, char** end) {
  if (first >= end || **first == '-') return;
  const std::vector<const CLI::App*> named = app.get_subcommands(
      [first](const CLI::App* command) { return command->get_name() == *first; });
  if (!named.empty()) return;
  throw CLI::ExtrasError(tool_name, {*first});
}

bool takes_program(std::string_view command) { return command == "run" || command == "trace"; }

int run_tool(int argc, char** argv) {
  CLI::App app("Runs programs on simulated cameras, and shows what became of these.", tool_name);
  Context context;
  add_commands(app, context);
  // A program's own arguments are nobody else's business. Other commands take no program.
  char** const end = argv + argc;
  const bool runs = argc > 1 && takes_program(argv[1]);
  char** const dashes = runs ? std::find(argv + 1, end, std::string("--")) : end;
  if (dashes != end) context.program.assign(dashes + 1, end);
  try {
    check_command(app, argv + 1, dashes);
    app.parse(static_cast<int>(dashes - argv), argv);
    return static_cast<int>(context.result);
  } catch (const CLI::ParseError& error) {
    return report_arguments(app, error);
  } catch (const Failure& failure) {
    std::fprintf(stderr, "%s: %s\n", command_of(app).c_str(), failure.what());
    return failure.code();
  }
}

}  // namespace
}  // namespace kelvo::tools

int main(int argc, char** argv) {
  try {
    return kelvo::tools::run_tool(argc, argv);
  } catch (const kelvo::tools::Failure& failure) {
    std::fprintf(stderr, "%s: %s\n", kelvo::tools::tool_name, failure.what());
    return failure.code();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", kelvo::tools::tool_name, error.what());
    return static_cast<int>(kelvo::tools::ExitCode::unusable_camera);
  }
}
