// One call on one lens module, and what must come of it.
#ifndef KELVO_TESTS_LENS_MODULE_CASE_H
#define KELVO_TESTS_LENS_MODULE_CASE_H

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "kelvo.h"
#include "script/script.h"

namespace kelvo::test {

/// What is left out where only frames, waits and prints matter.
inline const std::vector<std::string> locks_and_opening = {"lock", "unlock", "open"};
inline const std::vector<std::string> locks = {"lock", "unlock"};

struct ModuleCase {
  std::int32_t variant;
  std::int64_t (*call)();
  const char* transcript;  // without the locks and the opening of the device
  std::int64_t result = 0;
};

/// A call with these arguments, so that a row can name it.
template <auto function, auto... arguments>
std::int64_t calling() {
  return function(arguments...);
}

inline void expect_cases(std::span<const ModuleCase> rows) {
  ASSERT_FALSE(rows.empty());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const ModuleCase& row = rows[i];
    SCOPED_TRACE("row " + std::to_string(i) + ", variant " + std::to_string(row.variant));
    Script script;
    SetLensType(row.variant);
    EXPECT_EQ(row.call(), row.result);
    EXPECT_EQ(script.transcript_without(locks_and_opening), row.transcript);
  }
}

/// The frame of a command, in the transcript of a move on a module; empty without one.
inline std::string frame_of_move(std::int32_t variant,
                                 std::uint32_t (*move)(std::uint8_t speed, std::uint32_t steps),
                                 std::uint8_t speed, std::uint32_t steps,
                                 const std::string& command) {
  Script script;
  SetLensType(variant);
  move(speed, steps);
  const std::string text = script.transcript();
  const std::size_t at = text.find(": " + command + " ");
  return at == std::string::npos ? "" : text.substr(at + 2, 20);
}

/// Sets the latch as a failed transfer does, and forgets what that left in the transcript.
inline void set_latch(Script& script) {
  script.fail(Call::transfer, 1, 1, EIO);
  std::uint8_t reply[4];
  RecvCommand(0x80, 0, reply);
  script.transcript();
}

}  // namespace kelvo::test

#endif
