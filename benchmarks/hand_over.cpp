// The bus lock handed from process to process.
#include <benchmark/benchmark.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <vector>

#include "benchmarks/bare.h"
#include "kelvo.h"
#include "wire/paths.h"

namespace {

constexpr int rounds = 1000;

std::uint32_t semaphore_set() {
  const key_t key = ftok(kelvo::wire::lock_key_path, kelvo::wire::lock_key_project);
  return static_cast<std::uint32_t>(makeSem(static_cast<std::uint32_t>(key)));
}

void take_and_give_back() {
  lockSem(semaphore_set());
  unlockSem(semaphore_set());
}

void bare_take_and_give_back() {
  kelvo::bench::bare_lock();
  kelvo::bench::bare_unlock();
}

/// Waits for the start, which is the end of the pipe's other side, and works.
[[noreturn]] void compete(const int (&start)[2], void (*work)()) {
  close(start[1]);
  char none = 0;
  if (read(start[0], &none, 1) < 0) _exit(1);
  for (int i = 0; i < rounds; ++i) work();
  _exit(0);
}

/// Seconds for all rounds of all processes; negative when a process could not be made.
double compete(int processes, void (*work)()) {
  int start[2];
  if (pipe(start) != 0) return -1;
  std::vector<pid_t> children;
  for (int i = 0; i < processes; ++i) {
    const pid_t child = fork();
    if (child == 0) compete(start, work);
    if (child > 0) children.push_back(child);
  }
  const auto begun = std::chrono::steady_clock::now();
  close(start[0]);
  close(start[1]);
  for (const pid_t child : children) waitpid(child, nullptr, 0);
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begun;
  return static_cast<int>(children.size()) == processes ? time.count() : -1;
}

template <int processes, auto work>
void measure(benchmark::State& state) {
  semaphore_set();  // exists before anybody competes
  for ([[maybe_unused]] const auto _ : state) {
    const double seconds = compete(processes, work);
    if (seconds < 0) return state.SkipWithError("a process could not be made");
    state.SetIterationTime(seconds / (rounds * processes));
  }
}

#define HAND_OVER(processes, side, work)                        \
  BENCHMARK((measure<processes, work>))                         \
      ->Name("lock hand-over, " #processes " processes/" #side) \
      ->UseManualTime()                                         \
      ->Iterations(1)
HAND_OVER(1, bare, bare_take_and_give_back);
HAND_OVER(1, library, take_and_give_back);
HAND_OVER(2, bare, bare_take_and_give_back);
HAND_OVER(2, library, take_and_give_back);
HAND_OVER(4, bare, bare_take_and_give_back);
HAND_OVER(4, library, take_and_give_back);
HAND_OVER(8, bare, bare_take_and_give_back);
HAND_OVER(8, library, take_and_give_back);

}  // namespace
