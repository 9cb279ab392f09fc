#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "pantilt/head.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

constexpr HeadCall writes[] = {
    {"1", [] { return Pan_SendI2C_Advanced(0x42, 0x11223344, 1); }, "i2c 40: w 42 44\n"},
    {"2", [] { return Pan_SendI2C_Advanced(0x42, 0x11223344, 2); }, "i2c 40: w 42 33 44\n"},
    {"3", [] { return Pan_SendI2C_Advanced(0x42, 0x11223344, 3); }, "i2c 40: w 42 22 33 44\n"},
    {"4", [] { return Pan_SendI2C_Advanced(0x42, 0x11223344, 4); }, "i2c 40: w 42 11 22 33 44\n"},
    {"5", [] { return Pan_SendI2C_Advanced(0x42, 0x11223344, 5); },
     "i2c 40: w 42 44 11 22 33 44\n"},
    {"6", [] { return Pan_SendI2C_Advanced(0x42, 0x11223344, 6); },
     "i2c 40: w 42 33 44 11 22 33 44\n"},
    {"7", [] { return Pan_SendI2C_Advanced(0x42, 0x11223344, 7); },
     "i2c 40: w 42 22 33 44 11 22 33 44\n"},
    {"8", [] { return Pan_SendI2C_Advanced(0x42, 0x11223344, 8); },
     "i2c 40: w 42 11 22 33 44 11 22 33 44\n"},
    {"9", [] { return Pan_SendI2C_Advanced(0x42, 0x11223344, 9); }, ""},
    {"0", [] { return Pan_SendI2C_Advanced(0x42, 0x11223344, 0); }, ""},
    {"many", [] { return Pan_SendI2C_Advanced(0x42, 0x11223344, INT32_MAX); }, ""},
    {"-1", [] { return Pan_SendI2C_Advanced(0x42, 0x11223344, -1); }, "i2c 40: w\n"},
    {"top bit", [] { return Pan_SendI2C_Advanced(0xFF, 0xFF000080, 4); },
     "i2c 40: w FF FF 00 00 80\n"},
    {"low byte of the register", [] { return Pan_SendI2C_Advanced(0x1234, 5, 1); },
     "i2c 40: w 34 05\n"},
    {"tilt 1", [] { return Tilt_SendI2C_Advanced(0x42, 0x11223344, 1); }, "i2c 41: w 42 44\n"},
    {"tilt 4", [] { return Tilt_SendI2C_Advanced(0x42, 0x11223344, 4); },
     "i2c 41: w 42 11 22 33 44\n"},
    {"tilt 5", [] { return Tilt_SendI2C_Advanced(0x42, 0x11223344, 5); },
     "i2c 41: w 42 44 11 22 33 44\n"},
    {"tilt 8", [] { return Tilt_SendI2C_Advanced(0x42, 0x11223344, 8); },
     "i2c 41: w 42 11 22 33 44 11 22 33 44\n"},
    {"tilt 9", [] { return Tilt_SendI2C_Advanced(0x42, 0x11223344, 9); }, ""},
    {"tilt 0", [] { return Tilt_SendI2C_Advanced(0x42, 0x11223344, 0); }, ""},
    {"tilt -1", [] { return Tilt_SendI2C_Advanced(0x42, 0x11223344, -1); }, "i2c 41: w\n"},
    {"tilt, low byte of the register", [] { return Tilt_SendI2C_Advanced(0xFFFFFF01, 5, 1); },
     "i2c 41: w 01 05\n"},
};

TEST(AdvancedWrite, HasOneToEightBytes) {
  Script script;
  unknown_head(script);
  expect_on_tasmere(script, writes);
}

TEST(AdvancedWrite, IsTheSameOnATasmere) {
  Script script;
  tasmere_head(script);
  expect_on_tasmere(script, writes);
}

TEST(AdvancedWrite, IsTheSameOnAVetra) {
  Script script;
  vetra_head(script);
  expect_on_vetra(script, writes);
}

TEST(AdvancedWrite, IsZeroThoughItFails) {
  Script script;
  unknown_head(script);
  script.fail(Call::i2c, 1, 2, ENXIO);
  EXPECT_EQ(Pan_SendI2C_Advanced(1, 2, 3), 0);
  EXPECT_EQ(Tilt_SendI2C_Advanced(1, 2, 3), 0);
  EXPECT_EQ(script.transcript(),
            "i2c 40: w 01 00 00 02 -> ENXIO\ni2c 41: w 01 00 00 02 -> ENXIO\n");
}

}  // namespace
}  // namespace kelvo::test
