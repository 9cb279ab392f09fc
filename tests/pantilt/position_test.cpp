#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "pantilt/exact.h"
#include "pantilt/head.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

uint32_t pan_position(Script& script, int raw) {
  word_register(script, 0x32, raw);
  uint32_t pos = 0xEEEEEEEE;
  EXPECT_EQ(GetPanPos(&pos), 0);
  return pos;
}

uint32_t tilt_position(Script& script, int raw) {
  word_register(script, 0x04, raw);
  uint32_t pos = 0xEEEEEEEE;
  EXPECT_EQ(GetTiltPos(&pos), 0);
  return pos;
}

/// (range - raw) * 65535 / range + 0.5, rounded where double precision rounds; nothing below 0.
uint32_t exact_pan_position(int raw, int range) {
  const Exact turned = minus(exact_remainder(range - raw, range), {-1, -1});
  const std::int64_t position = truncated(to_double(turned));
  return position < 0 ? 0 : static_cast<uint32_t>(position);
}

TEST(PanPosition, RunsAgainstTheCountsOfAVetra) {
  Script script;
  vetra_head(script);
  EXPECT_EQ(pan_position(script, 9000), 32768U);
  EXPECT_EQ(script.transcript(), "i2c 40: w 32 r 2\nusleep 2000\n");
  EXPECT_EQ(pan_position(script, 0), 65535U);
  EXPECT_EQ(pan_position(script, 18000), 0U);
  EXPECT_EQ(pan_position(script, 17999), 4U);
  EXPECT_EQ(pan_position(script, 1), 65531U);
}

