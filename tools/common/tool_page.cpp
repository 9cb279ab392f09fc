#include "tools/common/tool_page.h"

#include <CLI/CLI.hpp>

#include "tools/common/output.h"

namespace kelvo::tools {

void add_pages(CLI::App& app, const ToolPage& page) {
  CLI::App* const completion = app.add_subcommand("completion", "Prints completion for a shell");
  completion->group("");  // for packages and start-up files, not for every day
  completion->require_subcommand(1);
  completion->add_subcommand("bash", "For bash")->callback([&app, page] {
    print(bash_completion(app, page));
  });
  completion->add_subcommand("zsh", "For zsh")->callback([&app, page] {
    print(zsh_completion(app, page));
  });
  CLI::App* const manual_command = app.add_subcommand("manual", "Prints the manual page");
  manual_command->group("");
  manual_command->callback([&app, page] { print(manual(app, page)); });
}

}  // namespace kelvo::tools
