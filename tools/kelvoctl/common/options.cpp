#include "tools/kelvoctl/common/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace kelvo::ctl {

CLI::Option* add_flag(CLI::App& command, const std::string& name, bool& flag,
                      const std::string& description) {
  return command.add_flag(name, flag, description);
}

CLI::Option* add_text(CLI::App& command, const std::string& name, std::string& text,
                      const std::string& description, const std::string& type) {
  return command.add_option(name, text, description)->type_name(type);
}

CLI::Option* add_choice(CLI::App& command, const std::string& name, std::string& chosen,
                        const std::vector<std::string>& words, const std::string& description) {
  std::string all;
  for (const std::string& word : words) all += (all.empty() ? "" : "|") + word;
  return command
      .add_option_function<std::string>(
          name,
          [&chosen, name, words, all](const std::string& word) {
            if (std::ranges::find(words, word) == words.end()) {
              throw CLI::ValidationError(name, "\"" + word + "\" is none of " + all);
            }
            chosen = word;
          },
          description)
      ->type_name(all);
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
