#include <gtest/gtest.h>

#include <string>

#include "kelvo.h"
#include "pantilt/head.h"
#include "pantilt/pan_schedule.h"
#include "pantilt/tuning.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

TEST(StopGains, OfAVetraAreTheTableRowsOfBothAxes) {
  Script script;
  vetra_head(script);
  load(plain_tuning());
  EXPECT_EQ(Set_stop_PID(), 0);
  EXPECT_EQ(script.transcript(),
            paced(std::string(pan_cruise) + R"(out "pos 1************Tilt P:0x146 I:0x147\n"
i2c 41: w 10 01 46 01 47
out "cur 1************Tilt :0x14a\n"
i2c 41: w 12 01 4A
out "spd 1************Tilt P:0x148 I:0x149\n"
i2c 41: w 11 01 48 01 49
out "gain 1************Tilt Acc:0x12014b Dec:0x12014c\n"
i2c 41: w 13 00 12 01 4B
i2c 41: w 15 00 12 01 4C
)"));
  EXPECT_EQ(Set_stop_PID(), 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(StopGains, OfATasmereAreWrittenInTwoStepsOnEveryStop) {
  Script script;
  tasmere_head(script);
  load(plain_tuning());
  const std::string pan = R"(out "TASMERE #####################pan P:0x101 I:0x102 D:0x103\n"
i2c 40: w 0C 01 01
i2c 40: w 0E 01 02
i2c 40: w 10 01 03
out "TASMERE @@@@@@@@@@@@@@@@@pan P:0x11d I:0x11e D:0x11f\n"
i2c 40: w 0C 01 1D
i2c 40: w 0E 01 1E
i2c 40: w 10 01 1F
)";
  EXPECT_EQ(Set_stop_PID(), 0);
  EXPECT_EQ(script.transcript(),
            pan + R"(out "TASMERE #####################tilt P:0x11d I:0x11e D:0x11f\n"
i2c 41: w 0C 01 0F
i2c 41: w 0E 01 10
i2c 41: w 10 01 11
)");
  EXPECT_EQ(Set_stop_PID(), 0);
  EXPECT_EQ(script.transcript(), pan);
}

TEST(StopGains, AreFrozenWithTheOthers) {
  Script script;
  vetra_head(script);
  load(plain_tuning());
  Debug_PID_En(1);
  EXPECT_EQ(Set_stop_PID(), 0);
  EXPECT_EQ(script.transcript(), "");
}

}  // namespace
}  // namespace kelvo::test
