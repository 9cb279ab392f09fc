// The stabiliser's settings.
#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "lens/module_case.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::calling;
using kelvo::test::expect_cases;
using kelvo::test::forever;
using kelvo::test::locks_and_opening;
using kelvo::test::ModuleCase;
using kelvo::test::Script;
using kelvo::test::set_latch;

TEST(StabiliserSetting, IsOneCommandOnEveryModule) {
  for (const int32_t variant : {7, 8, 9, 6, 10}) {
    const ModuleCase rows[] = {
        {variant, calling<Set_X_GyroGain, 0x01020304>, "spi_renesas: 68 01 02 03 04 72 00\n"},
        {variant, calling<Set_X_GyroGain, -1>, "spi_renesas: 68 FF FF FF FF 64 00\n"},
        {variant, calling<Set_Y_GyroGain, 0x01020304>, "spi_renesas: 69 01 02 03 04 73 00\n"},
        {variant, calling<Set_Y_GyroGain, -2>, "spi_renesas: 69 FF FF FF FE 64 00\n"},
        {variant, calling<Set_XY_Definition, 0x1A5U>, "spi_renesas: 6B 00 00 00 A5 10 00\n"},
        {variant, calling<Set_X_Definition, 0x1A5U>, "spi_renesas: 6C 00 00 00 A5 11 00\n"},
        {variant, calling<Set_Y_Definition, 0x1A5U>, "spi_renesas: 6D 00 00 00 A5 12 00\n"},
        {variant, calling<Set_Mode, 0U>, "spi_renesas: 05 00 00 00 00 05 00\n"},
        {variant, calling<Set_Mode, 0x102U>, "spi_renesas: 05 00 00 00 02 07 00\n"},
        {variant, calling<Set_Coma, 5U>, "spi_renesas: 22 00 00 00 05 27 00\n"},
        {variant, calling<Set_Coma, 0xFFFFFF00U>, "spi_renesas: 22 00 00 00 00 22 00\n"},
        {variant, calling<Gyro_stability, 0x1234>, "spi_renesas: 12 00 00 12 34 58 00\n"},
        {variant, calling<Gyro_stability, -1>, "spi_renesas: 12 00 00 FF FF 10 00\n"},
        {variant, calling<Gyro_stability, 0x56781234>, "spi_renesas: 12 00 00 12 34 58 00\n"},
    };
    expect_cases(rows);
  }
}

TEST(StabiliserSwitch, OpensTheWholeRangeBeforeIt) {
  const char* const on = "spi_renesas: 6B 00 00 00 01 6C 00\nspi_renesas: 02 00 00 00 00 02 00\n";
  const char* const off = "spi_renesas: 6B 00 00 00 01 6C 00\nspi_renesas: 03 00 00 00 00 03 00\n";
  for (const int32_t variant : {7, 8, 9, 6, 10}) {
    const ModuleCase rows[] = {
        {variant, calling<OIS_En, 1>, on},
        {variant, calling<OIS_En, -1>, on},
        {variant, calling<OIS_En, 256>, on},
        {variant, calling<OIS_En, 0>, off},
    };
    expect_cases(rows);
  }
}

TEST(StabiliserSwitch, TakesTheLockForEachFrame) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(OIS_En(1), 0);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_renesas
lock
spi_renesas: 6B 00 00 00 01 6C 00
unlock
lock
spi_renesas: 02 00 00 00 00 02 00
unlock
)");
}

TEST(StabiliserSwitch, IsNotSentBehindAFrameThatFailed) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, 2, EIO);
  EXPECT_EQ(OIS_En(1), 0);
  EXPECT_EQ(script.count(Call::transfer), 2);
  EXPECT_EQ(GetLensType(), -1);
}

TEST(StabiliserPause, IsKnownToDe015Alone) {
  const ModuleCase rows[] = {
      {7, calling<OIS_Pause, 1U>, "spi_renesas: 0A 00 00 00 01 0B 00\n"},
      {7, calling<OIS_Pause, 0U>, "spi_renesas: 0A 00 00 00 00 0A 00\n"},
      {7, calling<OIS_Pause, 0x1FEU>, "spi_renesas: 0A 00 00 00 FE 08 00\n"},
      {8, calling<OIS_Pause, 1U>, ""},
      {9, calling<OIS_Pause, 1U>, ""},
      {6, calling<OIS_Pause, 1U>, ""},
      {10, calling<OIS_Pause, 1U>, ""},
  };
  expect_cases(rows);
}

