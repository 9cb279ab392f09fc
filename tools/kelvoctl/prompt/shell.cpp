// Commands one after the other in one process, as they are typed.
#include <unistd.h>

#include <csignal>
#include <nlohmann/json.hpp>

#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/printable.h"
#include "tools/kelvoctl/common/signals.h"
#include "tools/kelvoctl/common/words.h"
#include "tools/kelvoctl/prompt/line.h"
#include "tools/kelvoctl/prompt/line_reader.h"

namespace kelvo::ctl {
namespace {

/// "help zoom1 move" is "zoom1 move --help".
std::vector<std::string> without_help(std::vector<std::string> words) {
  if (words.empty() || words.front() != "help") return words;
  words.erase(words.begin());
  words.emplace_back("--help");
  return words;
}

/// Does what a line says; false when it ends the shell.
bool do_line(Session& session, const std::string& line) {
  try {
    const std::vector<std::string> words = without_help(words_of(line));
    if (!words.empty() && words.front() == "exit") return false;
    perform_words(session, words);
  } catch (const Failure& failure) {
    if (failure.code() == static_cast<int>(ExitCode::no_output)) throw;
    print_error(failure.what());
  }
  return true;
}

Json shell(Session& session) {
  static bool running = false;
  if (running) throw Failure(ExitCode::wrong_arguments, "this is a shell already");
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
