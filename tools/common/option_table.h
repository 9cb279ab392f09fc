// What completion and manual page read of the option table.
#ifndef KELVO_TOOLS_COMMON_OPTION_TABLE_H
#define KELVO_TOOLS_COMMON_OPTION_TABLE_H

#include <string>
#include <vector>

namespace CLI {  // NOLINT(readability-identifier-naming): the name that it has
class App;
class Option;
}  // namespace CLI

namespace kelvo::tools {

/// The commands that help shows.
std::vector<const CLI::App*> commands_of(const CLI::App& app);
/// A command, and the words that lead to it.
struct Branch {
  const CLI::App* command;
  std::string path;
};
/// A command and all that help shows below it, each before its own.
std::vector<Branch> branches_of(const CLI::App& command, const std::string& path, char separator);
/// Options that begin with dashes, and arguments that do not.
std::vector<const CLI::Option*> options_of(const CLI::App& command);
std::vector<const CLI::Option*> arguments_of(const CLI::App& command);

/// The words that an option takes; a part in capitals stands for any value.
std::vector<std::string> values_of(const CLI::Option& option);

}  // namespace kelvo::tools

#endif
