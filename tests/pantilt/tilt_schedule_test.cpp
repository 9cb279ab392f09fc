#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "kelvo.h"
#include "pantilt/head.h"
#include "pantilt/tuning.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

constexpr const char* table_row = R"(out "pos 1************Tilt P:0x146 I:0x147\n"
i2c 41: w 10 01 46 01 47
out "cur 1************Tilt :0x14a\n"
i2c 41: w 12 01 4A
out "spd 1************Tilt P:0x148 I:0x149\n"
i2c 41: w 11 01 48 01 49
out "gain 1************Tilt Acc:0x12014b Dec:0x12014c\n"
i2c 41: w 13 00 12 01 4B
i2c 41: w 15 00 12 01 4C
)";
constexpr const char* slow_position = R"(out "pos 1************Tilt P:0x28 I:0x147\n"
i2c 41: w 10 00 28 01 47
)";
constexpr const char* slow_speed = R"(out "spd 3************Tilt P:0xbb8 I:0x149\n"
i2c 41: w 11 0B B8 01 49
)";
constexpr const char* table_position = R"(out "pos 1************Tilt P:0x146 I:0x147\n"
i2c 41: w 10 01 46 01 47
)";
constexpr const char* table_speed = R"(out "spd 1************Tilt P:0x148 I:0x149\n"
i2c 41: w 11 01 48 01 49
)";

// From count 12600 to position 32768, which is count 12500; no limits were set.
constexpr const char* absolute_row = R"(i2c 41: w 32 r 2
out "@@@@@@@@@@@@@@@@@11111 iStart:3500 iEnd:3500 istep:32768\n"
out "pos 1************Tilt P:0x21 I:0x14e\n"
i2c 41: w 10 00 21 01 4E
out "cur 1************Tilt :0x151\n"
i2c 41: w 12 01 51
out "spd 1************Tilt P:0x14f I:0x150\n"
i2c 41: w 11 01 4F 01 50
out "gain 1************Tilt Acc:0x120152 Dec:0x120153\n"
i2c 41: w 13 00 12 01 52
i2c 41: w 15 00 12 01 53
)";
constexpr const char* absolute_question = R"(i2c 41: w 32 r 2
out "@@@@@@@@@@@@@@@@@11111 iStart:3500 iEnd:3500 istep:32768\n"
)";

std::vector<std::int32_t> vetra_tilt_cache() {
  return {std::begin(iTiltVETRA_Motor_Reg), std::end(iTiltVETRA_Motor_Reg)};
}

TEST(TiltSchedule, SendsTheTableRowForAStopAndForFastMoves) {
  Script script;
  tuned_vetra(script, 12600);
  for (const std::int32_t speed : {0, 150, -150, 151, 7200, 9000, -7200, INT32_MAX}) {
    forget_gains();
    EXPECT_EQ(Tilt_Setup_PID(0, speed, 0), 0);
    EXPECT_EQ(script.transcript(), paced(table_row)) << speed;
    EXPECT_EQ(Tilt_Setup_PID(0, speed, 0), 0);
    EXPECT_EQ(script.transcript(), "") << speed;
  }
}

TEST(TiltSchedule, OverridesTheTableRowForSlowMoves) {
  Script script;
  tuned_vetra(script, 12600);
  for (const std::int32_t speed : {1, 30, 149, -1, -149}) {
    forget_gains();
    EXPECT_EQ(Tilt_Setup_PID(0, speed, 0), 0);
    EXPECT_EQ(script.transcript(), paced(std::string(table_row) + slow_position + slow_speed))
        << speed;
  }
}

TEST(TiltSchedule, WritesASlowMoveAnewOnEveryCall) {
  Script script;
  tuned_vetra(script, 12600);
  Tilt_Setup_PID(0, 100, 0);
  script.transcript();
  for (int call = 0; call < 3; ++call) {
    Tilt_Setup_PID(0, 100, 0);
    EXPECT_EQ(script.transcript(),
              paced(std::string(table_position) + table_speed + slow_position + slow_speed));
  }
  Tilt_Setup_PID(0, 0, 0);
  EXPECT_EQ(script.transcript(), paced(std::string(table_position) + table_speed));
}

