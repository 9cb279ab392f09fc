#include <vector>

#include "costs/costs.h"
#include "script/transcript.h"

namespace kelvo::test::costs {
namespace {

constexpr Place anywhere = {"", Scope::neither, 0};
constexpr Place modules[] = {
    {"DE015", Scope::modules, 7}, {"DF033", Scope::modules, 8}, {"T5391", Scope::modules, 9}};
constexpr Place families[] = {{"Vetra", Scope::families, 1}, {"Tasmere", Scope::families, 2}};

constexpr char introduction[] = R"(# What a call costs

For each exported function: system calls / lock sections / bytes on the wire. This page is generated
(`./dev costs`) from the library itself on a camera that answers everything, and a test holds it against the
library: a change that adds a system call shows here.

- System calls are those that the library asks for through libc: opening and closing devices, their requests,
  the five steps of the bus lock (of which `ftok` is one), sleeps. A shell command counts as one, and so does
  opening a file, whatever libc makes of it.
- A lock section is one time from taking to giving back the bus lock.
- Bytes are those of SPI transfers, which carry as many in either direction, and of I2C messages without their
  address bytes.

The devices are open, the lens module and the controller family are known. Where a second call costs something
else than the first, both stand there: a first move waits for its motor, and gains that have been written are
not written again.
)";

std::string text_of(const Cost& cost) {
  return format("%d / %d / %d", cost.system_calls, cost.lock_sections, cost.bytes);
}

std::string cell(const Function& function, const Place& place) {
  const Costs costs = measure(function, place);
  if (!costs.trouble.empty()) return costs.trouble;
  const std::string first = text_of(costs.first);
  return costs.first == costs.again ? first : first + ", then " + text_of(costs.again);
}

std::string row(const Function& function, std::span<const Place> places) {
  std::string text = "| `" + std::string(function.call) + "` |";
  for (const Place& place : places) text += " " + cell(function, place) + " |";
  return text + "\n";
}

/// The functions of one scope as a table; nothing when there are none.
std::string table_of(const Chapter& chapter, Scope scope, std::span<const Place> places) {
  std::string rows;
  for (const Function& function : chapter.functions) {
    if (function.scope == scope) rows += row(function, places);
  }
  if (rows.empty()) return "";
  std::string head = "\n| call |";
  std::string line = "|---|";
  for (const Place& place : places) {
    head += scope == Scope::neither ? " cost |" : " " + std::string(place.name) + " |";
    line += "---|";
  }
  return head + "\n" + line + "\n" + rows;
}

}  // namespace

std::string document() {
  std::string text = introduction;
  for (const Chapter& chapter : chapters()) {
    text += "\n## " + std::string(chapter.title) + "\n";
    text += table_of(chapter, Scope::neither, {&anywhere, 1});
    text += table_of(chapter, Scope::modules, modules);
    text += table_of(chapter, Scope::families, families);
  }
  return text;
}

}  // namespace kelvo::test::costs
