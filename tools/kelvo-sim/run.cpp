// A program on a simulated camera: checked, then executed in this process's place.
#include <CLI/CLI.hpp>
#include <memory>

#include "sim/wrapper/settings.h"
#include "tools/common/failure.h"
#include "tools/kelvo-sim/commands.h"
#include "tools/launch/launch.h"
#include "tools/launch/launch_settings.h"

namespace kelvo::tools {
namespace {

[[noreturn]] void run(const LaunchOptions& options, Context& context) {
  if (context.program.empty()) {
    throw Failure(ExitCode::wrong_arguments,
                  "no program: write -- and the program behind the options");
  }
  execute_on_camera(context.program, launch_settings(options, environment(sim::settings_variable)));
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