TEST(TiltSchedule, WritesASlowMoveOnceWhenTheTableHasItsGains) {
  Script script;
  tuned_vetra(script, 12600);
  Tuning words = plain_tuning();
  words[70] = 40;
  load(words);
  Tilt_Setup_PID(0, 100, 0);
  script.transcript();
  Tilt_Setup_PID(0, 100, 0);
  EXPECT_EQ(script.transcript(), paced(std::string(table_speed) + slow_speed));
  words[72] = 3000;
  load(words);
  Tilt_Setup_PID(0, 100, 0);
  script.transcript();
  Tilt_Setup_PID(0, 100, 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(TiltSchedule, SendsTheSecondRowForAbsoluteMovesOfAnySpeed) {
  Script script;
  tuned_vetra(script, 12600);
  for (const std::int32_t speed : {0, 1, 149, 150, 1509, 7200, -100}) {
    forget_gains();
    EXPECT_EQ(Tilt_Setup_PID(1, speed, 32768), 0);
    EXPECT_EQ(script.transcript(), paced(absolute_row)) << speed;
    EXPECT_EQ(Tilt_Setup_PID(1, speed, 32768), 0);
    EXPECT_EQ(script.transcript(), paced(absolute_question)) << speed;
  }
}

TEST(TiltSchedule, RemembersWhatItWrote) {
  Script script;
  tuned_vetra(script, 12600);
  Tilt_Setup_PID(0, 0, 0);
  EXPECT_EQ(vetra_tilt_cache(),
            (std::vector<std::int32_t>{0x146, 0x147, 0x148, 0x149, 0x14A, 0x12014B, 0x12014C}));
  Tilt_Setup_PID(0, 1, 0);
  EXPECT_EQ(vetra_tilt_cache(),
            (std::vector<std::int32_t>{40, 0x147, 3000, 0x149, 0x14A, 0x12014B, 0x12014C}));
  Tilt_Setup_PID(1, 1, 32768);
  EXPECT_EQ(vetra_tilt_cache(),
            (std::vector<std::int32_t>{33, 0x14E, 0x14F, 0x150, 0x151, 0x120152, 0x120153}));
  for (const std::int32_t word : iPanVETRA_Motor_Reg) EXPECT_EQ(word, 0);
}

TEST(TiltSchedule, RemembersWhatNeverArrived) {
  Script script;
  tuned_vetra(script, 12600);
  script.fail(Call::i2c, 1, 5, ENXIO);
  EXPECT_EQ(Tilt_Setup_PID(0, 0, 0), 0);
  script.transcript();
  EXPECT_EQ(Tilt_Setup_PID(0, 0, 0), 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(TiltSchedule, IsNotForgottenByAReset) {
  Script script;
  tuned_vetra(script, 12600);
  Tilt_Setup_PID(0, 0, 0);
  TiltReset();
  script.transcript();
  Tilt_Setup_PID(0, 0, 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(TiltSchedule, IsSilentWithATableOfZeros) {
  Script script;
  vetra_head(script);
  EXPECT_EQ(Tilt_Setup_PID(0, 200, 0), 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(TiltSchedule, IsFrozenForSettingGainsByHand) {
  Script script;
  tuned_vetra(script, 12600);
  Debug_PID_En(1);
  EXPECT_EQ(Tilt_Setup_PID(0, 100, 0), 0);
  EXPECT_EQ(Tilt_Setup_PID(1, 100, 32768), 0);
  EXPECT_EQ(script.transcript(), "");
  Debug_PID_En(0);
  EXPECT_EQ(Tilt_Setup_PID(1, 100, 32768), 0);
  EXPECT_EQ(script.transcript(), paced(absolute_row));
}

TEST(TiltSchedule, WritesTheWholeGroupOfAChangedWord) {
  Script script;
  tuned_vetra(script, 12600);
  const ChangedWord rows[] = {
      {70, "out \"pos 1************Tilt P:0x5 I:0x147\\n\"\ni2c 41: w 10 00 05 01 47\n"},
      {71, "out \"pos 1************Tilt P:0x146 I:0x5\\n\"\ni2c 41: w 10 01 46 00 05\n"},
      {72, "out \"spd 1************Tilt P:0x5 I:0x149\\n\"\ni2c 41: w 11 00 05 01 49\n"},
      {73, "out \"spd 1************Tilt P:0x148 I:0x5\\n\"\ni2c 41: w 11 01 48 00 05\n"},
      {74, "out \"cur 1************Tilt :0x5\\n\"\ni2c 41: w 12 00 05\n"},
      {75,
       "out \"gain 1************Tilt Acc:0x5 Dec:0x12014c\\n\"\n"
       "i2c 41: w 13 00 00 00 05\ni2c 41: w 15 00 12 01 4C\n"},
      {76,
       "out \"gain 1************Tilt Acc:0x12014b Dec:0x5\\n\"\n"
       "i2c 41: w 13 00 12 01 4B\ni2c 41: w 15 00 00 00 05\n"},
      {69, ""},
      {77, ""},
      {56, ""},
  };
  for (const ChangedWord& row : rows) {
    load(plain_tuning());
    Tilt_Setup_PID(0, 0, 0);
    load_with(row.word, 5);
    script.transcript();
    Tilt_Setup_PID(0, 0, 0);
    EXPECT_EQ(script.transcript(), paced(row.sent)) << row.word;
  }
}

TEST(TiltSchedule, ReadsZerosBehindTheTable) {
  Script script;
  tuned_vetra(script, 12600);
  std::fill(std::begin(iTiltVETRA_Motor_Reg), std::end(iTiltVETRA_Motor_Reg), 5);
  EXPECT_EQ(Tilt_Setup_PID(2, 100, 32768), 0);
  EXPECT_EQ(vetra_tilt_cache(), std::vector<std::int32_t>(7, 0));
  // Neither the distance nor the slow speed counts for such a mode.
  EXPECT_EQ(script.transcript(), paced(R"(out "pos 1************Tilt P:0x0 I:0x0\n"
i2c 41: w 10 00 00 00 00
out "cur 1************Tilt :0x0\n"
i2c 41: w 12 00 00
out "spd 1************Tilt P:0x0 I:0x0\n"
i2c 41: w 11 00 00 00 00
out "gain 1************Tilt Acc:0x0 Dec:0x0\n"
i2c 41: w 13 00 00 00 00
i2c 41: w 15 00 00 00 00
)"));
}

}  // namespace
}  // namespace kelvo::test
