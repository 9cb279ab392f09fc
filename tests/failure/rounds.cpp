#include "failure/rounds.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <sstream>

#include "failure/head.h"
#include "failure/rules.h"
#include "kelvo.h"
#include "script/child.h"
#include "script/transcript.h"

namespace kelvo::test::failure {
namespace {

constexpr char parting = '\f';  // between the fields of what a process tells

/// Prints that a failure causes, or fails to cause; all else that is printed is no concern here.
bool tells_of_failure(const std::string& line) {
  static const char* const words[] = {"SendCommand Error", "ReadSpi Error",  "66 Read Checksum",
                                      "67 Read Checksum",  "ChecksumError:", "open /dev/",
                                      "Load default"};
  return std::any_of(std::begin(words), std::end(words), [&](const char* word) {
    return line.starts_with(std::string("out \"") + word);
  });
}

std::string without_dumps(const std::string& transcript) {
  std::istringstream lines(transcript);
  std::string text;
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("out ") || tells_of_failure(line)) text += line + "\n";
  }
  return text;
}

std::string describe(const Outcome& outcome) {
  return format("result %lld\nbuffer %s\n", static_cast<long long>(outcome.result),
                hex(outcome.out).c_str());
}

/// A record of 32-bit fields, each with the code of its query as its value.
Bytes record(std::span<const std::uint8_t> queries) {
  Bytes bytes;
  for (const std::uint8_t query : queries) bytes.insert(bytes.end(), {query, 0, 0, 0});
  return bytes;
}

/// Answers to every query: one that reads a value of a record reads what is in the files, the error
/// code of a quality check is no error of the iris, and all others have 1, 2, 3, 4.
void answer_queries(Script& script) {
  for (int code = 0x80; code <= 0xFF; ++code) {
    script.query_reply(static_cast<std::uint8_t>(code), {1, 2, 3, 4});
  }
  script.query_reply(0x3A, {1, 2, 3, 4});
  script.query_reply(0x82, {1, 2, 3, 0});
  for (const std::uint8_t code : iris_record) script.query_reply(code, {0, 0, 0, code});
  for (const std::uint8_t code : stabiliser_record) script.query_reply(code, {0, 0, 0, code});
}

/// Brings the library to where it was when it was loaded, as far as anything does.
void put_back(Script& script) {
  SetLensType(7);
  // Nothing but a failed transfer sets the latch.
  script.fail(Call::transfer);
  std::uint8_t reply[4];
  RecvCommand(0x80, 0, reply);
  CloseSPI();
  Release_I2C();
  hndl = 0;
  forget_head();
}

void write_camera_files(Script& script) {
  script.file("/bin/DC_S_Cali.dat", record(iris_record));
  script.file("/bin/DC_S_Cali_T5391.dat", record(iris_record));
  script.file("/bin/OIS_S_Cali.dat", record(stabiliser_record));
}

void set_up(Script& script, const Setting& setting, const Fault& fault,
            const std::vector<Answer>& answers) {
  answer_queries(script);
  for (const Answer& answer : answers) script.reply_once({answer.code}, answer.received);
  script.i2c_register(40, 0x32, {0x56, 0x78});
  set_up_head(script, setting.head);
  script.semaphore(setting.semaphore, 0);
  if (setting.variant != 0) SetLensType(setting.variant);
  if (fault.nth != 0) script.fail(fault.call, fault.nth, fault.for_good ? forever : 1, EIO);
  if (!setting.devices) script.fail(Call::open, 1, forever, ENOENT);
  script.transcript();
}

/// The latch is not exported, so it is asked for: it hides the variant at -1, and a query frame goes
/// out at 0 alone.
std::string latch(Script& script) {
  const bool hides_variant = GetLensType() == -1;
  const int transfers = script.count(Call::transfer);
  std::uint8_t reply[4] = {};
  RecvCommand(0x80, 0, reply);
  const bool query_sent = script.count(Call::transfer) > transfers;
  if (hides_variant != query_sent) return query_sent ? "0" : "-1";
  return "undecided";
}

std::string state(Script& script) {
  const bool open = fd >= 0;
  const int link = hndl > 0 ? 1 : hndl;
  const int variant = gi30516Ver;
  const std::string text =
      format("variant %d\nlatch %s\nlens link %s\npan/tilt link %d\nlock %d\nopen files %d\n",
             variant, latch(script).c_str(), open ? "open" : "closed", link,
             script.semaphore_value(), script.open_files());
  script.transcript();  // of asking
  return text;
}

template <typename Count>
std::vector<int> each_kind(const Count& count) {
  std::vector<int> numbers(call_kinds);
  for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = count(static_cast<Call>(i));
  return numbers;
}

constexpr char does_not_return[] = "does not return\n";

/// What is done with the account of a call that never returns, before the process ends.
using Farewell = std::function<void(const Account&)>;

