#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "pantilt/head.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

void answer(Script& script, std::uint8_t reg, const Bytes& pan, const Bytes& tilt) {
  script.i2c_register(40, reg, pan);
  script.i2c_register(41, reg, tilt);
}

TEST(HeadQuery, AsksAVetra) {
  Script script;
  vetra_head(script);
  answer(script, 0x30, {0xA5}, {0x5A});
  answer(script, 0x31, {0x06}, {0x05});
  const HeadCall rows[] = {
      {"GetPanVersion", GetPanVersion, "i2c 40: w 30 r 1\n", 0xA5},
      {"GetTiltVersion", GetTiltVersion, "", 0},
      {"PanGetCaliStatus", PanGetCaliStatus, "i2c 40: w 31 r 1\n", 0},
      {"TiltGetCaliStatus", TiltGetCaliStatus, "i2c 41: w 31 r 1\n", -1},
      {"GetPanHallSetting", GetPanHallSetting, "", 0},
      {"GetTiltHallSetting", GetTiltHallSetting, "", 1},
      {"GetPanStatus", GetPanStatus, "i2c 40: w 31 r 1\n", 0},
      {"GetTiltStatus", GetTiltStatus, "i2c 41: w 31 r 1\n", 0},
      {"GetPanSleepMode", GetPanSleepMode, "", 0},
      {"GetTiltSleepMode", GetTiltSleepMode, "", 0},
      {"GetPanProgState", GetPanProgState, "", 0},
      {"GetTiltProgState", GetTiltProgState, "", 0},
      {"GetPanTemp", GetPanTemp, "", 0},
      {"GetTiltTemp", GetTiltTemp, "", 0},
  };
  expect_on_vetra(script, rows);
}

TEST(HeadQuery, AsksATasmere) {
  Script script;
  tasmere_head(script);
  answer(script, 0x1B, {1, 2, 3, 4}, {5, 6, 0x70, 0x8A});
  answer(script, 0x02, {1}, {2});
  answer(script, 0x4F, {1}, {2});
  answer(script, 0x03, {0}, {1});
  answer(script, 0xFE, {0x81}, {0x7F});
  answer(script, 0x9B, {0x12, 0x34}, {0xFF, 0xFE});
  const HeadCall rows[] = {
      {"GetPanVersion", GetPanVersion, "i2c 40: w 1B r 4\n", 0x0700},
      {"GetTiltVersion", GetTiltVersion, "i2c 41: w 1B r 4\n", 0xFA00},
      {"PanGetCaliStatus", PanGetCaliStatus, "i2c 40: w 02 r 1\n", 0},
      {"TiltGetCaliStatus", TiltGetCaliStatus, "i2c 41: w 02 r 1\n", -1},
      {"GetPanHallSetting", GetPanHallSetting, "i2c 40: w 4F r 1\n", 1},
      {"GetTiltHallSetting", GetTiltHallSetting, "i2c 41: w 4F r 1\n", 0},
      {"GetPanStatus", GetPanStatus, "i2c 40: w 30 r 1\ni2c 40: w 03 r 1\n", 0},
      {"GetTiltStatus", GetTiltStatus, "i2c 41: w 30 r 1\ni2c 41: w 03 r 1\n", -1},
      {"GetPanSleepMode", GetPanSleepMode, "i2c 40: w 30 r 1\n", 0},
      {"GetTiltSleepMode", GetTiltSleepMode, "i2c 41: w 30 r 1\n", 0},
      {"GetPanProgState", GetPanProgState, "i2c 40: w FE r 1\n", 0x81},
      {"GetTiltProgState", GetTiltProgState, "i2c 41: w FE r 1\n", 0x7F},
      {"GetPanTemp", GetPanTemp, "i2c 40: w 9B r 2\n", 0x1234},
      {"GetTiltTemp", GetTiltTemp, "i2c 41: w 9B r 2\n", 0xFFFE},
  };
  expect_on_tasmere(script, rows);
}

TEST(HeadQuery, OfAVetraDecodesTheStatusRegister) {
  Script script;
  vetra_head(script);
  for (int value = 0; value <= 255; ++value) {
    const Bytes status = {static_cast<std::uint8_t>(value)};
    answer(script, 0x31, status, status);
    EXPECT_EQ(PanGetCaliStatus(), value % 4 == 2 ? 0 : -1) << value;
    EXPECT_EQ(TiltGetCaliStatus(), value % 4 == 2 ? 0 : -1) << value;
    EXPECT_EQ(GetPanStatus(), value / 4 % 2 == 1 ? 0 : -1) << value;
    EXPECT_EQ(GetTiltStatus(), value / 4 % 2 == 1 ? 0 : -1) << value;
  }
}

