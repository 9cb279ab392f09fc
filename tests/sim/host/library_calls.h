// What the tests of the real library on the simulated camera have besides its functions.
#ifndef KELVO_TESTS_SIM_HOST_LIBRARY_CALLS_H
#define KELVO_TESTS_SIM_HOST_LIBRARY_CALLS_H

#include <gtest/gtest.h>
#include <kelvo.h>
#include <time.h>

#include <cstdint>

namespace kelvo::test {

inline void pass_ms(std::int64_t milliseconds) {
  const timespec time{milliseconds / 1000, milliseconds % 1000 * 1'000'000};
  nanosleep(&time, nullptr);
}

/// The 16-bit answer of the program that runs.
inline int read_back(std::uint8_t query) {
  std::uint8_t reply[4] = {};
  EXPECT_EQ(RecvCommand(query, 0, reply), 0);
  return reply[2] << 8 | reply[3];
}

}  // namespace kelvo::test

#endif