/// The library as it was loaded but for what is carried, and the scripted host around it. A call that
/// must not return is left in the last of the waits that are foretold.
Account play_here(const Scenario& scenario, const Fault& fault, const Carried& carried,
                  const Farewell& farewell) {
  Oracle oracle(scenario.setting, fault, {}, carried);
  scenario.rule(oracle);
  Script script;
  put_back(script);
  if (oracle.calls(Call::fopen) > 0) write_camera_files(script);
  set_up(script, scenario.setting, fault, oracle.answers());
  const std::vector<int> before = each_kind([&](Call call) { return script.count(call); });
  const auto account = [&](const std::string& end) {
    const std::vector<int> calls = each_kind(
        [&](Call call) { return script.count(call) - before[static_cast<std::size_t>(call)]; });
    const std::string text = without_dumps(script.transcript()) + end;
    return Account{text + state(script), calls, ""};
  };
  if (!oracle.returns()) {
    script.at(Call::sleep, oracle.calls(Call::sleep), [&] {
      farewell(account(does_not_return));
      _exit(0);
    });
  }
  return account(describe(scenario.call()));
}

struct Foretold {
  Account account;
  Carried carried;
};

Foretold foretell(const Scenario& scenario, const Fault& fault,
                  const std::vector<std::string>& frames, const Carried& carried) {
  Oracle oracle(scenario.setting, fault, frames, carried);
  const Outcome outcome = scenario.rule(oracle);
  const std::vector<int> calls = each_kind([&](Call call) { return oracle.calls(call); });
  const std::string end = oracle.returns() ? describe(outcome) : does_not_return;
  return {{oracle.transcript() + end + oracle.state(), calls, ""}, oracle.carried()};
}

enum class Verdict { disturbed, undisturbed, against_the_rules };

/// Whether the last round met no failure; false as well after a round that went against the rules.
bool play_series(const Scenario& scenario, const Series& series,
                 const std::vector<std::string>& frames, Carried& carried, const Tell& tell) {
  for (int nth = series.first; nth <= series.last; nth = series.next(nth)) {
    tell(
        format("%s number %d fails %s\n", series.name, nth, series.for_good ? "for good" : "once"));
    const Fault fault = {series.call, nth, series.for_good};
    const Foretold expected = foretell(scenario, fault, frames, carried);
    const auto judge = [&](const Account& seen) {
      if (seen.text != expected.account.text) {
        tell(parting + seen.text + parting + expected.account.text);
        return Verdict::against_the_rules;
      }
      const bool disturbed = seen.calls[static_cast<std::size_t>(series.call)] >= nth;
      return disturbed ? Verdict::disturbed : Verdict::undisturbed;
    };
    const Account seen = play_here(scenario, fault, carried, [&](const Account& left) {
      if (judge(left) == Verdict::undisturbed) tell(std::string(1, parting));
    });
    carried = expected.carried;
    const Verdict verdict = judge(seen);
    if (verdict != Verdict::disturbed) return verdict == Verdict::undisturbed;
  }
  return false;
}

void play_all(const Scenario& scenario, const std::vector<Series>& all,
              const std::vector<std::string>& frames, const Tell& tell) {
  Carried carried;
  for (const Series& series : all) {
    if (!play_series(scenario, series, frames, carried, tell)) return;
  }
  tell(std::string(1, parting));
}

int number(const std::string& text) {
  return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

std::vector<std::string> split(const std::string& text, char separator) {
  std::istringstream stream(text + separator);
  std::vector<std::string> fields;
  for (std::string field; std::getline(stream, field, separator);) fields.push_back(field);
  return fields;
}

}  // namespace

Report play(const Scenario& scenario, const std::vector<Series>& series,
            const std::vector<std::string>& frames) {
  const Told told =
      in_a_process([&](const Tell& tell) { play_all(scenario, series, frames, tell); });
  const std::vector<std::string> fields = split(told.text, parting);
  const std::vector<std::string> rounds = split(fields[0], '\n');
  Report report;
  report.complete = fields.size() == 2;
  report.trouble = told.trouble;
  if (rounds.size() > 1) report.round = rounds[rounds.size() - 2];
  if (fields.size() == 3) {
    report.seen = fields[1];
    report.expected = fields[2];
  }
  return report;
}

Account play_undisturbed(const Scenario& scenario) {
  const Told told = in_a_process([&](const Tell& tell) {
    const auto tell_all = [&](const Account& account) {
      for (const int calls : account.calls) tell(format("%d\n", calls));
      tell(parting + account.text);
    };
    tell_all(play_here(scenario, {}, {}, tell_all));
  });
  const std::vector<std::string> fields = split(told.text, parting);
  if (fields.size() != 2) return {"", {}, "nothing told: " + told.trouble};
  const std::vector<std::string> calls = split(fields[0], '\n');
  return {fields[1],
          each_kind([&](Call call) { return number(calls[static_cast<std::size_t>(call)]); }),
          told.trouble};
}

Account foretell_undisturbed(const Scenario& scenario, const std::vector<std::string>& frames) {
  return foretell(scenario, {}, frames, {}).account;
}

std::vector<std::string> frames_in(const std::string& text) {
  std::vector<std::string> frames;
  for (const std::string& line : split(text, '\n')) {
    for (const std::string place : {"spi_renesas: ", "spi_pt5111: "}) {
      if (line.starts_with(place)) frames.push_back(line.substr(place.size()));
    }
    if (line.starts_with("i2c ")) frames.push_back(line);
  }
  return frames;
}

}  // namespace kelvo::test::failure
