#include "tools/kelvoctl/common/options.h"

#include <CLI/CLI.hpp>

namespace kelvo::ctl {

CLI::Option* add_flag(CLI::App& command, const std::string& name, bool& flag,
                      const std::string& description) {
  return command.add_flag(name, flag, description);
}

CLI::Option* add_text(CLI::App& command, const std::string& name, std::string& text,
                      const std::string& description, const std::string& type) {
  return command.add_option(name, text, description)->type_name(type);
}

CLI::Option* add_list(CLI::App& command, const std::string& name, std::vector<std::string>& list,
                      const std::string& description, const std::string& type) {
  CLI::Option* const option = command.add_option(name, list, description)->type_name(type);
  if (!option->get_positional()) option->allow_extra_args(false);
  return option;
}

void needs(CLI::Option* option, CLI::Option* other) { option->needs(other); }

void require(CLI::Option* option) { option->required(); }
void need(CLI::Option* option, CLI::Option* other) { option->needs(other); }
void exclude(CLI::Option* option, CLI::Option* other) { option->excludes(other); }

}  // namespace kelvo::ctl
