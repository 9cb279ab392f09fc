#include "tools/common/option_table.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <sstream>

namespace kelvo::tools {
namespace {

std::vector<const CLI::Option*> some_of(const CLI::App& command, bool positional) {
  std::vector<const CLI::Option*> some;
  for (const CLI::Option* const option : command.get_options()) {
    if (option->get_positional() == positional) some.push_back(option);
  }
  return some;
}

}  // namespace

std::vector<const CLI::App*> commands_of(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); });
}

std::vector<Branch> branches_of(const CLI::App& command, const std::string& path, char separator) {
  std::vector<Branch> found;
  std::vector<Branch> waiting{{&command, path}};
  while (!waiting.empty()) {
    const Branch branch = waiting.back();
    waiting.pop_back();
    found.push_back(branch);
    std::vector<const CLI::App*> below = commands_of(*branch.command);
    std::ranges::reverse(below);  // the first of them is taken first
    for (const CLI::App* const next : below) {
      waiting.push_back({next, branch.path + separator + next->get_name()});
    }
  }
  return found;
}

std::vector<const CLI::Option*> options_of(const CLI::App& command) {
  return some_of(command, false);
}

std::vector<const CLI::Option*> arguments_of(const CLI::App& command) {
  return some_of(command, true);
}

std::vector<std::string> values_of(const CLI::Option& option) {
  std::vector<std::string> values;
  std::istringstream parts(option.get_type_name());
  for (std::string part; std::getline(parts, part, '|');) {
    if (!part.empty() && std::islower(static_cast<unsigned char>(part.front())) != 0) {
      values.push_back(part);
    }
  }
  return values;
}

}  // namespace kelvo::tools
