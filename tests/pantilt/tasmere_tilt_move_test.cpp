// A Tasmere's tilt axis positions by its Hall sensor, when that is in use.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "kelvo.h"
#include "pantilt/head.h"
#include "pantilt/tuning.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

const AbsoluteMove without_hall[] = {
    {1, 7200, 0x1234, "12 34 A0 01"},
    {0, 7200, 0x1234, "12 34 5F FF"},
    {0, 9000, 0, "00 00 5F FF"},
    {1, 9000, 65535, "FF FF A0 01"},
    {0, 100, 1, "00 01 01 55"},
    {1, 100, 1, "00 01 FE AB"},
    {0, 0, 1, "00 01 00 00"},
    {1, 0, 1, "00 01 00 00"},
    {0, -1, 1, "00 01 FF FD"},
    {2, 100, 1, "00 01 01 55"},
    {-1, 100, 1, "00 01 01 55"},
    {1, -100'000, 1, "00 01 1B 1D"},
    {0, -65'536, 70'000, "11 70 96 39"},
    {0, 100, 37'684, "93 34 01 55"},
};

TEST(TasmereTiltMove, WithoutHallSensorIsAsThatOfPan) {
  Script script;
  tasmere_head(script);
  giSerTiltUseHall = 0;
  for (const TiltLimits& limits : {TiltLimits{0, 0, 0}, TiltLimits{1000, 60000, 1}}) {
    set(script, limits);  // which are not looked at
    for (const AbsoluteMove& row : without_hall) {
      EXPECT_EQ(TiltABSMove(row.dir, row.speed, row.pos), 0);
      EXPECT_EQ(script.transcript(), std::string("i2c 41: w 42 ") + row.bytes + "\n");
    }
  }
}

const AbsoluteMove with_hall[] = {
    {0, 7200, 0, "6C CC A0 00"},
    {1, 7200, 0, "6C CC 5F FF"},
    {0, 9000, 5, "6C D1 A0 00"},
    {1, 9000, 5, "6C D1 5F FF"},
    {0, 100, 37'683, "FF FF FE AA"},
    {1, 100, 37'684, "00 00 01 55"},
    {0, 1, 65'535, "6C CB FF FC"},
    {0, 0, 0, "6C CC FF FF"},
    {1, 0, 0, "6C CC 00 00"},
    {0, -1, 0, "6C CC 00 02"},
    {2, 100, 0, "6C CC 01 55"},
    {-1, 100, 0, "6C CC 01 55"},
    {256, 100, 0, "6C CC 01 55"},
    {0, -100'000, 0, "6C CC 1B 1C"},
    {1, -100'000, 70'000, "7E 3C E4 E3"},
};

TEST(TasmereTiltMove, IsMovedToTheHallSensorAndTurned) {
  Script script;
  tasmere_head(script);
  for (const int setting : {1, 2, 255}) {
    giSerTiltUseHall = setting;
    for (const AbsoluteMove& row : with_hall) {
      EXPECT_EQ(TiltABSMove(row.dir, row.speed, row.pos), 0);
      EXPECT_EQ(script.transcript(), std::string("i2c 41: w 42 ") + row.bytes + "\n");
    }
  }
}

struct Word {
  const char* why;
  TiltLimits limits;
  std::uint32_t pos;
  const char* bytes;
};

constexpr TiltLimits both = {1000, 60000, 1};

const Word words[] = {
    {"below the start", both, 999, "70 B4"},
    {"the start", both, 1000, "70 B4"},
    {"above the start", both, 1001, "70 B5"},
    {"below the end", both, 59999, "57 2B"},
    {"the end", both, 60000, "57 2C"},
    {"above the end", both, 60001, "57 2C"},
    {"beyond", both, 70000, "57 2C"},
    {"zero", both, 0, "70 B4"},
    {"off, below the start", {1000, 60000, 0}, 999, "70 B3"},
    {"off, above the end", {1000, 60000, 0}, 60001, "57 2D"},
    {"another setting", {1000, 60000, 2}, 60001, "57 2D"},
    {"no start", {0, 60000, 1}, 60001, "57 2D"},
    {"no end", {1000, 0, 1}, 999, "70 B3"},
    {"the start counts first", {60000, 1000, 1}, 1001, "57 2C"},
    {"above both, the wrong way round", {60000, 1000, 1}, 65535, "70 B4"},
};

TEST(TasmereTiltMove, EndsAtTheLimitsOfAHallSensor) {
  Script script;
  tasmere_head(script);
  giSerTiltUseHall = 1;
  for (const Word& row : words) {
    set(script, row.limits);
    EXPECT_EQ(TiltABSMove(1, 100, row.pos), 0);
    EXPECT_EQ(script.transcript(), std::string("i2c 41: w 42 ") + row.bytes + " 01 55\n")
        << row.why;
  }
}

TEST(TasmereTiltMove, AsksForTheHallSensorOnce) {
  Script script;
  tasmere_head(script);
  script.i2c_register(41, 0x4F, {1});
  EXPECT_EQ(TiltABSMove(0, 7200, 0), 0);
  EXPECT_EQ(script.transcript(), "i2c 41: w 4F r 1\ni2c 41: w 42 6C CC A0 00\n");
  EXPECT_EQ(TiltABSMove(0, 7200, 0), 0);
  EXPECT_EQ(script.transcript(), "i2c 41: w 42 6C CC A0 00\n");
}

TEST(TasmereTiltMove, DoesWithoutAHallSensorThatDoesNotAnswer) {
  Script script;
  tasmere_head(script);
  script.i2c_register(41, 0x4F, {1});
  script.fail(Call::i2c, 1, 1, ENXIO);
  EXPECT_EQ(TiltABSMove(1, 7200, 0), 0);
  EXPECT_EQ(script.transcript(), "i2c 41: w 4F r 1 -> ENXIO\ni2c 41: w 42 00 00 A0 01\n");
  EXPECT_EQ(giSerTiltUseHall, 0);
}

TEST(TasmereTiltMove, RetunesFirst) {
  Script script;
  tasmere_head(script);
  load(plain_tuning());
  EXPECT_EQ(TiltABSMove(0, 7200, 5), 0);
  EXPECT_EQ(script.transcript(), R"(out "TASMERE #####################tilt P:0x0 I:0x0 D:0x0\n"
i2c 41: w 0C 01 16
i2c 41: w 0E 01 17
i2c 41: w 10 01 18
i2c 41: w 4F r 1
i2c 41: w 42 00 05 5F FF
)");
}

}  // namespace
}  // namespace kelvo::test