TEST(HeadQuery, OfATasmereDecodesOneByte) {
  Script script;
  tasmere_head(script);
  for (int value = 0; value <= 255; ++value) {
    const Bytes byte = {static_cast<std::uint8_t>(value)};
    for (const std::uint8_t reg : {0x02, 0x03, 0x4F, 0xFE}) answer(script, reg, byte, byte);
    EXPECT_EQ(PanGetCaliStatus(), value == 1 ? 0 : -1) << value;
    EXPECT_EQ(TiltGetCaliStatus(), value == 1 ? 0 : -1) << value;
    EXPECT_EQ(GetPanStatus(), value == 0 ? 0 : -1) << value;
    EXPECT_EQ(GetTiltStatus(), value == 0 ? 0 : -1) << value;
    EXPECT_EQ(GetPanHallSetting(), value == 1 ? 1 : 0) << value;
    EXPECT_EQ(GetTiltHallSetting(), value == 1 ? 1 : 0) << value;
    EXPECT_EQ(giSerTiltUseHall, value);
    EXPECT_EQ(GetPanProgState(), value);
    EXPECT_EQ(GetTiltProgState(), value);
  }
}

TEST(HeadQuery, FindsASleepingTasmereAtRest) {
  Script script;
  tasmere_head(script);
  answer(script, 0x03, {1}, {1});
  for (const std::uint8_t mode : {1, 2, 255}) {
    answer(script, 0x30, {mode}, {mode});
    EXPECT_EQ(GetPanSleepMode(), mode);
    EXPECT_EQ(GetTiltSleepMode(), mode);
    script.transcript();
    EXPECT_EQ(GetPanStatus(), 0);
    EXPECT_EQ(GetTiltStatus(), 0);
    EXPECT_EQ(script.transcript(), "i2c 40: w 30 r 1\ni2c 41: w 30 r 1\n");
  }
}

TEST(HeadQuery, OfAVersionMergesTwoBytesInOnePlace) {
  Script script;
  tasmere_head(script);
  answer(script, 0x1B, {0xFF, 0xFF, 0x0F, 0xF0}, {0xFF, 0xFF, 0x00, 0x00});
  EXPECT_EQ(GetPanVersion(), 0xFF00);
  EXPECT_EQ(GetTiltVersion(), 0);
}

TEST(HeadQuery, OfTheHallSensorKeepsTheTiltByteAlone) {
  Script script;
  tasmere_head(script);
  EXPECT_EQ(giSerTiltUseHall, -1);
  answer(script, 0x4F, {1}, {0x42});
  EXPECT_EQ(GetPanHallSetting(), 1);
  EXPECT_EQ(giSerTiltUseHall, -1);
  EXPECT_EQ(GetTiltHallSetting(), 0);
  EXPECT_EQ(giSerTiltUseHall, 0x42);
}

TEST(HeadQuery, OfTheHallSensorIsNotKeptForAVetra) {
  Script script;
  vetra_head(script);
  answer(script, 0x4F, {1}, {1});
  EXPECT_EQ(GetTiltHallSetting(), 1);
  EXPECT_EQ(giSerTiltUseHall, -1);
  giSerTiltUseHall = 5;
  EXPECT_EQ(GetTiltHallSetting(), 1);
  EXPECT_EQ(giSerTiltUseHall, 5);
}

TEST(HeadQuery, ThatFailsOnAVetraReadsZeros) {
  Script script;
  vetra_head(script);
  answer(script, 0x30, {0xA5}, {0x5A});
  answer(script, 0x31, {0x06}, {0x06});
  script.fail(Call::i2c, 1, forever, ENXIO);
  EXPECT_EQ(GetPanVersion(), 0);
  EXPECT_EQ(PanGetCaliStatus(), -1);
  EXPECT_EQ(TiltGetCaliStatus(), -1);
  EXPECT_EQ(GetPanStatus(), -1);
  EXPECT_EQ(GetTiltStatus(), -1);
}

