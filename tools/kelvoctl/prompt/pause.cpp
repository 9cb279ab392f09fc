#include <chrono>
#include <nlohmann/json.hpp>

#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/options.h"

namespace kelvo::ctl {
namespace {

struct PauseOptions {
  std::chrono::microseconds time{0};
};

Json sleep_for(Session& session, const PauseOptions& options) {
  session.sleep(options.time);
  return {};
}

}  // namespace

void add_sleep(CommandTable& table) {
  auto [command, options] = table.add<PauseOptions>(
      table.root(), "sleep", "Waits, by the camera's clock: for scripts", sleep_for);
  require(add_duration(command, "TIME", options.time, "How long, as 20ms or 1.5s"));
}

}  // namespace kelvo::ctl
