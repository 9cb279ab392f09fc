// The manual page, from the option table.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>

#include "tools/common/option_table.h"
#include "tools/common/tool_page.h"

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

std::string names_of(const CLI::Option& option) {
  std::string names;
  for (const std::string& name : option.get_snames()) names += (names.empty() ? "-" : ", -") + name;
  for (const std::string& name : option.get_lnames())
    names += (names.empty() ? "--" : ", --") + name;
  return names;
}

std::string option_text(const CLI::Option& option) {
  std::string text = ".TP\n\\fB" + escaped(names_of(option)) + "\\fR";
  const std::string type = option.get_type_name();
  const bool joined = type.starts_with('[');  // as [=NAME]
  if (joined || option.get_items_expected_max() != 0)
    text += std::string(joined ? "" : " ") + "\\fI" + escaped(type) + "\\fR";
  return text + "\n" + escaped(option.get_description()) + "\n";
}

std::string argument_text(const CLI::Option& argument) {
  return ".TP\n\\fI" + escaped(argument.get_name()) + "\\fR\n" +
         escaped(argument.get_description()) + "\n";
}

/// What the command's usage has behind the options and arguments that the table knows.
std::string behind_usage(const CLI::App& command) {
  const auto* const formatter = dynamic_cast<const CLI::Formatter*>(command.get_formatter().get());
  if (formatter == nullptr) return {};
  const std::string plain = CLI::Formatter().make_usage(&command, "");
  const std::string own = formatter->make_usage(&command, "");
  const std::size_t end = plain.find_last_not_of('\n') + 1;
  return own.substr(end, own.size() - plain.size());
}

std::string command_text(const CLI::App& command, const std::string& name) {
  std::string text = ".SS " + escaped(name);
  for (const CLI::Option* const argument : arguments_of(command)) {
    text += " " + escaped(CLI::Formatter().make_option_usage(argument));
  }
  text += escaped(behind_usage(command)) + "\n" + escaped(command.get_description()) + ".\n";
  for (const CLI::Option* const argument : arguments_of(command)) text += argument_text(*argument);
  for (const CLI::Option* const option : options_of(command)) text += option_text(*option);
  return text;
}

std::string name_text(const std::string& name) { return escaped(name); }
std::string name_text(int code) { return std::to_string(code); }

/// Each name with what it means.
template <typename Name>
std::string list_text(const std::vector<std::pair<Name, std::string>>& list) {
  std::string text;
  for (const auto& [name, meaning] : list) {
    text += ".TP\n\\fB" + name_text(name) + "\\fR\n" + escaped(meaning) + "\n";
  }
  return text;
}

}  // namespace

std::string manual(const CLI::App& app, const ToolPage& page) {
  std::string title = page.name;
  std::transform(title.begin(), title.end(), title.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  const std::string name = escaped(page.name);
  std::string text = ".TH " + escaped(title) + " 1\n.SH NAME\n" + name + " \\- " +
                     escaped(page.summary) + "\n.SH SYNOPSIS\n.B " + name +
                     "\n[\\fIOPTIONS\\fR] \\fICOMMAND\\fR\n.SH DESCRIPTION\n" +
                     escaped(app.get_description()) + "\n.SH OPTIONS\n";
  for (const CLI::Option* const option : options_of(app)) text += option_text(*option);
  text += ".SH COMMANDS\n";
  for (const CLI::App* const command : commands_of(app)) {
    for (const Branch& branch : branches_of(*command, command->get_name(), ' ')) {
      text += command_text(*branch.command, branch.path);
    }
  }
  for (const Glossary& glossary : page.glossaries) {
    text += ".SH " + glossary.title + "\n" + escaped(glossary.remark) + "\n" +
            list_text(glossary.words);
  }
  text += ".SH EXIT STATUS\n" + escaped(page.exit_remark) + "\n" + list_text(page.exit_codes);
  return text + ".SH ENVIRONMENT\n" + list_text(page.variables);
}

}  // namespace kelvo::tools
