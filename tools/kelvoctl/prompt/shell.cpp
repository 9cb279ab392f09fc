// Commands one after the other in one process, as they are typed.
#include <unistd.h>

#include <csignal>
#include <nlohmann/json.hpp>

#include "tools/common/output.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/printable.h"
#include "tools/kelvoctl/common/signals.h"
#include "tools/kelvoctl/common/words.h"
#include "tools/kelvoctl/prompt/line.h"
#include "tools/kelvoctl/prompt/line_reader.h"
#include "tools/kelvoctl/prompt/run.h"

namespace kelvo::ctl {
namespace {

using Words = std::vector<std::string>;

// What the table of commands does not have, below it in help.
constexpr char own_words[] =
    "Of the shell:\n"
    "  help [COMMAND]              Shows all commands, or the help of one\n"
    "  exit                        Ends the shell\n";

void show_own_words(Session& session) {
  const Action show = [](Session& /*session*/) {
    tools::print(own_words);
    return Json();
  };
  perform(session, {"help", show, {}, {}, {}});
}

/// "help zoom1 move" is "zoom1 move --help".
void help(Session& session, Words words) {
  words.erase(words.begin());
  const bool own = words == Words{"help"} || words == Words{"exit"};
  const bool all = words.empty();
  words.emplace_back("--help");
  if (!own) perform_words(session, words);
  if (own || all) show_own_words(session);
}

/// Does what words say; false when they end the shell.
bool do_words(Session& session, const Words& words) {
  const std::string first = words.empty() ? "" : words.front();
  if (first == "exit" && words.size() > 1) {
    throw Failure(ExitCode::wrong_arguments,
                  "exit: \"" + words[1] + "\" is too much: it takes no arguments");
  }
  if (first == "exit") return false;
  if (first == "help") {
    help(session, words);
  } else {
    perform_words(session, words);
  }
  return true;
}

/// The same for a line, whose failure ends nothing.
bool do_line(Session& session, const std::string& line) {
  try {
    return do_words(session, words_of(line));
  } catch (const Failure& failure) {
    if (failure.code() == static_cast<int>(ExitCode::no_output)) throw;
    print_error(failure.what());
  }
  return true;
}

Json shell(Session& session) {
  static bool running = false;
  if (running) throw Failure(ExitCode::wrong_arguments, "this is a shell already");
  if (in_script()) throw Failure(ExitCode::wrong_arguments, "a script cannot open a shell");
  running = true;
  const bool typed = isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0;
  const std::unique_ptr<LineReader> reader = typed ? make_editor() : make_plain_reader(false);
  while (true) {
    try {
      const std::optional<std::string> line = reader->next();
      if (!line || !do_line(session, *line)) return {};
    } catch (const Interrupted&) {
      // Ctrl-C throws away what was typed; other signals end the shell.
      if (!typed || last_signal() != SIGINT) throw;
    }
  }
}

}  // namespace

void add_shell(CommandTable& table) {
  table.add(table.root(), "shell",
            "Reads commands from a terminal until exit, in one process; help shows them", shell);
}

}  // namespace kelvo::ctl
