#include "tools/kelvoctl/common/command_table.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tools/common/option_table.h"
#include "tools/common/output.h"
#include "tools/common/tool_page.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/numbers.h"

namespace kelvo::ctl {
namespace {

/// The last command that was named.
const CLI::App& named_in(const CLI::App& root) {
  const CLI::App* named = &root;
  while (!named->get_subcommands().empty()) named = named->get_subcommands().front();
  return *named;
}

/// As one types it, without the tool's name.
std::string path_of(const CLI::App& command) {
  std::string path;
  for (const CLI::App* part = &command; part->get_parent() != nullptr; part = part->get_parent()) {
    if (!path.empty()) path.insert(0, " ");
    path.insert(0, part->get_name());
  }
  return path;
}

/// The commands of a group, also of one that help does not show.
std::vector<const CLI::App*> all_of(const CLI::App& group) {
  std::vector<const CLI::App*> shown = tools::commands_of(group);
  if (!shown.empty()) return shown;
  return group.get_subcommands([](const CLI::App* /*command*/) { return true; });
}

std::string names_of(const CLI::App& group) {
  std::string names;
  for (const CLI::App* const command : all_of(group)) {
    names += (names.empty() ? "" : ", ") + command->get_name();
  }
  return names;
}

bool is_option(const std::string& word) {
  return word.size() > 1 && word.starts_with('-') && word != "--";
}

/// Where to read on.
std::string see_help(const CLI::App& command) {
  const std::string path = path_of(command);
  return std::string(": see ") + tool_name + (path.empty() ? "" : " ") + path + " --help";
}

/// The first word that nothing takes, or none.
std::string left_over(const CLI::App& root) {
  const std::vector<std::string> rest = root.remaining(true);
  const auto word =
      std::ranges::find_if(rest, [](const std::string& part) { return part != "--"; });
  return word == rest.end() ? "" : *word;
}

/// The words that nothing takes, in their order: the parser has them the other way round.
std::string unexpected(const CLI::App& root) {
  std::string words;
  std::size_t number = 0;
  for (const std::string& word : root.remaining(true)) {
    if (word == "--") continue;
    words += " " + word;
    ++number;
  }
  return std::string("The following ") + (number > 1 ? "arguments were" : "argument was") +
         " not expected:" + words;
}

/// The parser would say no more than that a command is missing.
std::string missing_command(const CLI::App& root, const CLI::App& group) {
  const std::string word = left_over(root);
  const std::string known = ": it is one of " + names_of(group);
  if (word.empty()) return "a command is missing" + known;
  if (is_option(word)) return "\"" + word + "\" is no option" + see_help(group);
  return "\"" + word + "\" is no command" + known;
}

/// The parser would take it for the option without a name.
void refuse_empty_name(const std::vector<std::string>& words) {
  const auto end = std::ranges::find(words, "--");
  if (std::find(words.begin(), end, "--sim=") == end) return;
  throw Failure(
      ExitCode::wrong_arguments,
      std::string("--sim=: a name is missing: write --sim=NAME, or --sim for the camera ") +
          tool_name);
}

/// Whether help is asked for of a command that there is not.
bool asks_for_nothing(const CLI::ParseError& error, const CLI::App& root) {
  const std::string word = left_over(root);
  return error.get_name() == "CallForHelp" && !all_of(named_in(root)).empty() && !word.empty() &&
         !is_option(word);
}

/// What the environment says.
constexpr std::array<std::pair<const char*, const char*>, 5> variables{{
    {lens_variable, "The lens module that is fitted, where --lens does not name it"},
    {"KELVO_SIM", "Settings of the camera of --sim, and its name where --sim has none"},
    {"KELVO_SIM_LIBRARY", "The preload library of the simulated camera, if it is another one"},
    {"KELVOCTL_HISTORY", "The file for the history of the shell; none if it is empty"},
    {"XDG_STATE_HOME", "The folder in which kelvoctl/history is, if not ~/.local/state"},
}};

tools::ToolPage page() {
  tools::ToolPage page{tool_name, "drive a camera", "", "kelvo-sim list", {}, {}};
  page.variables.assign(variables.begin(), variables.end());
  for (const ExitCodeRow& row : exit_codes) {
    page.exit_codes.emplace_back(static_cast<int>(row.code), row.meaning);
  }
  return page;
}

Action printing(const std::string& text) {
  return [text](Session& /*session*/) {
    tools::print(text);
    return Json();
  };
}

}  // namespace

CommandTable::CommandTable(Place place)
    : root_(std::make_unique<CLI::App>("Drives a camera: its lens, its stabiliser and its head.",
                                       tool_name)),
      place_(place) {
  root_->fallthrough();
  root_->require_subcommand(1);
  root_->add_flag("--json", line_.modes.json, "Print results as JSON instead of tables");
  root_->add_flag("--verbose", line_.modes.verbose,
                  "Show what the library prints, on standard error");
  root_->add_flag("-y,--yes", line_.modes.yes,
                  "Do not ask before flash is written, a controller reset or a file replaced");
  add_duration(*root_, "--patience", line_.modes.patience,
               "Wait so long for the bus lock that another process holds; without it " +
                   duration_text(lock_patience));
  if (place == Place::arguments) add_process_options();
  add_commands(*this);
  if (place != Place::arguments) return;
  add_pages(*root_, page());
  root_->footer(exit_codes_text());  // last, because commands would inherit it
}

CommandTable::~CommandTable() = default;

void CommandTable::add_process_options() {
  root_->set_version_flag("--version", std::string(tool_name) + " " KELVO_VERSION);
  root_
      ->add_option_function<std::string>(
          "--lens",
          [this](const std::string& name) {
            line_.lens = lens_of(name);
            if (!line_.lens) {
              throw CLI::ValidationError(
                  "--lens", "\"" + name + "\" is no lens module: write " + lens_names());
            }
          },
          std::string("The lens module that is fitted; without it ") + lens_variable + " says so")
      ->type_name(lens_names());
  root_
      ->add_flag("--sim", simulated_,
                 "On a simulated camera, as --sim or --sim=NAME; without a name it is kelvoctl")
      ->type_name("[=NAME]");
}

CLI::App& CommandTable::add_group(CLI::App& parent, const std::string& name,
                                  const std::string& description) {
  CLI::App& group = *parent.add_subcommand(name, description);
  group.require_subcommand(1);
  return group;
}

CLI::App& CommandTable::group(CLI::App& parent, const std::string& name) {
  return *parent.get_subcommand(name);
}

CLI::App& CommandTable::add(CLI::App& parent, const std::string& name,
                            const std::string& description, Action run) {
  CLI::App& command = *parent.add_subcommand(name, description);
  command.callback([this, run = std::move(run)] { line_.action = run; });
  return command;
}

std::string CommandTable::complaint(const CLI::ParseError& error) const {
  const CLI::App& named = named_in(*root_);
  const bool extras = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError);
  std::string line = extras ? unexpected(*root_) : error.what();
  const bool required = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::RequiredError) &&
                        !all_of(named).empty();
  if (required || asks_for_nothing(error, *root_)) return missing_command(*root_, named);
  std::replace(line.begin(), line.end(), '\n', ' ');
  return line + see_help(named);
}

Line CommandTable::read(std::vector<std::string> words) {
  if (place_ == Place::arguments) refuse_empty_name(words);
  std::reverse(words.begin(), words.end());
  try {
    root_->parse(std::move(words));
  } catch (const CLI::ParseError& error) {
    line_.command = path_of(named_in(*root_));
    if (error.get_exit_code() != 0 || asks_for_nothing(error, *root_)) {
      const std::string before = line_.command.empty() ? "" : line_.command + ": ";
      throw Failure(ExitCode::wrong_arguments, before + complaint(error));
    }
    std::ostringstream text;
    root_->exit(error, text, text);
    line_.action = printing(text.str());
  }
  line_.command = path_of(named_in(*root_));
  // What the parser makes of the option without a name.
  if (!simulated_.empty()) line_.simulated = simulated_ == "true" ? "" : simulated_;
  return line_;
}

}  // namespace kelvo::ctl
