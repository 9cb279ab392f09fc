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

constexpr const char* pan_continuous =
    R"(out "TASMERE #####################pan P:0x101 I:0x102 D:0x103\n"
i2c 40: w 0C 01 01
i2c 40: w 0E 01 02
i2c 40: w 10 01 03
)";
constexpr const char* pan_absolute =
    R"(out "TASMERE #####################pan P:0x108 I:0x109 D:0x10a\n"
i2c 40: w 0C 01 08
i2c 40: w 0E 01 09
i2c 40: w 10 01 0A
)";
constexpr const char* pan_still =
    R"(out "TASMERE @@@@@@@@@@@@@@@@@pan P:0x11d I:0x11e D:0x11f\n"
i2c 40: w 0C 01 1D
i2c 40: w 0E 01 1E
i2c 40: w 10 01 1F
)";
constexpr const char* tilt_continuous = R"(i2c 41: w 0C 01 0F
i2c 41: w 0E 01 10
i2c 41: w 10 01 11
)";
constexpr const char* tilt_absolute = R"(i2c 41: w 0C 01 16
i2c 41: w 0E 01 17
i2c 41: w 10 01 18
)";

/// The line of a tilt retuning: it shows the pan gains.
std::string tilt_line(const std::string& pan_gains) {
  return "out \"TASMERE #####################tilt " + pan_gains + "\\n\"\n";
}

void tuned_tasmere(Script& script) {
  tasmere_head(script);
  load(plain_tuning());
}

using Words = std::vector<std::int32_t>;
Words pan_cache() { return {std::begin(iPanTASMERE_PID), std::end(iPanTASMERE_PID)}; }
Words tilt_cache() { return {std::begin(iTiltTASMERE_PID), std::end(iTiltTASMERE_PID)}; }

