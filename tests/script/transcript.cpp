#include "script/transcript.h"

#include <algorithm>
#include <cstddef>

namespace kelvo::test {

std::string hex(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) text += format(text.empty() ? "%02X" : " %02X", byte);
  return text;
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char character : text) {
    if (character == '\n') {
      result += "\\n";
    } else if (character == '"' || character == '\\') {
      result += std::string("\\") + character;
    } else {
      result += character;
    }
  }
  return result + "\"";
}

namespace {

/// A run of raw lock steps that the transcript writes as one word.
struct LockWord {
  const char* word;
  std::vector<std::string> steps;
};

const std::vector<LockWord>& lock_words() {
  static const std::vector<LockWord> words = {
      {"lock", {"ftok /lib/libkelvo.so 0", "semget 0x4b454c56 0 0", "semop 0/UNDO +1/UNDO"}},
      {"unlock",
       {"ftok /lib/libkelvo.so 0", "semget 0x4b454c56 0 0", "semctl GETVAL", "semop -1/UNDO"}},
  };
  return words;
}

}  // namespace

std::vector<std::string> with_lock_words(const std::vector<std::string>& lines) {
  std::vector<std::string> result;
  for (std::size_t at = 0; at < lines.size();) {
    const LockWord* found = nullptr;
    for (const LockWord& word : lock_words()) {
      const bool fits = word.steps.size() <= lines.size() - at;
      if (fits && std::equal(word.steps.begin(), word.steps.end(),
                             lines.begin() + static_cast<std::ptrdiff_t>(at))) {
        found = &word;
      }
    }
    result.push_back(found != nullptr ? found->word : lines[at]);
    at += found != nullptr ? found->steps.size() : 1;
  }
  return result;
}

}  // namespace kelvo::test
