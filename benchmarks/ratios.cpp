#include "benchmarks/ratios.h"

namespace kelvo::bench {
namespace {

constexpr char bare[] = "/bare";
constexpr char library[] = "/library";

/// The subject of a name that ends so, or nothing.
std::string subject_of(const std::string& name, const std::string& ending) {
  return name.ends_with(ending) ? name.substr(0, name.size() - ending.size()) : "";
}

}  // namespace

bool Ratios::ReportContext(const Context& context) {
  std::fprintf(
      out_, "%d processors of %.0f MHz%s\n\n", context.cpu_info.num_cpus,
      context.cpu_info.cycles_per_second / 1e6,
      context.cpu_info.scaling == benchmark::CPUInfo::ENABLED ? ", whose frequency varies" : "");
  return true;
}

void Ratios::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.error_occurred) {
      std::fprintf(out_, "%s: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
      failed_ = true;
      continue;
    }
    // With repetitions the median counts, without them the run itself.
    const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
    if (!median && run.repetitions > 1) continue;
    const std::string name = run.run_name.function_name;
    medians_[name] = run.GetAdjustedRealTime();
    order_[run.family_index] = name;
  }
}

void Ratios::show_pairs() const {
  std::fprintf(out_, "%-40s %12s %12s %10s %8s\n", "", "bare ns", "library ns", "added ns",
               "ratio");
  for (const auto& [place, name] : order_) {
    const std::string subject = subject_of(name, library);
    const auto beside = medians_.find(subject + bare);
    if (subject.empty() || beside == medians_.end()) continue;
    const double time = medians_.at(name);
    std::fprintf(out_, "%-40s %12.0f %12.0f %+10.0f %8.3f\n", subject.c_str(), beside->second, time,
                 time - beside->second, time / beside->second);
  }
}

void Ratios::show_others() const {
  for (const auto& [place, name] : order_) {
    if (!subject_of(name, library).empty() || !subject_of(name, bare).empty()) continue;
    std::fprintf(out_, "%-40s %25.0f\n", name.c_str(), medians_.at(name));
  }
}

void Ratios::Finalize() {
  show_pairs();
  show_others();
}

}  // namespace kelvo::bench
