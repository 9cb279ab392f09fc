// The factory's quality checks, in a child: each boots the controller twice, and that of the iris has no
// end of its own.
#include <charconv>
#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/child.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/common/numbers.h"
#include "tools/kelvoctl/common/signals.h"
#include "tools/kelvoctl/lens/lens_use.h"
#include "tools/kelvoctl/records/record.h"
#include "tools/kelvoctl/records/record_file.h"
#include "wire/lens_program.h"
#include "wire/paths.h"

namespace kelvo::ctl {
namespace {

struct CheckOptions {
  std::chrono::microseconds timeout = std::chrono::seconds(60);
};

/// What the child found out.
struct Checked {
  std::int32_t result = 0;
  std::int32_t answers = 0;  // GetLensType() afterwards
};

Checked check_unit(const RecordKind& kind) {
  SetLensType(static_cast<std::int32_t>(kind.checked));  // the check does not clear the latch
  Checked checked;
  checked.result = kind.check();
  checked.answers = GetLensType();
  return checked;
}

Failure link_failure() {
  return {ExitCode::link_failed,
          std::string(wire::lens_controller_device) +
              ": a transfer failed, and nothing is measured: see whether the controller has power, "
              "and boot it"};
}

/// Where a check is, from what the library prints: its states, once a second, then its values.
class CheckProgress {
 public:
  CheckProgress(Session& session, const RecordKind& kind, std::chrono::microseconds timeout)
      : session_(session), kind_(kind), values_(kind.fields.size()), timeout_(timeout) {}

  /// Takes a line that was printed. Throws a Failure when the unit has been measured for too long, or is not
  /// measured at all and that would have no end.
  void take(const std::string& line) {
    if (states_.empty() && line.starts_with(failure_line)) link_failed_ = true;
    if (line.starts_with(state_line)) take_state(line);
    if (!states_.empty() && found_ < kind_.fields.size()) take_value(line);
    session_.progress(std::string("calibrate ") + kind_.name + ": " + text());
  }

  bool measured() const { return found_ == kind_.fields.size(); }
  const RecordValues& values() const { return values_; }
  bool link_failed() const { return link_failed_; }

  /// Each state and for how many seconds it was seen.
  Json states() const { return states_; }

 private:
  static constexpr std::string_view state_line = "State:";
  static constexpr std::string_view failure_line = "SendCommand Error";

  void take_state(const std::string& line) {
    const std::size_t last = line.find_last_of(' ');
    unsigned state = 0;
    std::from_chars(line.data() + last + 1, line.data() + line.size(), state);
    if (states_.empty() || states_.back()["state"] != state) {
      states_.push_back({{"state", state}, {"meaning", meaning(state)}, {"seconds", 0}});
    }
    if (state == wire::calibration_finished) return;
    states_.back()["seconds"] = states_.back()["seconds"].get<int>() + 1;
    // The child waits here, between two questions, with nothing under way: it can be ended.
    if (link_failed_ && !kind_.check_ends) throw link_failure();
    if (std::chrono::seconds(++seconds_) >= timeout_) {
      throw Failure(ExitCode::time_out, std::string(kind_.name) +
                                            " is measured for longer than the time-out: boot the "
                                            "controller");
    }
  }

  static const char* meaning(unsigned state) {
    if (state == wire::calibration_idle) return "idle";
    return state == wire::calibration_finished ? "finished" : "measuring";
  }

  /// "hg 0xd3:00 00 04 17": the query and its four reply bytes.
  void take_value(const std::string& line) {
    const std::size_t begin = line.find("0x");
    const std::size_t colon = line.find(':');
    if (begin == std::string::npos || colon == std::string::npos || colon < begin) return;
    const unsigned query = hexadecimal_at(line, begin + 2);
    for (std::size_t i = 0; i < kind_.fields.size(); ++i) {
      if (kind_.fields[i].query != query) continue;
      values_[i] = hexadecimal_at(line, colon + 7) << 8 | hexadecimal_at(line, colon + 10);
      ++found_;
    }
  }

  static unsigned hexadecimal_at(const std::string& line, std::size_t place) {
    unsigned value = 0;
    if (place + 2 > line.size()) return value;
    std::from_chars(line.data() + place, line.data() + place + 2, value, 16);
    return value;
  }

