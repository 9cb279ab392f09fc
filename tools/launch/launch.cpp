#include "tools/launch/launch.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <utility>

#include "sim/fault/fault_table.h"
#include "sim/state/shared_camera.h"
#include "sim/wrapper/settings.h"
#include "tools/common/failure.h"
#include "tools/launch/launch_settings.h"
#include "tools/launch/preload_library.h"
#include "tools/launch/program.h"

namespace kelvo::tools {
namespace {

sim::Settings read_settings(const std::string& text) {
  sim::ParsedSettings parsed = sim::parse_settings(text);
  if (!parsed.error.empty()) throw Failure(ExitCode::wrong_arguments, parsed.error);
  return std::move(parsed.settings);
}

/// Makes a camera with a name if there is none yet, so that the program only has to open it.
void prepare_camera(const sim::Settings& settings) {
  if (settings.name.empty()) return;
  const sim::OpenedCamera opened =
      sim::SharedCamera::open_or_make(settings.name, settings.camera, sim::Role::observer);
  if (opened.camera == nullptr) throw Failure(ExitCode::unusable_camera, opened.error);
  for (const sim::fault::Fault& fault : settings.faults) {
    if (opened.camera->change(sim::Extent::one_call).faults().add_anew(fault)) continue;
    throw Failure(ExitCode::unusable_camera, settings.name + ": " + sim::fault::table_is_full);
  }
}

void export_variable(const char* name, const std::string& value) {
  if (setenv(name, value.c_str(), 1) == 0) return;
  throw Failure(ExitCode::not_executable,
                std::string(name) + ": " + std::strerror(errno) + ": free some memory");
}

[[noreturn]] void execute(const std::string& path, std::vector<std::string>& program) {
  std::vector<char*> arguments;
  arguments.reserve(program.size() + 1);
  for (std::string& argument : program) arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  execv(path.c_str(), arguments.data());
  throw Failure(ExitCode::not_executable, path + ": cannot be executed (" + std::strerror(errno) +
                                              "): see whether it runs without a simulated camera");
}

}  // namespace

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

void execute_on_camera(std::vector<std::string>& program, const std::string& settings) {
  const sim::Settings parsed = read_settings(settings);
  const std::string library = find_preload_library();
  const std::filesystem::path path = find_program(program.front());
  check_reach(path);
  prepare_camera(parsed);
  const std::string preloaded = environment("LD_PRELOAD");
  export_variable("LD_PRELOAD", preloaded.empty() ? library : library + ":" + preloaded);
  export_variable(sim::settings_variable,
                  parsed.name.empty() ? settings : without_faults(settings));
  execute(path, program);
}

}  // namespace kelvo::tools