TEST(PanPosition, IsExactForEveryCount) {
  Script script;
  vetra_head(script);
  for (int raw = 0; raw <= 65'535; ++raw) {
    ASSERT_EQ(pan_position(script, raw), exact_pan_position(raw, 18'000)) << raw;
  }
}

TEST(PanPosition, IsZeroBeyondTheRange) {
  Script script;
  vetra_head(script);
  EXPECT_EQ(pan_position(script, 18001), 0U);
  EXPECT_EQ(pan_position(script, 40000), 0U);
  EXPECT_EQ(pan_position(script, 65535), 0U);
}

TEST(PanPosition, IsTakenForAVetrasOfTheShortRangeBeforeDetection) {
  Script script;
  unknown_head(script);
  EXPECT_EQ(pan_position(script, 1800), 32768U);
  EXPECT_EQ(script.transcript(), "i2c 40: w 32 r 2\n");
  for (int raw = 0; raw <= 4'000; ++raw) {
    ASSERT_EQ(pan_position(script, raw), exact_pan_position(raw, 3'600)) << raw;
  }
}

TEST(PanPosition, HasTheLongRangeOnceTheVersionWasAskedFor) {
  Script script;
  unknown_head(script);
  EXPECT_EQ(pan_position(script, 9000), 0U);
  script.i2c_register(40, 0x30, {0x21});
  EXPECT_EQ(GetPanVersion(), 0x21);
  EXPECT_EQ(pan_position(script, 9000), 32768U);
  EXPECT_EQ(script.transcript(), "i2c 40: w 32 r 2\ni2c 40: w 30 r 1\ni2c 40: w 32 r 2\n");
}

TEST(PanPosition, IsTheRegisterOfATasmere) {
  Script script;
  tasmere_head(script);
  for (const int raw : {0, 1, 0x1234, 27851, 65535}) {
    word_register(script, 0x04, raw);
    uint32_t pos = 0xEEEEEEEE;
    EXPECT_EQ(GetPanPos(&pos), 0);
    EXPECT_EQ(pos, static_cast<uint32_t>(raw));
    EXPECT_EQ(script.transcript(), "i2c 40: w 04 r 2\n");
  }
}

TEST(PanPosition, OfATasmereKnowsNoHallSensor) {
  Script script;
  tasmere_head(script);
  giSerTiltUseHall = 1;
  word_register(script, 0x04, 27852);
  uint32_t pos = 0;
  EXPECT_EQ(GetPanPos(&pos), 0);
  EXPECT_EQ(pos, 27852U);
}

TEST(PanPosition, IsAnEndOfTheRangeWhenItCannotBeRead) {
  Script script;
  vetra_head(script);
  script.i2c_register(40, 0x32, {0x12, 0x34});
  script.fail(Call::i2c, 1, 1, ENXIO);
  uint32_t pos = 0;
  EXPECT_EQ(GetPanPos(&pos), 0);
  EXPECT_EQ(pos, 65535U);
}

TEST(PanPosition, IsZeroWhenATasmereCannotBeRead) {
  Script script;
  tasmere_head(script);
  script.i2c_register(40, 0x04, {0x12, 0x34});
  script.fail(Call::i2c, 1, 1, ENXIO);
  uint32_t pos = 0xEEEEEEEE;
  EXPECT_EQ(GetPanPos(&pos), 0);
  EXPECT_EQ(pos, 0U);
}

TEST(TiltPosition, OfAVetraIsOnTheCommonScale) {
  Script script;
  vetra_head(script);
  for (const int raw : {0, 1, 3499, 3500, 3501, 12500, 17999, 18000, 21500, 21501, 65535}) {
    word_register(script, 0x32, raw);
    uint32_t pos = 0xEEEEEEEE;
    EXPECT_EQ(GetTiltPos(&pos), 0);
    EXPECT_EQ(pos, Vetra2Tasmere(static_cast<uint32_t>(raw))) << raw;
    EXPECT_EQ(script.transcript(), "i2c 41: w 32 r 2\nusleep 2000\n");
  }
}

TEST(TiltPosition, OfAVetraIsThatOfCountZeroWhenItCannotBeRead) {
  Script script;
  vetra_head(script);
  script.i2c_register(41, 0x32, {0x12, 0x34});
  script.fail(Call::i2c, 1, 1, ENXIO);
  uint32_t pos = 0;
  EXPECT_EQ(GetTiltPos(&pos), 0);
  EXPECT_EQ(pos, 12742U);  // 3500 counts behind the end of 18000
}

TEST(TiltPosition, OfATasmereAsksForTheHallSensorOnce) {
  Script script;
  tasmere_head(script);
  script.i2c_register(41, 0x4F, {1});
  EXPECT_EQ(tilt_position(script, 27852), 0U);
  EXPECT_EQ(script.transcript(), "i2c 41: w 4F r 1\ni2c 41: w 04 r 2\n");
  EXPECT_EQ(giSerTiltUseHall, 1);
  script.i2c_register(41, 0x4F, {0});
  EXPECT_EQ(tilt_position(script, 27851), 65534U);
  EXPECT_EQ(script.transcript(), "i2c 41: w 04 r 2\n");
}

TEST(TiltPosition, OfATasmereWithAHallSensorWrapsAt65535) {
  Script script;
  tasmere_head(script);
  giSerTiltUseHall = 1;
  for (int raw = 0; raw <= 65'535; ++raw) {
    const int expected = raw < 27'852 ? raw + 37'683 : raw - 27'852;
    ASSERT_EQ(tilt_position(script, raw), static_cast<uint32_t>(expected)) << raw;
  }
}

TEST(TiltPosition, OfATasmereIsTheRegisterForAnyOtherHallSetting) {
  Script script;
  tasmere_head(script);
  for (const int setting : {0, 2, 255, -2}) {
    giSerTiltUseHall = setting;
    for (const int raw : {0, 27851, 27852, 65535}) {
      EXPECT_EQ(tilt_position(script, raw), static_cast<uint32_t>(raw)) << setting;
    }
    EXPECT_EQ(giSerTiltUseHall, setting);
  }
}

TEST(TiltPosition, OfATasmereIsReadThoughTheHallSettingCannotBe) {
  Script script;
  tasmere_head(script);
  script.i2c_register(41, 0x4F, {1});
  script.fail(Call::i2c, 1, 1, ENXIO);
  EXPECT_EQ(tilt_position(script, 27852), 27852U);
  EXPECT_EQ(script.transcript(), "i2c 41: w 4F r 1 -> ENXIO\ni2c 41: w 04 r 2\n");
  EXPECT_EQ(giSerTiltUseHall, 0);
}

}  // namespace
}  // namespace kelvo::test