TEST(TasmereSchedule, TakesThePanGainsByMode) {
  Script script;
  tuned_tasmere(script);
  EXPECT_EQ(Pan_Setup_PID(0, 100, 0), 0);
  EXPECT_EQ(script.transcript(), pan_continuous);
  EXPECT_EQ(Pan_Setup_PID(0, -7200, 0), 0);
  EXPECT_EQ(script.transcript(), "");
  EXPECT_EQ(Pan_Setup_PID(1, 100, 65535), 0);
  EXPECT_EQ(script.transcript(), pan_absolute);
  EXPECT_EQ(Pan_Setup_PID(1, 0, 0), 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(TasmereSchedule, HasPanGainsOfItsOwnForStandingStill) {
  Script script;
  tuned_tasmere(script);
  for (int call = 0; call < 2; ++call) {
    EXPECT_EQ(Pan_Setup_PID(0, 0, 0), 0);
    EXPECT_EQ(script.transcript(), std::string(pan_continuous) + pan_still);
    EXPECT_EQ(pan_cache(), (Words{0, 0x11D, 0x11E, 0x11F, 0, 0, 0}));
  }
}

TEST(TasmereSchedule, StandsStillOnceWhenTheGainsAreTheSame) {
  Script script;
  tasmere_head(script);
  Tuning words = plain_tuning();
  for (const std::size_t i : {0, 1, 2}) words[29 + i] = words[1 + i];
  load(words);
  Pan_Setup_PID(0, 0, 0);
  EXPECT_EQ(script.transcript(), pan_continuous);
  Pan_Setup_PID(0, 0, 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(TasmereSchedule, TakesTheTiltGainsByModeAlone) {
  Script script;
  tuned_tasmere(script);
  EXPECT_EQ(Tilt_Setup_PID(0, 0, 0), 0);
  EXPECT_EQ(script.transcript(), tilt_line("P:0x0 I:0x0 D:0x0") + tilt_continuous);
  EXPECT_EQ(Tilt_Setup_PID(0, 100, 0), 0);
  EXPECT_EQ(script.transcript(), "");
  EXPECT_EQ(Tilt_Setup_PID(1, 0, 65535), 0);
  EXPECT_EQ(script.transcript(), tilt_line("P:0x0 I:0x0 D:0x0") + tilt_absolute);
  EXPECT_EQ(tilt_cache(), (Words{0, 0x116, 0x117, 0x118, 0, 0, 0}));
  EXPECT_EQ(pan_cache(), Words(7, 0));
}

TEST(TasmereSchedule, TellsThePanGainsOfATiltRetuning) {
  Script script;
  tuned_tasmere(script);
  Pan_Setup_PID(1, 100, 0);
  script.transcript();
  Tilt_Setup_PID(0, 100, 0);
  EXPECT_EQ(script.transcript(), tilt_line("P:0x108 I:0x109 D:0x10a") + tilt_continuous);
}

TEST(TasmereSchedule, WritesAllThreePanGainsWhenOneChanges) {
  Script script;
  tuned_tasmere(script);
  const ChangedWord rows[] = {
      {1,
       "P:0x5 I:0x102 D:0x103\\n\"\ni2c 40: w 0C 00 05\ni2c 40: w 0E 01 02\ni2c 40: w 10 01 03\n"},
      {2,
       "P:0x101 I:0x5 D:0x103\\n\"\ni2c 40: w 0C 01 01\ni2c 40: w 0E 00 05\ni2c 40: w 10 01 03\n"},
      {3,
       "P:0x101 I:0x102 D:0x5\\n\"\ni2c 40: w 0C 01 01\ni2c 40: w 0E 01 02\ni2c 40: w 10 00 05\n"},
  };
  for (const ChangedWord& row : rows) {
    load(plain_tuning());
    Pan_Setup_PID(0, 100, 0);
    load_with(row.word, 5);
    script.transcript();
    Pan_Setup_PID(0, 100, 0);
    EXPECT_EQ(script.transcript(),
              std::string("out \"TASMERE #####################pan ") + row.sent);
  }
}

TEST(TasmereSchedule, WritesAllThreeTiltGainsWhenOneChanges) {
  Script script;
  tuned_tasmere(script);
  const ChangedWord rows[] = {
      {15, "i2c 41: w 0C 00 05\ni2c 41: w 0E 01 10\ni2c 41: w 10 01 11\n"},
      {16, "i2c 41: w 0C 01 0F\ni2c 41: w 0E 00 05\ni2c 41: w 10 01 11\n"},
      {17, "i2c 41: w 0C 01 0F\ni2c 41: w 0E 01 10\ni2c 41: w 10 00 05\n"},
  };
  for (const ChangedWord& row : rows) {
    load(plain_tuning());
    Tilt_Setup_PID(0, 100, 0);
    load_with(row.word, 5);
    script.transcript();
    Tilt_Setup_PID(0, 100, 0);
    EXPECT_EQ(script.transcript(), tilt_line("P:0x0 I:0x0 D:0x0") + row.sent);
  }
}

TEST(TasmereSchedule, LeavesTheGainsAloneWhenAnotherWordChanges) {
  Script script;
  tuned_tasmere(script);
  Pan_Setup_PID(0, 100, 0);
  Tilt_Setup_PID(0, 100, 0);
  for (const std::size_t word : {0, 4, 7, 14, 18, 29, 30, 31, 56, 70}) {
    load_with(word, 5);
    script.transcript();
    Pan_Setup_PID(0, 100, 0);
    Tilt_Setup_PID(0, 100, 0);
    EXPECT_EQ(script.transcript(), "") << word;
  }
}

TEST(TasmereSchedule, ForgetsNothingByAResetOrAFailure) {
  Script script;
  tuned_tasmere(script);
  script.fail(Call::i2c, 1, 6, ENXIO);
  Pan_Setup_PID(0, 100, 0);
  Tilt_Setup_PID(0, 100, 0);
  PanReset();
  TiltReset();
  script.transcript();
  Pan_Setup_PID(0, 100, 0);
  Tilt_Setup_PID(0, 100, 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(TasmereSchedule, IsFrozenForSettingGainsByHand) {
  Script script;
  tuned_tasmere(script);
  Debug_PID_En(1);
  EXPECT_EQ(Set_stop_PID(), 0);
  EXPECT_EQ(Pan_Setup_PID(1, 5, 6), 0);
  EXPECT_EQ(script.transcript(), "");
  EXPECT_EQ(pan_cache(), Words(7, 0));
}

TEST(TasmereSchedule, SendsTheLowHalvesOfItsWords) {
  Script script;
  tasmere_head(script);
  Tuning words{};
  words[8] = 0x7FFF1234;
  words[9] = -2;
  words[10] = 0x00018000;
  load(words);
  Pan_Setup_PID(1, 100, 0);
  EXPECT_EQ(script.transcript(),
            R"(out "TASMERE #####################pan P:0x7fff1234 I:0xfffffffe D:0x18000\n"
i2c 40: w 0C 12 34
i2c 40: w 0E FF FE
i2c 40: w 10 80 00
)");
  Pan_Setup_PID(1, 100, 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(TasmereSchedule, ReadsZerosBehindTheTable) {
  Script script;
  tuned_tasmere(script);
  Pan_Setup_PID(11, 100, 0);
  EXPECT_EQ(pan_cache(), (Words{0, 0x14E, 0x14F, 0x150, 0, 0, 0}));
  Pan_Setup_PID(12, 100, 0);
  EXPECT_EQ(pan_cache(), Words(7, 0));
  Tilt_Setup_PID(9, 100, 0);
  EXPECT_EQ(tilt_cache(), (Words{0, 0x14E, 0x14F, 0x150, 0, 0, 0}));
  Tilt_Setup_PID(10, 100, 0);
  EXPECT_EQ(tilt_cache(), Words(7, 0));
}

}  // namespace
}  // namespace kelvo::test
