// The manual page, from the option table.
#include <CLI/CLI.hpp>

#include "tools/common/output.h"
#include "tools/kelvo-sim/commands.h"
#include "tools/kelvo-sim/option_table.h"

namespace kelvo::tools {
namespace {

/// Dashes as they are typed; a line never begins with a request.
std::string escaped(const std::string& text) {
  std::string result;
  for (const char letter : text) {
    if (letter == '\\') {
      result += "\\e";
    } else if (letter == '-') {
      result += "\\-";
    } else {
      result += letter;
    }
  }
  return result.starts_with('.') || result.starts_with('\'') ? "\\&" + result : result;
}

std::string option_text(const CLI::Option& option) {
  std::string names;
  for (const std::string& name : option.get_snames()) names += (names.empty() ? "-" : ", -") + name;
  for (const std::string& name : option.get_lnames())
    names += (names.empty() ? "--" : ", --") + name;
  std::string text = ".TP\n\\fB" + escaped(names) + "\\fR";
  if (option.get_items_expected_max() != 0)
    text += " \\fI" + escaped(option.get_type_name()) + "\\fR";
  return text + "\n" + escaped(option.get_description()) + "\n";
}

std::string command_text(const CLI::App& command) {
  std::string text = ".SS " + escaped(command.get_name());
  for (const CLI::Option* const argument : arguments_of(command)) {
    text += " " + escaped(argument->get_name());
  }
  text += "\n" + escaped(command.get_description()) + ".\n";
  for (const CLI::Option* const option : options_of(command)) text += option_text(*option);
  return text;
}

std::string manual(const CLI::App& app) {
  std::string text =
      ".TH KELVO\\-SIM 1\n.SH NAME\nkelvo\\-sim \\- run programs on simulated cameras\n";
  text += ".SH SYNOPSIS\n.B kelvo\\-sim\n.I COMMAND\n[\\fIOPTIONS\\fR]\n";
  text += ".SH DESCRIPTION\n" + escaped(app.get_description()) + "\n.SH OPTIONS\n";
  for (const CLI::Option* const option : options_of(app)) text += option_text(*option);
  text += ".SH COMMANDS\n";
  for (const CLI::App* const command : commands_of(app)) text += command_text(*command);
  text += ".SH EXIT STATUS\nA program that is run has its own.\n";
  for (const ExitCodeRow& row : exit_codes) {
    text +=
        ".TP\n\\fB" + std::to_string(static_cast<int>(row.code)) + "\\fR\n" + row.meaning + "\n";
  }
  return text;
}

}  // namespace

void add_manual(CLI::App& app) {
  CLI::App* const command = app.add_subcommand("manual", "Prints the manual page");
  command->group("");
  command->callback([&app] { print(manual(app)); });
}

}  // namespace kelvo::tools
