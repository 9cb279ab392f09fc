// What crossed the wires of a camera with a name, or of the real one.
#include <signal.h>

#include <CLI/CLI.hpp>
#include <array>
#include <charconv>
#include <chrono>
#include <csignal>
#include <memory>
#include <optional>
#include <thread>

#include "tools/common/failure.h"
#include "tools/kelvo-sim/cameras.h"
#include "tools/kelvo-sim/checked.h"
#include "tools/kelvo-sim/commands.h"
#include "tools/kelvo-sim/trace_output.h"
#include "tools/kelvo-sim/trace_real.h"

namespace kelvo::tools {
namespace {

using sim::SharedCamera;
using sim::trace::Event;

struct TraceArguments {
  std::string name;
  bool follow = false;
  std::optional<double> seconds;
  std::optional<std::uint64_t> last;
  std::string times = "absolute";
  bool json = false;
  std::string file;
  bool real = false;
};

struct TimesRow {
  const char* name;
  Times times;
};
constexpr std::array times_table{TimesRow{"absolute", Times::absolute},
                                 TimesRow{"zero", Times::zero},
                                 TimesRow{"difference", Times::difference}};

const TimesRow* find_times(const std::string& text) {
  for (const TimesRow& row : times_table) {
    if (row.name == text) return &row;
  }
  return nullptr;
}

bool is_times(const std::string& text) { return find_times(text) != nullptr; }

bool is_duration(const std::string& text) {
  constexpr double longest = 1e9;
  double seconds = 0;
  const char* const end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, seconds);
  return error == std::errc{} && behind == end && seconds >= 0 && seconds <= longest;
}

bool is_count(const std::string& text) {
  constexpr std::size_t most_digits = 18;
  return !text.empty() && text.size() <= most_digits &&
         text.find_first_not_of("0123456789") == std::string::npos;
}

TraceForm form_of(const TraceArguments& arguments) {
  return {find_times(arguments.times)->times, arguments.json, arguments.file};
}

volatile sig_atomic_t interrupted = 0;

void stop_at_interrupt() {
  struct sigaction action {};
  action.sa_handler = [](int /*signal*/) { interrupted = 1; };
  sigaction(SIGINT, &action, nullptr);
}

/// The camera lists the first ones alone.
std::vector<std::string> reasons_of(SharedCamera& camera, const Event& event) {
  const sim::camera::Camera now = camera.snapshot();
  std::vector<std::string> reasons;
  for (std::uint32_t i = 0; i < event.violations; ++i) {
    const std::size_t number = event.violation + i;
    const bool listed = number < now.violations().listed().size();
    reasons.emplace_back(listed ? now.violations().listed()[number].reason.data()
                                : "a violation that is not listed");
  }
  return reasons;
}

/// Until it is interrupted, the time is over, or the camera is removed.
void follow(const SharedCamera& camera, std::optional<double> seconds, TraceOutput& output,
            sim::trace::Reader& reader) {
  constexpr std::chrono::milliseconds pause{50};
  using Clock = std::chrono::steady_clock;
  const Clock::time_point begun = Clock::now();
  const auto over = [&] {
    return seconds && std::chrono::duration<double>(Clock::now() - begun).count() >= *seconds;
  };
  while (interrupted == 0 && camera.exists() && !over()) {
    std::this_thread::sleep_for(pause);
    output.write(reader);
  }
  output.write(reader);
}

void trace_camera(const TraceArguments& arguments) {
  const std::unique_ptr<SharedCamera> camera = open_camera(arguments.name);
  TraceOutput output(form_of(arguments),
                     [&camera](const Event& event) { return reasons_of(*camera, event); });
  sim::trace::Reader reader(camera->trace());
  if (arguments.last) reader.skip_to_last(*arguments.last);
  if (arguments.follow) stop_at_interrupt();
  output.write(reader);
  if (arguments.follow) follow(*camera, arguments.seconds, output, reader);
}

void check(const TraceArguments& arguments, bool program) {
  const bool of_camera = !arguments.name.empty() || arguments.follow || arguments.last;
  const char* wrong = nullptr;
  if (arguments.seconds && !arguments.follow) wrong = "--for goes with --follow: add it";
  if (arguments.real && of_camera) {
    wrong = "--real runs a program on the real devices: leave NAME, --follow and --last away";
  }
  if (!arguments.real && arguments.name.empty()) {
    wrong = "no camera: name one, or write --real -- and a program for the real devices";
  }
  if (!arguments.real && program)
    wrong = "a program is traced with --real: add it, or leave the program away";
  if (wrong != nullptr) throw Failure(ExitCode::wrong_arguments, wrong);
}

void trace(const TraceArguments& arguments, Context& context) {
  check(arguments, !context.program.empty());
  if (arguments.real) return trace_real(form_of(arguments), context);
  trace_camera(arguments);
}

}  // namespace

void add_trace(CLI::App& app, Context& context) {
  CLI::App* const command = app.add_subcommand(
      "trace",
      "Writes what crossed the wires, one transfer a line, of a camera or of the real one");
  takes_program(*command, " [-- PROGRAM [ARGUMENTS...]]");
  const auto arguments = std::make_shared<TraceArguments>();
  command->add_option("NAME", arguments->name, "The camera")->type_name("");
  command->add_flag("--follow", arguments->follow,
                    "Go on until it is interrupted or the camera is removed");
  command->add_option("--for", arguments->seconds, "With --follow, end after so many seconds")
      ->type_name("SECONDS")
      ->check(checked("a number of seconds", is_duration));
  command->add_option("--last", arguments->last, "Begin with the last N lines that there are")
      ->type_name("N")
      ->check(checked("a number of lines", is_count));
  command
      ->add_option("--times", arguments->times,
                   "Since the clock began, since the first line, or since the line before")
      ->type_name("absolute|zero|difference")
      ->check(checked("absolute, zero or difference", is_times));
  command->add_flag("--json", arguments->json, "Write JSON, one object a line");
  command->add_option("--output", arguments->file, "Write to a file instead of standard output")
      ->type_name("FILE");
  command->add_flag("--real", arguments->real,
                    "Run the program behind -- on the real devices, and trace it");
  command->callback([arguments, &context] { trace(*arguments, context); });
}

}  // namespace kelvo::tools
