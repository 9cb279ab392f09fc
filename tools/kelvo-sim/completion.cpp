// Completion for bash, from the option table.
#include <CLI/CLI.hpp>

#include "tools/common/output.h"
#include "tools/kelvo-sim/commands.h"
#include "tools/kelvo-sim/option_table.h"

namespace kelvo::tools {
namespace {

constexpr char beginning[] =
    R"bash(# Completion of kelvo-sim for bash: source <(kelvo-sim completion bash)
_kelvo_sim() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} command=${COMP_WORDS[1]} i
  COMPREPLY=()
  for ((i = 2; i < COMP_CWORD; i++)); do
    [[ ${COMP_WORDS[i]} == -- ]] || continue
    if ((i == COMP_CWORD - 1)); then
      mapfile -t COMPREPLY < <(compgen -c -- "$word")
    else
      mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
    return
  done
  local words= cameras=
  ((COMP_CWORD > 1)) || command=
  case $command:$before in
)bash";

constexpr char end[] = R"bash(  esac
  [[ -z $cameras ]] || words+=" $(kelvo-sim list 2>/dev/null | awk 'NR > 1 { print $1 }')"
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -F _kelvo_sim kelvo-sim
)bash";

std::string row(const std::string& pattern, const std::string& words, bool cameras = false) {
  return "    " + pattern + ") words='" + words + "'" + (cameras ? " cameras=yes" : "") + " ;;\n";
}

std::string long_options(const CLI::App& command) {
  std::string words;
  for (const CLI::Option* const option : options_of(command)) {
    for (const std::string& name : option->get_lnames())
      words += (words.empty() ? "--" : " --") + name;
  }
  return words;
}

/// What may follow an option that takes a value.
std::string value_rows(const CLI::App& command) {
  std::string rows;
  for (const CLI::Option* const option : options_of(command)) {
    if (option->get_items_expected_max() == 0 || option->get_lnames().empty()) continue;
    std::string words;
    for (const std::string& value : values_of(*option)) words += (words.empty() ? "" : " ") + value;
    rows += row(command.get_name() + ":--" + option->get_lnames().front(), words,
                option->get_type_name() == "NAME");
  }
  return rows;
}

std::string bash_completion(const CLI::App& app) {
  std::string names;
  std::string rows;
  for (const CLI::App* const command : commands_of(app)) {
    names += command->get_name() + " ";
    rows += value_rows(*command);
    rows +=
        row(command->get_name() + ":*", long_options(*command), !arguments_of(*command).empty());
  }
  return beginning + rows + row("*", names + long_options(app)) + end;
}

}  // namespace

void add_completion(CLI::App& app) {
  CLI::App* const command = app.add_subcommand("completion", "Prints completion for a shell");
  command->group("");  // for packages and start-up files, not for every day
  command->require_subcommand(1);
  command->add_subcommand("bash", "For bash")->callback([&app] { print(bash_completion(app)); });
}

}  // namespace kelvo::tools
