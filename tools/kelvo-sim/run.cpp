// A program on a simulated camera: checked, then executed in this process's place.
#include <CLI/CLI.hpp>
#include <memory>

#include "sim/fault/parse.h"
#include "sim/wrapper/settings.h"
#include "tools/common/failure.h"
#include "tools/kelvo-sim/checked.h"
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

class UsageWithProgram : public CLI::Formatter {
 public:
  explicit UsageWithProgram(const char* program) : program_(program) {}
  std::string make_usage(const CLI::App* app, std::string name) const override {
    std::string usage = Formatter::make_usage(app, std::move(name));
    return usage.insert(usage.find_last_not_of('\n') + 1, program_);
  }

 private:
  const char* program_;
};

bool is_name(const std::string& text) { return sim::is_camera_name(text); }
bool is_clock(const std::string& text) { return sim::parse_clock(text).has_value(); }
bool is_module(const std::string& text) { return sim::parse_module(text).has_value(); }
bool is_seed(const std::string& text) { return sim::parse_seed(text).has_value(); }
bool is_head(const std::string& text) { return text == "vetra" || text == "tasmere"; }

std::string check_fault(const std::string& text) { return sim::fault::parse(text).error; }

}  // namespace

void takes_program(CLI::App& command, const char* usage) {
  command.formatter(std::make_shared<UsageWithProgram>(usage));
}

void add_run(CLI::App& app, Context& context) {
  CLI::App* const command = app.add_subcommand(
      "run", "Runs a program on a simulated camera, behind -- with its arguments");
  takes_program(*command, " -- PROGRAM [ARGUMENTS...]");
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
      ->add_option("--module", options->module,
                   "The lens, whose program runs; else it follows what is booted")
      ->type_name("de015|df033|t5391")
      ->check(checked(sim::module_values, is_module));
  command
      ->add_option("--seed", options->seed,
                   "Another camera of its kind: where things stand, and noise; 0 is without")
      ->type_name("N")
      ->check(checked(sim::seed_values, is_seed));
  command
      ->add_option("--clock", options->clock,
                   "Real time, N times as fast, or only while somebody sleeps")
      ->type_name("real|N|sleep")
      ->check(checked(sim::clock_values, is_clock));
  command
      ->add_option("--corrupt", options->corrupt,
                   "Program downloads, from 1, that arrive with one bit flipped")
      ->type_name("N");
  command
      ->add_option("--fault", options->faults,
                   "A fault that the camera has from the start; may be given several times")
      ->type_name("FAULT")
      ->allow_extra_args(false)
      ->check(CLI::Validator(check_fault, ""));
  command->add_flag("--report", options->report, "Print a report when the program ends");
  command->add_flag("--stop-at-violation", options->stop_at_violation,
                    "End the program at its first violation, with exit code 123");
  command->callback([options, &context] { run(*options, context); });
}

}  // namespace kelvo::tools
