#ifndef KELVO_TOOLS_COMMON_TOOL_PAGE_H
#define KELVO_TOOLS_COMMON_TOOL_PAGE_H

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace CLI {  // NOLINT(readability-identifier-naming): the name that it has
class App;
}  // namespace CLI

namespace kelvo::tools {

/// A section of the manual page: words, and what each means.
struct Glossary {
  std::string title;
  std::string remark;
  std::vector<std::pair<std::string, std::string>> words;
};

/// What manual page and completion say of a tool beside its option table.
struct ToolPage {
  std::string name;
  std::string summary;        // for the manual page's first line, without a full stop
  std::string exit_remark;    // before the exit codes
  std::string names_command;  // prints the cameras' names, one a line behind a heading
  std::vector<std::pair<int, std::string>> exit_codes;
  std::vector<std::pair<std::string, std::string>> variables;  // of the environment
  std::vector<Glossary> glossaries = {};
};

/// The manual page, in the form that man reads.
std::string manual(const CLI::App& app, const ToolPage& page);
/// Completion scripts, to be sourced by a shell or put where it looks for them.
std::string bash_completion(const CLI::App& app, const ToolPage& page);
std::string zsh_completion(const CLI::App& app, const ToolPage& page);

/// Adds the commands `completion bash|zsh` and `manual`, which help does not show.
void add_pages(CLI::App& app, const ToolPage& page);

}  // namespace kelvo::tools

#endif
