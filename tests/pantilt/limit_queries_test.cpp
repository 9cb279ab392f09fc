#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>

#include "kelvo.h"
#include "pantilt/head.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

using Ends = std::pair<std::uint32_t, std::uint32_t>;
using Query = std::int32_t (*)(std::uint32_t* start, std::uint32_t* end);

Ends ends(Query query) {
  Ends found = {0xEEEEEEEE, 0xEEEEEEEE};
  EXPECT_EQ(query(&found.first, &found.second), 0);
  return found;
}

/// Start and length of both axes; the bytes behind the first two are those of no number.
void tasmere_limits(Script& script, const Bytes& start, const Bytes& length) {
  for (const int slave : {40, 41}) {
    script.i2c_register(slave, 0x4A, start);
    script.i2c_register(slave, 0x4B, length);
  }
}

TEST(LimitEnableQuery, IsTheRegisterOfAVetra) {
  Script script;
  vetra_head(script);
  for (const std::uint8_t value : {0, 1, 2, 255}) {
    script.i2c_register(40, 0x33, {value});
    script.i2c_register(41, 0x33, {static_cast<std::uint8_t>(value ^ 0x10)});
    EXPECT_EQ(GetPanLimitEn(), value);
    EXPECT_EQ(GetTiltLimitEn(), value ^ 0x10);
    EXPECT_EQ(script.transcript(), paced("i2c 40: w 33 r 1\ni2c 41: w 33 r 1\n"));
  }
}

TEST(LimitEnableQuery, IsTheTravelModeOfATasmere) {
  Script script;
  tasmere_head(script);
  const std::pair<Bytes, std::int32_t> rows[] = {{{0, 2}, 1}, {{7, 2}, 1}, {{0, 1}, 0}, {{2, 0}, 0},
                                                 {{0, 0}, 0}, {{0, 3}, 0}, {{2, 1}, 0}};
  for (const auto& [mode, limited] : rows) {
    script.i2c_register(40, 0x1A, mode);
    script.i2c_register(41, 0x1A, mode);
    EXPECT_EQ(GetPanLimitEn(), limited);
    EXPECT_EQ(GetTiltLimitEn(), limited);
    EXPECT_EQ(script.transcript(), "i2c 40: w 1A r 2\ni2c 41: w 1A r 2\n");
  }
}

TEST(LimitEnableQuery, IsZeroWhenItFails) {
  Script script;
  tasmere_head(script);
  script.i2c_register(40, 0x1A, {0, 2});
  script.i2c_register(41, 0x1A, {0, 2});
  script.fail(Call::i2c, 1, 2, ENXIO);
  EXPECT_EQ(GetPanLimitEn(), 0);
  EXPECT_EQ(GetTiltLimitEn(), 0);
}

TEST(LimitQuery, GivesTheBareCountsOfAVetra) {
  Script script;
  vetra_head(script);
  script.i2c_register(40, 0x34, {0x12, 0x34, 0x56, 0x78});
  script.i2c_register(41, 0x34, {0xFF, 0xFE, 0x00, 0x01});
  EXPECT_EQ(ends(GetPanLimitPos), Ends(0x1234, 0x5678));
  EXPECT_EQ(script.transcript(), paced("i2c 40: w 34 r 4\n"));
  EXPECT_EQ(ends(GetTiltLimitPos), Ends(0xFFFE, 1));
  EXPECT_EQ(script.transcript(), paced("i2c 41: w 34 r 4\nout \"Tilt istart:65534 iend:1 \\n\"\n"));
}

TEST(LimitQuery, OfAVetraIsZeroWhenItFails) {
  Script script;
  vetra_head(script);
  script.i2c_register(40, 0x34, {0x12, 0x34, 0x56, 0x78});
  script.i2c_register(41, 0x34, {0x12, 0x34, 0x56, 0x78});
  script.fail(Call::i2c, 1, 2, ENXIO);
  EXPECT_EQ(ends(GetPanLimitPos), Ends(0, 0));
  EXPECT_EQ(ends(GetTiltLimitPos), Ends(0, 0));
}

TEST(LimitQuery, AddsTheLengthOfATasmereToItsStart) {
  Script script;
  tasmere_head(script);
  tasmere_limits(script, {0xEA, 0x60}, {0x19, 0x87});
  EXPECT_EQ(ends(GetPanLimitPos), Ends(60000, 66535));
  EXPECT_EQ(script.transcript(), "i2c 40: w 4A r 2\ni2c 40: w 4B r 2\n");
}

