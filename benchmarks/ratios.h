// Collects a run and shows each measurement beside what it is to be held against.
#ifndef KELVO_BENCHMARKS_RATIOS_H
#define KELVO_BENCHMARKS_RATIOS_H

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace kelvo::bench {

/// Measurements are named "subject/bare" and "subject/library"; all others are shown by themselves.
class Ratios : public benchmark::BenchmarkReporter {
 public:
  explicit Ratios(std::FILE* out) : out_(out) {}

  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

  /// Whether something was measured and nothing failed.
  bool complete() const { return !medians_.empty() && !failed_; }

 private:
  void show_pairs() const;
  void show_others() const;

  std::FILE* out_;
  bool failed_ = false;
  std::map<std::string, double> medians_;      // ns of real time
  std::map<std::int64_t, std::string> order_;  // by the place where a benchmark was registered
};

}  // namespace kelvo::bench

#endif
