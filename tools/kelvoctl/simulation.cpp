#include "tools/kelvoctl/simulation.h"

#include <algorithm>
#include <cstdlib>

#include "sim/state/shared_camera.h"
#include "sim/wrapper/settings.h"
#include "tools/kelvoctl/common/exit_code.h"
#include "tools/kelvoctl/common/session.h"
#include "tools/launch/launch.h"
#include "tools/launch/launch_settings.h"

namespace kelvo::ctl {
namespace {

/// Set for the process that runs on the simulated camera: it shall not begin again.
constexpr char marker[] = "KELVOCTL_SIMULATED";

bool camera_exists(const std::string& name) {
  const std::vector<sim::CameraEntry> cameras = sim::SharedCamera::list().cameras;
  return std::ranges::find(cameras, name, &sim::CameraEntry::name) != cameras.end();
}

std::string settings_for(const std::string& name) {
  const std::string given = tools::environment(sim::settings_variable);
  const sim::ParsedSettings parsed = sim::parse_settings(given);
  if (!parsed.error.empty()) throw Failure(ExitCode::wrong_arguments, parsed.error);
  tools::LaunchOptions options;
  options.name = !name.empty() ? name : parsed.settings.name;
  if (options.name.empty()) options.name = tool_name;
  if (!sim::is_camera_name(options.name)) {
    throw Failure(ExitCode::wrong_arguments,
                  "--sim: \"" + options.name + "\" is not " + std::string(sim::camera_name_values));
  }
  // A camera that there is keeps the clock that it was made with.
  if (!parsed.settings.camera.clock && !camera_exists(options.name)) options.clock = "sleep";
  return tools::launch_settings(options, given);
}

}  // namespace

void go_to_simulation(const std::string& name, char** argv) {
  if (!tools::environment(marker).empty()) {
    unsetenv(marker);
    return;
  }
  std::vector<std::string> program{"/proc/self/exe"};
  while (*++argv != nullptr) program.emplace_back(*argv);
  const std::string settings = settings_for(name);
  setenv(marker, "yes", 1);
  try {
    tools::execute_on_camera(program, settings);
  } catch (const Failure& failure) {
    throw Failure(ExitCode::no_simulation, std::string("--sim: ") + failure.what());
  }
}

}  // namespace kelvo::ctl