TEST(StationaryDetection, IsSwitchedOffWithoutAQuestion) {
  for (const int32_t variant : {7, 8, 9, 6}) {
    Script script;
    SetLensType(variant);
    script.query_reply(0xA2, {0, 0, 0, 5});
    EXPECT_EQ(Stationary_detection(0), 0);
    EXPECT_EQ(script.transcript_without(locks_and_opening), "spi_renesas: 11 00 00 00 00 11 00\n");
  }
}

TEST(StationaryDetection, IsSwitchedOnInAModeThatTheComaSettingDecides) {
  struct Mode {
    Bytes coma;
    const char* command;
  };
  const Mode modes[] = {
      {{0, 0, 0, 0}, "spi_renesas: 11 00 00 00 02 13 00\n"},
      {{0, 0, 0, 5}, "spi_renesas: 11 00 00 00 03 14 00\n"},
      {{0, 0, 0, 9}, "spi_renesas: 11 00 00 00 04 15 00\n"},
      {{0, 0, 0, 1}, "spi_renesas: 11 00 00 00 04 15 00\n"},
      {{1, 0, 0, 0}, "spi_renesas: 11 00 00 00 04 15 00\n"},
      {{0, 1, 0, 5}, "spi_renesas: 11 00 00 00 04 15 00\n"},
      {{0, 0, 5, 0}, "spi_renesas: 11 00 00 00 04 15 00\n"},
  };
  for (const Mode& mode : modes) {
    for (const uint32_t on : {1U, 7U, 0xFFFFFF00U}) {
      Script script;
      SetLensType(7);
      script.query_reply(0xA2, mode.coma);
      EXPECT_EQ(Stationary_detection(on), 0);
      EXPECT_EQ(script.transcript_without(locks_and_opening),
                std::string("spi_renesas: A2 00 00 00 01 A3 00 00 00 00 00 00\n") + mode.command)
          << testing::PrintToString(mode.coma) << ", on " << on;
    }
  }
}

TEST(StationaryDetection, AsksEachTimeForTheComaSetting) {
  Script script;
  SetLensType(7);
  script.query_reply_once(0xA2, {0, 0, 0, 5});
  EXPECT_EQ(Stationary_detection(1), 0);
  EXPECT_EQ(Stationary_detection(1), 0);
  EXPECT_EQ(script.transcript_without(locks_and_opening),
            R"(spi_renesas: A2 00 00 00 01 A3 00 00 00 00 00 00
spi_renesas: 11 00 00 00 03 14 00
spi_renesas: A2 00 00 00 01 A3 00 00 00 00 00 00
spi_renesas: 11 00 00 00 02 13 00
)");
}

TEST(StationaryDetection, IsNotSwitchedOnWhenTheQuestionFails) {
  Script script;
  SetLensType(7);
  script.query_reply(0xA2, {0, 0, 0, 5});
  script.fail(Call::transfer, 1, 1, EIO);
  EXPECT_EQ(Stationary_detection(1), 0);
  EXPECT_EQ(script.transcript_without({"open"}),
            R"(spi_renesas: A2 00 00 00 01 A3 00 00 00 00 00 00 -> EIO
lock
unlock
)");
}

/// Every setter, on DE015, and how many command frames it would send.
struct Setter {
  std::int64_t (*set)();
  int frames;
};
const Setter setters[] = {
    {calling<OIS_En, 1>, 2},
    {calling<OIS_Pause, 1U>, 1},
    {calling<Set_X_GyroGain, 1>, 1},
    {calling<Set_Y_GyroGain, 1>, 1},
    {calling<Set_XY_Definition, 1U>, 1},
    {calling<Set_X_Definition, 1U>, 1},
    {calling<Set_Y_Definition, 1U>, 1},
    {calling<Set_Mode, 1U>, 1},
    {calling<Set_Coma, 1U>, 1},
    {calling<Stationary_detection, 1U>, 1},
    {calling<Stationary_detection, 0U>, 1},
    {calling<Gyro_stability, 1>, 1},
};

TEST(StabiliserSetting, IsZeroThoughNothingIsSentWhileTheLatchIsSet) {
  for (const Setter& setter : setters) {
    Script script;
    SetLensType(7);
    set_latch(script);
    EXPECT_EQ(setter.set(), 0);
    EXPECT_EQ(script.transcript(),
              setter.frames == 2 ? "lock\nunlock\nlock\nunlock\n" : "lock\nunlock\n");
  }
}

TEST(StabiliserSetting, IsZeroThoughItFailsAndIsLatched) {
  for (const Setter& setter : setters) {
    Script script;
    SetLensType(7);
    script.fail(Call::transfer, 1, forever, EIO);
    EXPECT_EQ(setter.set(), 0);
    EXPECT_EQ(GetLensType(), -1);
  }
}

}  // namespace
