#include <cstdio>
#include <exception>
#include <nlohmann/json.hpp>

#include "tools/kelvoctl/command_table.h"
#include "tools/kelvoctl/line.h"
#include "tools/kelvoctl/signals.h"
#include "tools/kelvoctl/simulation.h"

namespace kelvo::ctl {
namespace {

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
  std::fprintf(stderr, "%s: %s\n", tool_name, line);
  return code;
}

}  // namespace
}  // namespace kelvo::ctl

int main(int argc, char** argv) {
  using kelvo::ctl::ExitCode;
  try {
    kelvo::ctl::run_tool(argc, argv);
    return 0;
  } catch (const kelvo::tools::Failure& failure) {
    return kelvo::ctl::report(failure.code(), failure.what());
  } catch (const std::exception& error) {
    return kelvo::ctl::report(static_cast<int>(ExitCode::wrong_arguments), error.what());
  }
}
