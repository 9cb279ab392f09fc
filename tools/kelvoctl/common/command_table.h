// The one table of commands and options. Command lines, scripts and the shell are read by it; help,
// completion and manual page are made from it.
#ifndef KELVO_TOOLS_KELVOCTL_COMMON_COMMAND_TABLE_H
#define KELVO_TOOLS_KELVOCTL_COMMON_COMMAND_TABLE_H

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/kelvoctl/common/session.h"

namespace CLI {  // NOLINT(readability-identifier-naming): the name that it has
class App;
class ParseError;
}  // namespace CLI

namespace kelvo::ctl {

/// Does what a command is for. What it returns is its result, shown as tables or as JSON; null is none.
using Action = std::function<Json(Session&)>;

/// Where a line comes from: the arguments of the process, which say what is fitted as well, or a
/// script or shell.
enum class Place : std::uint8_t { arguments, line };

/// A line that has been understood.
struct Line {
  std::string command;  // "zoom1 move"
  Action action;
  Modes modes;
  std::optional<LensModule> lens;
  std::optional<std::string> simulated;  // --sim: the camera's name, or empty
};

/// A command that has been added, and the options that its description fills.
template <typename Options>
struct Added {
  CLI::App& command;
  Options& options;
};

class CommandTable {
 public:
  explicit CommandTable(Place place);
  ~CommandTable();
  CommandTable(const CommandTable&) = delete;
  CommandTable& operator=(const CommandTable&) = delete;

  /// Where commands and groups are added.
  CLI::App& root() { return *root_; }
  const CLI::App& root() const { return *root_; }
  Place place() const { return place_; }

  /// Adds words that commands stand behind: zoom1, ois.
  static CLI::App& add_group(CLI::App& parent, const std::string& name,
                             const std::string& description);
  /// One that has been added.
  static CLI::App& group(CLI::App& parent, const std::string& name);

  /// Adds a command. `run` is called when the whole line has been understood.
  ///
  ///   auto [command, options] = table.add<MoveOptions>(group, "move", "Moves ...", move);
  ///   require(add_number(command, "STEPS", options.steps, steps_range, "Motor steps"));
  template <typename Options>
  Added<Options> add(CLI::App& parent, const std::string& name, const std::string& description,
                     std::function<Json(Session&, const Options&)> run) {
    const auto options = std::make_shared<Options>();
    CLI::App& command = add(parent, name, description,
                            [options, run](Session& session) { return run(session, *options); });
    return {command, *options};
  }
  /// One without options.
  CLI::App& add(CLI::App& parent, const std::string& name, const std::string& description,
                Action run);

  /// Reads a line. Throws a Failure when it cannot be understood. One table reads one line.
  Line read(std::vector<std::string> words);

 private:
  void add_process_options();
  std::string complaint(const CLI::ParseError& error) const;

  std::unique_ptr<CLI::App> root_;
  Place place_;
  Line line_;
  std::string simulated_;
};

}  // namespace kelvo::ctl

#endif
