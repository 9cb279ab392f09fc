#include "pantilt/pan_schedule.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "kelvo.h"
#include "pantilt/head.h"
#include "pantilt/tuning.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

std::vector<std::int32_t> vetra_pan_cache() {
  return {std::begin(iPanVETRA_Motor_Reg), std::end(iPanVETRA_Motor_Reg)};
}

/// The mode and speeds that lead into a case.
struct Case {
  const char* name;
  std::int32_t mode;
  std::vector<std::int32_t> speeds;
  const char* sent;
};
const Case cases[] = {
    {"creep", 0, {1, 2, 29, -1, -29}, pan_creep},
    {"slow", 0, {30, 31, 99, -30, -99}, pan_slow},
    {"cruise", 0, {0, 100, -100, 1509, 7200, 9000, -7200, INT32_MAX}, pan_cruise},
    {"abs slow", 1, {1, 29, 30, 100, 1509, -1, -1509}, pan_abs_slow},
    {"abs table", 1, {0, 1510, -1510, 7200, 9000, INT32_MAX}, pan_abs_table},
};

TEST(PanSchedule, ChoosesTheCaseByModeAndSpeed) {
  Script script;
  tuned_vetra(script, 1000);
  for (const Case& row : cases) {
    for (const std::int32_t speed : row.speeds) {
      forget_gains();
      EXPECT_EQ(Pan_Setup_PID(row.mode, speed, 65535), 0);
      EXPECT_EQ(script.transcript(), paced(row.sent)) << row.name << " at " << speed;
    }
  }
}

TEST(PanSchedule, WritesNothingTwice) {
  Script script;
  tuned_vetra(script, 1000);
  for (const Case& row : cases) {
    forget_gains();
    Pan_Setup_PID(row.mode, row.speeds[1], 65535);
    script.transcript();
    for (const std::int32_t speed : row.speeds) {
      EXPECT_EQ(Pan_Setup_PID(row.mode, speed, 65535), 0);
      const bool asks = row.sent == pan_abs_table;
      EXPECT_EQ(script.transcript(), asks ? paced("i2c 40: w 32 r 2\n") : "") << row.name;
    }
  }
}

TEST(PanSchedule, RemembersWhatItWrote) {
  Script script;
  tuned_vetra(script, 1000);
  EXPECT_EQ(vetra_pan_cache(), std::vector<std::int32_t>(7, 0));
  Pan_Setup_PID(0, 100, 0);
  EXPECT_EQ(vetra_pan_cache(),
            (std::vector<std::int32_t>{0x138, 0x139, 0x13A, 0x13B, 0x13C, 0x12013D, 0x12013E}));
  Pan_Setup_PID(1, 1509, 0);
  EXPECT_EQ(vetra_pan_cache(),
            (std::vector<std::int32_t>{20, 0, 1152, 100, 0x143, 4'000'000, 4'000'000}));
  Pan_Setup_PID(0, 99, 0);
  EXPECT_EQ(vetra_pan_cache(),
            (std::vector<std::int32_t>{20, 0, 4000, 3000, 0x13C, 40'000, 40'000}));
  Pan_Setup_PID(0, 29, 0);
  EXPECT_EQ(vetra_pan_cache(),
            (std::vector<std::int32_t>{20, 0, 5000, 5000, 0x13C, 40'000, 40'000}));
  Pan_Setup_PID(1, 1510, 65535);
  EXPECT_EQ(vetra_pan_cache(),
            (std::vector<std::int32_t>{26, 0x140, 0x141, 0x142, 0x143, 0x120144, 0x120145}));
}

