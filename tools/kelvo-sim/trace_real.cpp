#include "tools/kelvo-sim/trace_real.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <optional>
#include <thread>

#include "sim/trace/recording.h"
#include "tools/common/failure.h"
#include "tools/launch/launch.h"

namespace kelvo::tools {
namespace {

constexpr std::chrono::milliseconds pause{20};

// What somebody sends to this process is meant for the program.
volatile sig_atomic_t program_process = 0;

void pass_on(int signal) {
  if (program_process > 0) kill(program_process, signal);
}

/// The terminal sends its signals to the program too: here they only must not end the trace.
void leave_to_the_program(int /*signal*/) {}

void handle(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigaction(signal, &action, nullptr);
}

std::unique_ptr<sim::trace::Recording> make_recording() {
  sim::trace::OpenedRecording made = sim::trace::Recording::make();
  if (made.recording == nullptr) {
    throw Failure(ExitCode::unusable_camera, made.error + ": make room in /dev/shm");
  }
  return std::move(made.recording);
}

/// The process that becomes the program, or says why it cannot.
pid_t start(std::vector<std::string>& program, const std::string& settings) {
  const pid_t process = fork();
  if (process > 0) return process;
  if (process < 0) {
    throw Failure(ExitCode::not_executable, std::string("no process for the program: ") +
                                                std::strerror(errno) + ": try again");
  }
  try {
    execute_on_camera(program, settings);
  } catch (const Failure& failure) {
    std::fprintf(stderr, "%s trace: %s\n", tool_name, failure.what());
    std::fflush(stderr);
    _exit(static_cast<int>(failure.code()));
  }
}

/// Writes until the program has ended; its wait status. It goes on when nothing can be written any more.
int follow(pid_t process, TraceOutput& output, sim::trace::Reader& reader,
           std::optional<Failure>& failure) {
  const auto write = [&] {
    if (failure) return;
    try {
      output.write(reader);
    } catch (const Failure& caught) {
      failure = caught;
    }
  };
  int status = 0;
  while (waitpid(process, &status, WNOHANG) == 0) {
    write();
    std::this_thread::sleep_for(pause);
  }
  write();
  return status;
}

}  // namespace

void trace_real(const TraceForm& form, Context& context) {
  if (context.program.empty()) {
    throw Failure(ExitCode::wrong_arguments,
                  "no program: write -- and the program behind the options");
  }
  const auto recording = make_recording();
  TraceOutput output(form);
  sim::trace::Reader reader(recording->ring());
  for (const int signal : {SIGINT, SIGQUIT}) handle(signal, leave_to_the_program);
  for (const int signal : {SIGTERM, SIGHUP}) handle(signal, pass_on);
  program_process = start(context.program, "real=" + recording->name());
  handle(SIGPIPE, SIG_IGN);
  std::optional<Failure> failure;
  const int status = follow(program_process, output, reader, failure);
  if (failure) throw Failure(*failure);
  constexpr int killed = 128;  // and the signal's number, as shells have it
  const int code = WIFEXITED(status) ? WEXITSTATUS(status) : killed + WTERMSIG(status);
  context.result = static_cast<ExitCode>(code);
}

}  // namespace kelvo::tools
