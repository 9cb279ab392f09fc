#include "sim/fault/parse.h"

#include <algorithm>
#include <vector>

#include "sim/fault/words.h"

namespace kelvo::sim::fault {
namespace {

std::string quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

std::vector<std::string_view> split(std::string_view text) {
  constexpr std::string_view separators = " \t\n:";
  std::vector<std::string_view> words;
  std::size_t begin = text.find_first_not_of(separators);
  while (begin != std::string_view::npos) {
    const std::size_t end = std::min(text.find_first_of(separators, begin), text.size());
    words.push_back(text.substr(begin, end - begin));
    begin = text.find_first_not_of(separators, end);
  }
  return words;
}

/// Reads one word into a fault that has its port; what is wrong with it, or nothing.
std::string read_word(std::string_view text, std::vector<const Word*>& seen, Fault& fault) {
  const std::size_t equals = text.find('=');
  const std::string_view name = text.substr(0, equals);
  const Word* const word = find_word(name);
  if (word == nullptr) {
    return "there is no word " + quoted(name) + ": there are " + words_of(fault.port);
  }
  if ((word->ports & bit(fault.port)) == 0) {
    return quoted(name) + " is not for " + name_of(fault.port) + ": there are " +
           words_of(fault.port);
  }
  if (std::find(seen.begin(), seen.end(), word) != seen.end()) {
    return quoted(name) + " is given twice";
  }
  seen.push_back(word);
  const bool has_value = equals != std::string_view::npos;
  if (has_value && word->values.empty()) {
    return quoted(name) + " has no value: write " + std::string(name) + " alone";
  }
  if (!has_value && !word->values.empty()) {
    return quoted(name) + " needs a value: write " + std::string(name) + "= and " +
           values_of(*word, fault.port);
  }
  const std::string_view value = has_value ? text.substr(equals + 1) : std::string_view{};
  if (word->read(value, fault)) {
    fault.frames &= word->frames;
    return {};
  }
  return quoted(name) + " cannot be " + quoted(value) + ": it takes " +
         values_of(*word, fault.port);
}

std::string judge_effects(const std::vector<const Word*>& seen, Port port) {
  std::string effects;
  for (const Word* const word : seen) {
    if (!word->effect) continue;
    if (!effects.empty()) {
      return quoted(effects) + " and " + quoted(word->name) +
             " are two effects: make a fault of each";
    }
    effects = word->name;
  }
  if (!effects.empty()) return {};
  return "it has no effect: add one of " + effects_of(port);
}

/// Once all words are read.
std::string finish(const std::vector<const Word*>& seen, Fault& fault) {
  if (std::string error = judge_effects(seen, fault.port); !error.empty()) return error;
  if (fault.frames == 0) return "no transfer is all of this at once: leave a word away";
  // An open is no transfer: it is meant only where nothing else can be.
  if (fault.frames != bit(Frame::open)) {
    fault.frames &= static_cast<Frames>(~bit(Frame::open));
  }
  const auto given = [&seen](std::string_view name) {
    return std::find(seen.begin(), seen.end(), find_word(name)) != seen.end();
  };
  if (!given("nth")) fault.nth = fault.every;
  if (given("nth") && !given("every") && !given("times")) fault.times = 1;
  return {};
}

std::string keep_text(const std::vector<std::string_view>& words, Fault& fault) {
  std::string text;
  for (const std::string_view word : words) text += (text.empty() ? "" : " ") + std::string(word);
  if (text.size() > Fault::longest_text) {
    return "it is longer than " + std::to_string(Fault::longest_text) +
           " letters: use numbers for names";
  }
  std::copy(text.begin(), text.end(), fault.text.begin());
  return {};
}

}  // namespace

ParsedFault parse(std::string_view text) {
  ParsedFault parsed;
  Fault& fault = parsed.fault;
  const std::vector<std::string_view> words = split(text);
  if (words.empty()) {
    parsed.error = "the fault is empty: begin with one of " + all_ports();
    return parsed;
  }
  const std::optional<Port> port = port_of(words.front());
  if (!port) {
    parsed.error =
        "there is no device " + quoted(words.front()) + ": begin with one of " + all_ports();
    return parsed;
  }
  fault.port = *port;
  fault.frames = frames_of(*port);
  std::vector<const Word*> seen;
  for (std::size_t i = 1; i < words.size() && parsed.error.empty(); ++i) {
    parsed.error = read_word(words[i], seen, fault);
  }
  if (parsed.error.empty()) parsed.error = finish(seen, fault);
  if (parsed.error.empty()) parsed.error = keep_text(words, fault);
  return parsed;
}

}  // namespace kelvo::sim::fault