const HeadCall failing_on_tasmere[] = {
    {"GetPanVersion", GetPanVersion, "i2c 40: w 1B r 4 -> ENXIO\n", 0},
    {"GetTiltVersion", GetTiltVersion, "i2c 41: w 1B r 4 -> ENXIO\n", 0},
    {"PanGetCaliStatus", PanGetCaliStatus, "i2c 40: w 02 r 1 -> ENXIO\n", -1},
    {"TiltGetCaliStatus", TiltGetCaliStatus, "i2c 41: w 02 r 1 -> ENXIO\n", -1},
    {"GetPanHallSetting", GetPanHallSetting, "i2c 40: w 4F r 1 -> ENXIO\n", 0},
    {"GetTiltHallSetting", GetTiltHallSetting, "i2c 41: w 4F r 1 -> ENXIO\n", 0},
    // A sleep mode that cannot be read counts as asleep, so the run status is not asked for.
    {"GetPanStatus", GetPanStatus, "i2c 40: w 30 r 1 -> ENXIO\n", 0},
    {"GetTiltStatus", GetTiltStatus, "i2c 41: w 30 r 1 -> ENXIO\n", 0},
    {"GetPanSleepMode", GetPanSleepMode, "i2c 40: w 30 r 1 -> ENXIO\n", -1},
    {"GetTiltSleepMode", GetTiltSleepMode, "i2c 41: w 30 r 1 -> ENXIO\n", -1},
    {"GetPanProgState", GetPanProgState, "i2c 40: w FE r 1 -> ENXIO\n", -1},
    {"GetTiltProgState", GetTiltProgState, "i2c 41: w FE r 1 -> ENXIO\n", -1},
    {"GetPanTemp", GetPanTemp, "i2c 40: w 9B r 2 -> ENXIO\n", 0},
    {"GetTiltTemp", GetTiltTemp, "i2c 41: w 9B r 2 -> ENXIO\n", 0},
};

TEST(HeadQuery, ThatFailsOnATasmereReadsZeros) {
  Script script;
  tasmere_head(script);
  for (const std::uint8_t reg : {0x1B, 0x02, 0x4F, 0x30, 0x03, 0xFE, 0x9B}) {
    answer(script, reg, {1, 1, 1, 1}, {1, 1, 1, 1});
  }
  script.fail(Call::i2c, 1, forever, ENXIO);
  expect_on_tasmere(script, failing_on_tasmere);
  EXPECT_EQ(giSerTiltUseHall, 0);
}

TEST(HeadQuery, OfTheRunStatusFindsATasmereAtRestWhenOnlyThatFails) {
  Script script;
  tasmere_head(script);
  answer(script, 0x03, {1}, {1});
  script.fail(Call::i2c, 2, 1, ENXIO);
  EXPECT_EQ(GetPanStatus(), 0);
  script.fail(Call::i2c, 2, 1, ENXIO);
  EXPECT_EQ(GetTiltStatus(), 0);
  EXPECT_EQ(script.transcript(), R"(i2c 40: w 30 r 1
i2c 40: w 03 r 1 -> ENXIO
i2c 41: w 30 r 1
i2c 41: w 03 r 1 -> ENXIO
)");
}

TEST(HeadQuery, OfTheSleepModeIsMinusOneOnAClosedLinkAndZeroWithoutMemory) {
  Script script;
  tasmere_head(script);
  answer(script, 0x30, {9}, {9});
  answer(script, 0xFE, {9}, {9});
  script.fail(Call::calloc, 1, 4, ENOMEM);
  EXPECT_EQ(GetPanSleepMode(), 0);
  EXPECT_EQ(GetTiltSleepMode(), 0);
  EXPECT_EQ(GetPanProgState(), 0);
  EXPECT_EQ(GetTiltProgState(), 0);
  Release_I2C();
  EXPECT_EQ(GetPanSleepMode(), -1);
  EXPECT_EQ(GetTiltSleepMode(), -1);
  EXPECT_EQ(GetPanProgState(), -1);
  EXPECT_EQ(GetTiltProgState(), -1);
}

TEST(HeadQuery, BeforeDetectionTakesThePanControllerForAVetra) {
  Script script;
  unknown_head(script);
  answer(script, 0x30, {0x33}, {0x44});
  EXPECT_EQ(GetPanVersion(), 0x33);
  EXPECT_EQ(script.transcript(), "i2c 40: w 30 r 1\n");
}

}  // namespace
}  // namespace kelvo::test
