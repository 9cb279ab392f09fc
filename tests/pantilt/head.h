// What tests of the pan/tilt head begin with, and how they write down what is sent.
#ifndef KELVO_TESTS_PANTILT_HEAD_H
#define KELVO_TESTS_PANTILT_HEAD_H

#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <sstream>
#include <string>

#include "kelvo.h"
#include "pantilt/tuning.h"
#include "script/script.h"

namespace kelvo::test {

/// The detection of the family, as a Vetra answers and as anything else does.
inline constexpr const char* vetra_detection = R"(i2c 40: w F0 r 2
out "Motor Type[0]:0x56 Type[1]:0x58\n"
usleep 2000
i2c 40: w 30 r 1
usleep 2000
)";
inline constexpr const char* tasmere_detection = R"(i2c 40: w F0 r 2
out "Motor Type[0]:0x0 Type[1]:0x0\n"
)";

/// The link is open, and nothing has been asked.
inline void unknown_head(Script& script) {
  Init_I2C();
  script.transcript();
}

/// The link is open and the family known.
inline void vetra_head(Script& script) {
  Init_I2C();
  script.i2c_register(40, 0xF0, {'V', 'X'});
  ASSERT_EQ(GetMotorType(), 1);
  script.transcript();
}

inline void tasmere_head(Script& script) {
  Init_I2C();
  ASSERT_EQ(GetMotorType(), 2);
  script.transcript();
}

/// A register of two bytes, on both axes.
inline void word_register(Script& script, std::uint8_t reg, int value) {
  const Bytes bytes = {static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
  script.i2c_register(40, reg, bytes);
  script.i2c_register(41, reg, bytes);
}

/// A Vetra with the plain table, both axes at this count.
inline void tuned_vetra(Script& script, int count) {
  vetra_head(script);
  load(plain_tuning());
  word_register(script, 0x32, count);
}

/// Limits of the tilt axis, by positions.
struct TiltLimits {
  std::int32_t start;
  std::int32_t end;
  std::int32_t enabled;
};

inline void set(Script& script, const TiltLimits& limits) {
  TiltLimit(static_cast<std::uint32_t>(limits.start), static_cast<std::uint32_t>(limits.end));
  TiltLimitEn(limits.enabled);
  script.transcript();
}

struct AbsoluteMove {
  std::int32_t dir;
  std::int32_t speed;
  std::uint32_t pos;
  const char* bytes;         // behind the register
  const char* printed = "";  // by a Vetra's tilt axis
};

/// The lines with the pause that a Vetra has behind every transfer.
inline std::string paced(const std::string& lines) {
  std::istringstream stream(lines);
  std::string text;
  for (std::string line; std::getline(stream, line);) {
    text += line + "\n";
    if (line.starts_with("i2c ")) text += "usleep 2000\n";
  }
  return text;
}

/// A call, what it sends (on a Vetra, without the pauses), and its result.
struct HeadCall {
  const char* name;
  std::int32_t (*call)();
  const char* sent;
  std::int32_t result = 0;
};

inline void expect_on_vetra(Script& script, std::span<const HeadCall> rows) {
  for (const HeadCall& row : rows) {
    EXPECT_EQ(row.call(), row.result) << row.name;
    EXPECT_EQ(script.transcript(), paced(row.sent)) << row.name;
  }
}

inline void expect_on_tasmere(Script& script, std::span<const HeadCall> rows) {
  for (const HeadCall& row : rows) {
    EXPECT_EQ(row.call(), row.result) << row.name;
    EXPECT_EQ(script.transcript(), row.sent) << row.name;
  }
}

}  // namespace kelvo::test

#endif
