#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <vector>

#include "benchmarks/kernel.h"
#include "benchmarks/ratios.h"

namespace {

/// The library prints on standard output; what is reported goes where that went.
std::FILE* take_standard_output() {
  std::FILE* out = fdopen(dup(STDOUT_FILENO), "w");
  const int nowhere = open("/dev/null", O_WRONLY);
  if (out == nullptr || nowhere < 0 || dup2(nowhere, STDOUT_FILENO) < 0) return nullptr;
  close(nowhere);
  return out;
}

}  // namespace

int main(int count, char** words) {
  // What the command line says comes later and counts.
  char repetitions[] = "--benchmark_repetitions=9";
  char interleaved[] = "--benchmark_enable_random_interleaving=true";
  char time[] = "--benchmark_min_time=0.05";
  std::vector<char*> arguments(words, words + count);
  arguments.insert(arguments.begin() + 1, {repetitions, interleaved, time});
  int all = static_cast<int>(arguments.size());
  benchmark::Initialize(&all, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(all, arguments.data())) return 2;

  std::FILE* out = take_standard_output();
  if (out == nullptr) {
    std::perror("kelvo_bench: standard output cannot be taken");
    return 1;
  }
  const kelvo::bench::Kernel kernel;
  kelvo::bench::Ratios ratios(out);
  benchmark::RunSpecifiedBenchmarks(&ratios);
  std::fclose(out);
  return ratios.complete() ? 0 : 1;
}
