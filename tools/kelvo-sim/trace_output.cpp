#include "tools/kelvo-sim/trace_output.h"

#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>
#include <utility>

#include "sim/trace/decoder.h"
#include "sim/trace/text.h"
#include "tools/common/failure.h"
#include "tools/common/output.h"

namespace kelvo::tools {
namespace {

using sim::trace::Decoded;
using sim::trace::Event;

constexpr std::size_t most_pending = 1 << 16;  // bytes, before they are written

Failure file_failure(const std::string& file) {
  return {ExitCode::no_output, file + ": " + std::strerror(errno) + ": name another file"};
}

/// Seconds, to the microsecond.
std::string time_text(std::int64_t nanoseconds) {
  const bool negative = nanoseconds < 0;
  const long long microseconds = (negative ? -nanoseconds : nanoseconds) / 1000;
  char text[40];
  std::snprintf(text, sizeof text, "%s%lld.%06lld", negative ? "-" : "", microseconds / 1'000'000,
                microseconds % 1'000'000);
  return text;
}

std::string text_line(std::int64_t time, const Event& event,
                      const std::vector<std::string>& reasons) {
  char place[64];
  std::snprintf(place, sizeof place, "%14s %3u  ", time_text(time).c_str(), event.process);
  std::string line = place + text_of(decode(event));
  for (const std::string& reason : reasons) line += "  ! " + reason;
  return line + "\n";
}

void add_bytes(Json& json, const std::string& name, sim::trace::Bytes kept, std::uint32_t length) {
  if (length == 0) return;
  json[name] = sim::trace::hex_bytes(kept.first(std::min<std::size_t>(length, kept.size())));
  json[name + "_bytes"] = length;
}

Json json_of(const Event& event) {
  const Decoded decoded = decode(event);
  Json json{{"process", event.process},
            {"pid", event.pid},
            {"device", decoded.device},
            {"kind", decoded.kind},
            {"text", text_of(decoded)}};
  if (decoded.code) json["code"] = *decoded.code;
  for (const auto& [name, text] : {std::pair{"name", &decoded.name},
                                   {"value", &decoded.value},
                                   {"answer", &decoded.answer},
                                   {"error", &decoded.error}}) {
    if (!text->empty()) json[name] = *text;
  }
  json["result"] = event.result;
  add_bytes(json, "sent", event.sent, event.sent_length);
  add_bytes(json, "received", event.received, event.result < 0 ? 0 : event.received_length);
  return json;
}

std::string json_line(const Json& members) {
  Json line{{"schema", json_schema}};
  line.update(members);
  return line.dump(-1, ' ', true, Json::error_handler_t::replace) + "\n";
}

}  // namespace

TraceOutput::TraceOutput(TraceForm form, Reasons reasons)
    : form_(std::move(form)), reasons_(std::move(reasons)), file_(nullptr, std::fclose) {
  if (form_.file.empty()) return;
  file_.reset(std::fopen(form_.file.c_str(), "we"));
  if (file_ == nullptr) throw file_failure(form_.file);
}

void TraceOutput::write(sim::trace::Reader& reader) {
  std::string pending;
  Event event{};
  while (reader.next(event)) {
    if (const std::uint64_t lost = reader.lost()) pending += lost_line(lost);
    pending += line_of(event, reader.number());
    if (pending.size() < most_pending) continue;
    deliver(pending);
    pending.clear();
  }
  if (const std::uint64_t lost = reader.lost()) pending += lost_line(lost);
  if (!pending.empty()) deliver(pending);
}

std::int64_t TraceOutput::shown_time(std::int64_t time) {
  if (form_.times == Times::absolute) return time;
  if (!origin_) origin_ = time;
  const std::int64_t shown = time - *origin_;
  if (form_.times == Times::difference) origin_ = time;
  return shown;
}

std::string TraceOutput::line_of(const Event& event, std::uint64_t number) {
  const std::int64_t time = shown_time(event.time);
  std::vector<std::string> reasons;
  if (event.violations != 0 && reasons_) reasons = reasons_(event);
  if (!form_.json) return text_line(time, event, reasons);
  Json json{{"number", number}, {"time_ns", time}};
  json.update(json_of(event));
  if (!reasons.empty()) json["violations"] = reasons;
  return json_line(json);
}

std::string TraceOutput::lost_line(std::uint64_t lost) const {
  if (form_.json) return json_line({{"lost", lost}});
  return "  " + std::to_string(lost) + (lost == 1 ? " line is" : " lines are") + " lost\n";
}

void TraceOutput::deliver(const std::string& text) {
  if (file_ == nullptr) return print(text);
  if (std::fwrite(text.data(), 1, text.size(), file_.get()) == text.size() &&
      std::fflush(file_.get()) == 0) {
    return;
  }
  throw file_failure(form_.file);
}

}  // namespace kelvo::tools