TEST(PanSchedule, RemembersWhatNeverArrived) {
  Script script;
  tuned_vetra(script, 1000);
  script.fail(Call::i2c, 1, 5, ENXIO);
  EXPECT_EQ(Pan_Setup_PID(0, 100, 0), 0);
  EXPECT_EQ(script.count(Call::i2c), 2 + 5);
  script.transcript();
  EXPECT_EQ(Pan_Setup_PID(0, 100, 0), 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(PanSchedule, IsNotForgottenByAReset) {
  Script script;
  tuned_vetra(script, 1000);
  Pan_Setup_PID(0, 100, 0);
  PanReset();
  script.transcript();
  Pan_Setup_PID(0, 100, 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(PanSchedule, IsSilentWithATableOfZeros) {
  Script script;
  vetra_head(script);
  EXPECT_EQ(Pan_Setup_PID(0, 100, 0), 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(PanSchedule, IsFrozenForSettingGainsByHand) {
  Script script;
  tuned_vetra(script, 1000);
  EXPECT_EQ(Debug_PID_En(1), 0);
  for (const Case& row : cases) EXPECT_EQ(Pan_Setup_PID(row.mode, row.speeds[0], 65535), 0);
  EXPECT_EQ(script.transcript(), "");
  EXPECT_EQ(vetra_pan_cache(), std::vector<std::int32_t>(7, 0));
  EXPECT_EQ(Debug_PID_En(2), 0);
  EXPECT_EQ(Pan_Setup_PID(0, 100, 0), 0);
  EXPECT_EQ(script.transcript(), paced(pan_cruise));
  for (const std::int32_t off : {0, -1, 257}) {
    Debug_PID_En(1);
    Debug_PID_En(off);
    forget_gains();
    Pan_Setup_PID(0, 100, 0);
    EXPECT_EQ(script.transcript(), paced(pan_cruise)) << off;
  }
}

TEST(PanSchedule, TellsTheOutgoingCurrentOfASlowAbsoluteMove) {
  Script script;
  tuned_vetra(script, 1000);
  Pan_Setup_PID(0, 100, 0);
  Pan_Setup_PID(1, 100, 0);
  EXPECT_NE(script.transcript().find(
                R"(out "cur 1@@@@@@@@@@@@@pan cur:0x13c \n"
out "Current :323\n"
i2c 40: w 12 01 43
)"),
            std::string::npos);
}

TEST(PanSchedule, WritesTheWholeGroupOfAChangedWord) {
  Script script;
  tuned_vetra(script, 1000);
  const ChangedWord rows[] = {
      {56, "out \"pos 3#####################pan P:0x5 I:0x139\\n\"\ni2c 40: w 10 00 05 01 39\n"},
      {57, "out \"pos 3#####################pan P:0x138 I:0x5\\n\"\ni2c 40: w 10 01 38 00 05\n"},
      {58,
       "out \"spd 3#####################pan P:0x5 I:0x13b\\n\"\nout \"P:0x5 I:0x13b\\n\"\n"
       "i2c 40: w 11 00 05 01 3B\n"},
      {59,
       "out \"spd 3#####################pan P:0x13a I:0x5\\n\"\nout \"P:0x13a I:0x5\\n\"\n"
       "i2c 40: w 11 01 3A 00 05\n"},
      {60,
       "out \"cur 3#####################pan cur:0x5 \\n\"\nout \"Current :5\\n\"\n"
       "i2c 40: w 12 00 05\n"},
      {61,
       "out \"Gain 3#####################pan acc:0x5 dec:0x12013e\\n\"\n"
       "i2c 40: w 13 00 00 00 05\ni2c 40: w 15 00 12 01 3E\n"},
      {62,
       "out \"Gain 3#####################pan acc:0x12013d dec:0x5\\n\"\n"
       "i2c 40: w 13 00 12 01 3D\ni2c 40: w 15 00 00 00 05\n"},
      {0, ""},
      {63, ""},
      {70, ""},
      {29, ""},
  };
  for (const ChangedWord& row : rows) {
    load(plain_tuning());
    Pan_Setup_PID(0, 0, 0);
    load_with(row.word, 5);
    script.transcript();
    Pan_Setup_PID(0, 0, 0);
    EXPECT_EQ(script.transcript(), paced(row.sent)) << row.word;
  }
}

TEST(PanSchedule, TakesOtherModesFromTheirOwnRows) {
  Script script;
  tuned_vetra(script, 1000);
  word_register(script, 0x32, 0);
  Pan_Setup_PID(2, 7200, 65535);
  EXPECT_EQ(vetra_pan_cache(),
            (std::vector<std::int32_t>{0x146, 0x147, 0x148, 0x149, 0x14A, 0x12014B, 0x12014C}));
}

TEST(PanSchedule, ReadsZerosBehindTheTable) {
  Script script;
  tuned_vetra(script, 1000);
  word_register(script, 0x32, 0);
  std::fill(std::begin(iPanVETRA_Motor_Reg), std::end(iPanVETRA_Motor_Reg), 5);
  EXPECT_EQ(Pan_Setup_PID(5, 7200, 65535), 0);
  EXPECT_EQ(vetra_pan_cache(), std::vector<std::int32_t>(7, 0));
  EXPECT_EQ(script.transcript(), paced(R"(i2c 40: w 32 r 2
out "pos 2@@@@@@@@@@@@@pan iDiff_Pos:0 = iPos_data:0 - i_step:0 P:0 I:0x0\n"
i2c 40: w 10 00 00 00 00
out "spd 2@@@@@@@@@@@@@pan P:0x0 I:0x0\n"
out "P:0x0 I:0x0\n"
i2c 40: w 11 00 00 00 00
out "cur 2@@@@@@@@@@@@@pan :0x0\n"
out "Current :0\n"
i2c 40: w 12 00 00
out "gain 2@@@@@@@@@@@@@pan acc:0x0 dec:0x0\n"
i2c 40: w 13 00 00 00 00
i2c 40: w 15 00 00 00 00
)"));
}

}  // namespace
}  // namespace kelvo::test
