// A program on a simulated camera: checked, then executed in this process's place.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "sim/state/shared_camera.h"
#include "sim/wrapper/settings.h"
#include "tools/common/failure.h"
#include "tools/kelvo-sim/commands.h"
#include "tools/kelvo-sim/launch_settings.h"
#include "tools/kelvo-sim/preload_library.h"
#include "tools/kelvo-sim/program.h"

namespace kelvo::tools {
namespace {

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

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
                                              "): see whether it runs without " + tool_name);
}

[[noreturn]] void run(const LaunchOptions& options, Context& context) {
  if (context.program.empty()) {
    throw Failure(ExitCode::wrong_arguments,
                  "no program: write -- and the program behind the options");
  }
  const std::string text = launch_settings(options, environment(sim::settings_variable));
  const sim::Settings settings = read_settings(text);
  const std::string library = find_preload_library();
  const std::filesystem::path path = find_program(context.program.front());
  check_reach(path);
  prepare_camera(settings);
  const std::string preloaded = environment("LD_PRELOAD");
  export_variable("LD_PRELOAD", preloaded.empty() ? library : library + ":" + preloaded);
  export_variable(sim::settings_variable, text);
  execute(path, context.program);
}

CLI::Validator checked(std::string_view values, bool (*good)(const std::string& text)) {
  return {[values, good](std::string& text) {
            return good(text) ? std::string() : "\"" + text + "\" is not " + std::string(values);
          },
          ""};
}

bool is_name(const std::string& text) { return sim::is_camera_name(text); }
bool is_clock(const std::string& text) { return sim::parse_clock(text).has_value(); }
bool is_head(const std::string& text) { return text == "vetra" || text == "tasmere"; }

}  // namespace

void add_run(CLI::App& app, Context& context) {
  CLI::App* const command = app.add_subcommand(
      "run",
      "Runs a program on a simulated camera: kelvo-sim run [OPTIONS] -- PROGRAM [ARGUMENTS]");
  const auto options = std::make_shared<LaunchOptions>();
  command
      ->add_option("--name", options->name,
                   "A camera that programs share, made if there is none; else a private one")
      ->type_name("NAME")
      ->check(checked(sim::camera_name_values, is_name));
  command->add_option("--head", options->head, "The family of the head's controllers")
      ->type_name("tasmere|vetra")
      ->check(checked("tasmere or vetra", is_head));
  command
      ->add_option("--clock", options->clock,
                   "Real time, N times as fast, or only while somebody sleeps")
      ->type_name("real|N|sleep")
      ->check(checked(sim::clock_values, is_clock));
  command
      ->add_option("--corrupt", options->corrupt,
                   "Program downloads, from 1, that arrive with one bit flipped")
      ->type_name("N");
  command->add_flag("--report", options->report, "Print a report when the program ends");
  command->callback([options, &context] { run(*options, context); });
}

}  // namespace kelvo::tools