TEST(LimitQuery, OfATasmeresPanAxisKnowsNoHallSensor) {
  Script script;
  tasmere_head(script);
  giSerTiltUseHall = 1;
  tasmere_limits(script, {0x00, 0x05}, {0x00, 0x07});
  EXPECT_EQ(ends(GetPanLimitPos), Ends(5, 12));
}

TEST(LimitQuery, TakesTheHallSensorsPlaceFromTheTiltStart) {
  Script script;
  tasmere_head(script);
  for (const int setting : {1, 2}) {
    giSerTiltUseHall = setting;
    tasmere_limits(script, {0x70, 0xB4, 0xAA, 0xAA}, {0x01, 0x02, 0xBB, 0xBB});
    EXPECT_EQ(ends(GetTiltLimitPos), Ends(1000, 1258));
    EXPECT_EQ(script.transcript(),
              "i2c 41: w 4A r 4\ni2c 41: w 4B r 4\nout \"Tilt istart:1000 iend:1258 \\n\"\n");
  }
}

TEST(LimitQuery, LeavesATiltStartBelowTheHallSensorNegative) {
  Script script;
  tasmere_head(script);
  giSerTiltUseHall = 1;
  tasmere_limits(script, {0x00, 0x00}, {0x00, 0x05});
  EXPECT_EQ(ends(GetTiltLimitPos), Ends(0xFFFF9334, 0xFFFF9339));
  EXPECT_EQ(script.transcript(),
            "i2c 41: w 4A r 4\ni2c 41: w 4B r 4\nout \"Tilt istart:-27852 iend:-27847 \\n\"\n");
}

TEST(LimitQuery, IgnoresTheTiltLengthWithoutHallSensor) {
  Script script;
  tasmere_head(script);
  giSerTiltUseHall = 0;
  tasmere_limits(script, {0xEA, 0x60, 0xAA, 0xAA}, {0x19, 0x87, 0xBB, 0xBB});
  EXPECT_EQ(ends(GetTiltLimitPos), Ends(60000, 60000));
  EXPECT_EQ(script.transcript(),
            "i2c 41: w 4A r 4\ni2c 41: w 4B r 4\nout \"Tilt istart:60000 iend:60000 \\n\"\n");
}

TEST(LimitQuery, OfATasmeresTiltAxisAsksForTheHallSensorOnce) {
  Script script;
  tasmere_head(script);
  script.i2c_register(41, 0x4F, {1});
  tasmere_limits(script, {0x6C, 0xCC}, {0x00, 0x01});
  const std::string query =
      "i2c 41: w 4A r 4\ni2c 41: w 4B r 4\nout \"Tilt istart:0 iend:1 \\n\"\n";
  EXPECT_EQ(ends(GetTiltLimitPos), Ends(0, 1));
  EXPECT_EQ(script.transcript(), "i2c 41: w 4F r 1\n" + query);
  EXPECT_EQ(ends(GetTiltLimitPos), Ends(0, 1));
  EXPECT_EQ(script.transcript(), query);
}

TEST(LimitQuery, OfATasmereReadsZerosWhenItFails) {
  Script script;
  tasmere_head(script);
  giSerTiltUseHall = 1;
  tasmere_limits(script, {0x12, 0x34}, {0x00, 0x07});
  script.fail(Call::i2c, 1, forever, ENXIO);
  EXPECT_EQ(ends(GetPanLimitPos), Ends(0, 0));
  EXPECT_EQ(ends(GetTiltLimitPos), Ends(0xFFFF9334, 0xFFFF9334));
  EXPECT_EQ(script.transcript(), R"(i2c 40: w 4A r 2 -> ENXIO
i2c 40: w 4B r 2 -> ENXIO
i2c 41: w 4A r 4 -> ENXIO
i2c 41: w 4B r 4 -> ENXIO
out "Tilt istart:-27852 iend:-27852 \n"
)");
}

TEST(LimitQuery, OfATasmereAddsNothingWhenTheLengthCannotBeRead) {
  Script script;
  tasmere_head(script);
  tasmere_limits(script, {0x12, 0x34}, {0x00, 0x07});
  script.fail(Call::i2c, 2, 1, ENXIO);
  EXPECT_EQ(ends(GetPanLimitPos), Ends(0x1234, 0x1234));
}

}  // namespace
}  // namespace kelvo::test
