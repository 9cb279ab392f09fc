// A tuning table in which every word can be told from every other, and the caches of what was written.
#ifndef KELVO_TESTS_PANTILT_TUNING_H
#define KELVO_TESTS_PANTILT_TUNING_H

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "kelvo.h"

namespace kelvo::test {

using Tuning = std::array<std::int32_t, 84>;

/// Word n is 0x100 + n; ramps, which travel in 32 bits, have 0x12 above that.
constexpr Tuning plain_tuning() {
  Tuning words{};
  for (int n = 0; n < 84; ++n) words[static_cast<std::size_t>(n)] = 0x100 + n;
  for (const std::size_t ramp : {61, 62, 68, 69, 75, 76, 82, 83}) words[ramp] += 0x120000;
  return words;
}

inline void load(const Tuning& words) {
  std::uint8_t bytes[336];
  std::memcpy(bytes, words.data(), sizeof bytes);
  Init_Setup_PID(bytes);
}

/// The same table with one word changed.
inline void load_with(std::size_t word, std::int32_t value) {
  Tuning words = plain_tuning();
  words[word] = value;
  load(words);
}

/// A word of the table, and what its change makes the library send.
struct ChangedWord {
  std::size_t word;
  const char* sent;
};

/// Nothing was written yet, for all that the library knows.
inline void forget_gains() {
  std::fill(std::begin(iPanVETRA_Motor_Reg), std::end(iPanVETRA_Motor_Reg), 0);
  std::fill(std::begin(iTiltVETRA_Motor_Reg), std::end(iTiltVETRA_Motor_Reg), 0);
  std::fill(std::begin(iPanTASMERE_PID), std::end(iPanTASMERE_PID), 0);
  std::fill(std::begin(iTiltTASMERE_PID), std::end(iTiltTASMERE_PID), 0);
}

}  // namespace kelvo::test

#endif
