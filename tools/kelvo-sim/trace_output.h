// Lines of a trace, as text or JSON.
#ifndef KELVO_TOOLS_KELVO_SIM_TRACE_OUTPUT_H
#define KELVO_TOOLS_KELVO_SIM_TRACE_OUTPUT_H

#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/trace/ring.h"

namespace kelvo::tools {

/// Since the clock began, since the first line, or since the line before.
enum class Times : std::uint8_t { absolute, zero, difference };

struct TraceForm {
  Times times = Times::absolute;
  bool json = false;
  std::string file;  // empty: standard output
};

class TraceOutput {
 public:
  /// What an event has done against the protocol.
  using Reasons = std::function<std::vector<std::string>(const sim::trace::Event& event)>;

  /// Throws a Failure when the file cannot be made.
  explicit TraceOutput(TraceForm form, Reasons reasons = {});

  /// Writes all that there is now, or throws a Failure.
  void write(sim::trace::Reader& reader);

 private:
  using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
  std::int64_t shown_time(std::int64_t time);
  std::string line_of(const sim::trace::Event& event, std::uint64_t number);
  std::string lost_line(std::uint64_t lost) const;
  void deliver(const std::string& text);

  TraceForm form_;
  Reasons reasons_;
  File file_;
  std::optional<std::int64_t> origin_;  // of the times
};

}  // namespace kelvo::tools

#endif
