// A file of commands in one process: what the library remembers stays from line to line.
#include "tools/kelvoctl/prompt/run.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/file_content.h"
#include "tools/kelvoctl/common/options.h"
#include "tools/kelvoctl/common/words.h"
#include "tools/kelvoctl/prompt/line.h"

namespace kelvo::ctl {
namespace {

constexpr int deepest = 8;  // scripts that run scripts

struct RunOptions {
  std::string file;
};

void perform_at(Session& session, const std::string& where, std::string_view line) {
  try {
    perform_words(session, words_of(line));
  } catch (const Failure& failure) {
    throw Failure(failure.code(), where + ": " + failure.what());
  }
}

/// How many scripts run within each other.
int& depth() {
  static int scripts = 0;
  return scripts;
}

Json run(Session& session, const RunOptions& options) {
  struct Deeper {
    Deeper() { ++depth(); }
    ~Deeper() { --depth(); }
  };
  if (depth() == deepest) {
    throw Failure(ExitCode::wrong_arguments, options.file + ": too many scripts within scripts");
  }
  const std::string content = content_of(options.file);
  std::string_view rest = content;
  const Deeper deeper;
  for (int number = 1; !rest.empty(); ++number) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    perform_at(session, options.file + ":" + std::to_string(number), rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return {};
}

}  // namespace

bool in_script() { return depth() > 0; }

void add_run(CommandTable& table) {
  auto [command, options] = table.add<RunOptions>(
      table.root(), "run", "Does what a file says, one command a line, until one fails", run);
  require(add_text(command, "FILE", options.file, "The file; - is standard input"));
}

}  // namespace kelvo::ctl
