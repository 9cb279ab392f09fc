// Completion in the shell, from the table of commands.
#include "tools/kelvoctl/prompt/offers.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>

#include "tools/common/option_table.h"
#include "tools/kelvoctl/common/command_table.h"

namespace kelvo::ctl {
namespace {

using Words = std::vector<std::string>;

/// The command that the words lead to.
const CLI::App& command_behind(const CLI::App& root, const Words& words) {
  const CLI::App* command = &root;
  for (const std::string& word : words) {
    for (const CLI::App* const below : tools::commands_of(*command)) {
      if (below->get_name() != word) continue;
      command = below;
      break;
    }
  }
  return *command;
}

void add_files(const std::string& begun, Words& found) {
  namespace fs = std::filesystem;
  const fs::path path(begun);
  const fs::path folder = path.parent_path();
  std::error_code error;
  for (const fs::directory_entry& entry :
       fs::directory_iterator(folder.empty() ? "." : folder, error)) {
    const std::string name = (folder / entry.path().filename()).string();
    found.push_back(entry.is_directory(error) ? name + "/" : name);
  }
}

void add_values(const CLI::Option& option, const std::string& name, const std::string& begun,
                Words& found) {
  for (const std::string& value : tools::values_of(option)) found.push_back(value);
  if (name == "FILE") add_files(begun, found);
}

/// The option that waits for its value, if the last word is one.
const CLI::Option* waiting_option(const CLI::App& command, const Words& words) {
  if (words.empty()) return nullptr;
  for (const CLI::Option* const option : tools::options_of(command)) {
    if (option->get_items_expected_max() != 0 && option->check_name(words.back())) return option;
  }
  return nullptr;
}

void add_options(const CLI::App& command, Words& found) {
  for (const CLI::Option* const option : tools::options_of(command)) {
    for (const std::string& name : option->get_lnames()) found.push_back("--" + name);
  }
}

void add_all(const CLI::App& command, const std::string& begun, Words& found) {
  for (const CLI::App* const below : tools::commands_of(command)) {
    found.push_back(below->get_name());
  }
  add_options(command, found);
  for (const CLI::Option* const argument : tools::arguments_of(command)) {
    add_values(*argument, argument->get_name(), begun, found);
  }
}

}  // namespace

Words offers(const Words& words, const std::string& begun) {
  const CommandTable table(Place::line);
  const CLI::App& command = command_behind(table.root(), words);
  Words found;
  if (const CLI::Option* const option = waiting_option(command, words)) {
    add_values(*option, option->get_type_name(), begun, found);
  } else {
    add_all(command, begun, found);
    add_options(table.root(), found);  // which may stand behind any command
    if (words.empty()) found.insert(found.end(), {"exit", "help"});
  }
  std::erase_if(found, [&](const std::string& word) { return !word.starts_with(begun); });
  std::ranges::sort(found);
  found.erase(std::ranges::unique(found).begin(), found.end());
  return found;
}

std::string common_beginning(const Words& all) {
  if (all.empty()) return "";
  std::string beginning = all.front();
  for (const std::string& word : all) {
    const auto end = std::ranges::mismatch(beginning, word).in1;
    beginning.erase(end, beginning.end());
  }
  return beginning;
}

}  // namespace kelvo::ctl