  std::string text() const {
    if (states_.empty()) return "boot";
    const Json& state = states_.back();
    if (state["state"] == wire::calibration_finished) return "finished, boot";
    return "state " + state["state"].dump() + ", " + std::to_string(seconds_) + " s";
  }

  Session& session_;
  const RecordKind& kind_;
  RecordValues values_;
  std::size_t found_ = 0;
  std::chrono::microseconds timeout_;
  Json states_ = Json::array();
  int seconds_ = 0;
  bool link_failed_ = false;
};

/// The child, to its end.
Outcome<Checked> check_in_child(Session& session, const RecordKind& kind, CheckProgress& progress) {
  try {
    return call_in_child<Checked>(
        session, [&kind] { return check_unit(kind); },
        [&progress](const std::string& line) { progress.take(line); }, Pace::in_step);
  } catch (const Failure& failure) {
    session.detach();
    // To the library a state that it cannot ask for is one that does not change.
    if (failure.code() == static_cast<int>(ExitCode::time_out)) use_lens(session);
    throw;
  }
}

/// A value that could not be asked for is 0, and so are all behind it.
bool ends_with_zero(const CheckProgress& progress) {
  return progress.measured() && progress.values().back() == 0;
}

/// The three files against what was measured: the check passes over one that it cannot write.
Json files_json(Session& session, const RecordKind& kind, const RecordValues& measured) {
  Json files = Json::array();
  for (const char* const copy : kind.copies) {
    const bool written = stored_bytes(copy) == bytes_of(measured);
    files.push_back({{"file", copy}, {"written", written}});
    if (!written) {
      session.complain(ExitCode::no_output, std::string(copy) + ": the record was not written");
    }
  }
  return files;
}

void complain(Session& session, const RecordKind& kind, const Checked& checked,
              const CheckProgress& progress) {
  const std::string unit(kind.name);
  if (progress.link_failed()) session.complain(ExitCode::link_failed, link_failure().what());
  if (ends_with_zero(progress)) {
    session.complain(
        ExitCode::link_failed,
        "the record ends with zeros, as where a transfer fails: measure " + unit + " again");
  }
  if (checked.result < 0) {
    session.complain(ExitCode::bad_data, unit + " was not measured: it did not begin, or not end");
  } else if (checked.result != 0) {
    const bool kept = kind.checked == LensModule::de015;
    session.complain(ExitCode::bad_data,
                     unit + " has the error " + std::to_string(checked.result) +
                         (kept ? ": its record was written all the same" : ": no record written"));
  }
  if (checked.answers < 0) {
    session.complain(ExitCode::link_failed, "the program does not answer: boot the controller");
  }
}

Json calibrate(Session& session, const RecordKind& kind, const CheckOptions& options) {
  const LensModule module = session.lens();
  refuse_unless(
      module == kind.checked, module,
      std::string("has no check of its ") + kind.name + ": it is for " + name_of(kind.checked));
  session.attach_lens();
  session.confirm("The check boots the controller twice and replaces the unit's " +
                  std::string(kind.name) + " record. Go on?");
  session.limit_patience(options.timeout);
  session.await_bus_lock();
  CheckProgress progress(session, kind, options.timeout);
  const Outcome<Checked> outcome = check_in_child(session, kind, progress);
  session.detach();
  const Checked& checked = outcome.result;
  complain(session, kind, checked, progress);
  Json result{{"module", name_of(module)},
              {"record", kind.name},
              {"result", checked.result},
              {"states", progress.states()}};
  if (progress.measured()) {
    result["files"] = files_json(session, kind, progress.values());
    result["fields"] = fields_json(kind, progress.values());
  }
  if (outcome.interrupted) {
    session.complain(ExitCode::interrupted, "interrupted: the check was carried through");
  }
  return result;
}

}  // namespace

void add_calibrate(CommandTable& table) {
  CLI::App& group = CommandTable::add_group(table.root(), "calibrate",
                                            "Measures a fitted unit, as the factory does");
  for (const RecordKind& kind : record_kinds()) {
    auto [command, options] =
        table.add<CheckOptions>(group, kind.name,
                                std::string("Measures the ") + kind.name + " of " +
                                    name_of(kind.checked) + " and writes its record",
                                [&kind](Session& session, const CheckOptions& given) {
                                  return calibrate(session, kind, given);
                                });
    add_duration(command, "--timeout", options.timeout,
                 "The longest measurement; 60s unless given");
  }
}

}  // namespace kelvo::ctl
