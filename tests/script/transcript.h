// The words of a transcript.
#ifndef KELVO_TESTS_SCRIPT_TRANSCRIPT_H
#define KELVO_TESTS_SCRIPT_TRANSCRIPT_H

#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <vector>

namespace kelvo::test {

template <typename... Arguments>
std::string format(const char* pattern, Arguments... arguments) {
  char text[512];
  std::snprintf(text, sizeof text, pattern, arguments...);
  return text;
}

/// Bytes as two capital hexadecimal digits each, parted by blanks.
std::string hex(std::span<const std::uint8_t> bytes);

/// Text in double quotes, with newlines and quotes escaped.
std::string quoted(const std::string& text);

/// The same lines, with each whole run of lock steps as the one word "lock" or "unlock".
std::vector<std::string> with_lock_words(const std::vector<std::string>& lines);

}  // namespace kelvo::test

#endif
