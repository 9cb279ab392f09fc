#include <fcntl.h>
#include <unistd.h>

#include <exception>
#include <nlohmann/json.hpp>

#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/printable.h"
#include "tools/kelvoctl/common/signals.h"
#include "tools/kelvoctl/prompt/line.h"
#include "tools/kelvoctl/simulation.h"

namespace kelvo::ctl {
namespace {

/// A stream that is closed would be the next file that is opened. It fails instead, as closed ones do.
void keep_streams_apart() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    const int useless = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", useless);
  }
}

void run_tool(int argc, char** argv) {
  CommandTable table(Place::arguments);
  const Line line = table.read({argv + 1, argv + argc});
  if (line.simulated) go_to_simulation(*line.simulated, argv);
  hold_signals();
  Session session;
  session.given_lens = line.lens;
  perform(session, line);
}

int report(int code, const char* line) {
  print_error(line);
  return code;
}

}  // namespace
}  // namespace kelvo::ctl

int main(int argc, char** argv) {
  using kelvo::ctl::ExitCode;
  kelvo::ctl::keep_streams_apart();
  try {
    kelvo::ctl::run_tool(argc, argv);
    return 0;
  } catch (const kelvo::tools::Failure& failure) {
    return kelvo::ctl::report(failure.code(), failure.what());
  } catch (const std::exception& error) {
    return kelvo::ctl::report(static_cast<int>(ExitCode::wrong_arguments), error.what());
  }
}
