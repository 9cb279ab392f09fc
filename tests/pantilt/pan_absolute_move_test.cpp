#include <gtest/gtest.h>

#include <string>

#include "kelvo.h"
#include "pantilt/head.h"
#include "pantilt/pan_schedule.h"
#include "pantilt/tuning.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

TEST(PanAbsoluteMove, OfAVetraGoesToACount) {
  Script script;
  vetra_head(script);
  Debug_PID_En(1);
  const AbsoluteMove rows[] = {
      {0, 7200, 32768, "01 23 28 1C 20"}, {1, 7200, 32768, "00 23 28 1C 20"},
      {1, 7201, 0, "00 46 50 1C 20"},     {1, 9000, 65535, "00 00 00 1C 20"},
      {0, 1, 65534, "01 00 00 00 01"},    {0, 0, 2, "01 46 4F 00 00"},
      {0, -1, 2, "01 46 4F FF FF"},       {2, 5, 2, "03 46 4F 00 05"},
      {-1, 5, 2, "FE 46 4F 00 05"},       {256, 5, 2, "01 46 4F 00 05"},
      {0, 5, 70'000, "01 FB 37 00 05"},
  };
  for (const AbsoluteMove& row : rows) {
    EXPECT_EQ(PanABSMove(row.dir, row.speed, row.pos), 0);
    EXPECT_EQ(script.transcript(), paced(std::string("i2c 40: w 01 ") + row.bytes + "\n"));
  }
}

TEST(PanAbsoluteMove, OfATasmereHasASignedSpeedInTwosComplement) {
  Script script;
  tasmere_head(script);
  giSerTiltUseHall = 1;  // of no concern here
  const AbsoluteMove rows[] = {
      {1, 7200, 0x1234, "12 34 A0 01"},
      {0, 7200, 0x1234, "12 34 5F FF"},
      {0, 9000, 0, "00 00 5F FF"},
      {1, 9000, 65535, "FF FF A0 01"},
      {0, 3600, 1, "00 01 2F FF"},
      {1, 3600, 1, "00 01 D0 01"},
      {0, 100, 1, "00 01 01 55"},
      {1, 100, 1, "00 01 FE AB"},
      {0, 1, 1, "00 01 00 03"},
      {1, 1, 1, "00 01 FF FD"},
      {0, 0, 1, "00 01 00 00"},
      {1, 0, 1, "00 01 00 00"},
      {0, -1, 1, "00 01 FF FD"},
      {1, -7200, 1, "00 01 5F FF"},
      {2, 100, 1, "00 01 01 55"},
      {-1, 100, 1, "00 01 01 55"},
      {0, -100'000, 1, "00 01 E4 E3"},
      {1, -100'000, 1, "00 01 1B 1D"},
      {0, -65'536, 70'000, "11 70 96 39"},
      {0, 100, 0xFFFFFFFF, "FF FF 01 55"},
  };
  for (const AbsoluteMove& row : rows) {
    EXPECT_EQ(PanABSMove(row.dir, row.speed, row.pos), 0);
    EXPECT_EQ(script.transcript(), std::string("i2c 40: w 42 ") + row.bytes + "\n");
  }
}

TEST(PanAbsoluteMove, RetunesAVetraFirst) {
  Script script;
  vetra_head(script);
  load(plain_tuning());
  word_register(script, 0x32, 1000);
  EXPECT_EQ(PanABSMove(1, 9000, 65535), 0);
  EXPECT_EQ(script.transcript(),
            paced(std::string(pan_abs_table) + "i2c 40: w 01 00 00 00 1C 20\n"));
  EXPECT_EQ(PanABSMove(1, 9000, 65535), 0);
  EXPECT_EQ(script.transcript(), paced("i2c 40: w 32 r 2\ni2c 40: w 01 00 00 00 1C 20\n"));
  forget_gains();
  EXPECT_EQ(PanABSMove(0, 1509, 65535), 0);
  EXPECT_EQ(script.transcript(),
            paced(std::string(pan_abs_slow) + "i2c 40: w 01 01 00 00 05 E5\n"));
}

TEST(PanAbsoluteMove, RetunesATasmereFirst) {
  Script script;
  tasmere_head(script);
  load(plain_tuning());
  EXPECT_EQ(PanABSMove(0, 7200, 5), 0);
  EXPECT_EQ(script.transcript(), R"(out "TASMERE #####################pan P:0x108 I:0x109 D:0x10a\n"
i2c 40: w 0C 01 08
i2c 40: w 0E 01 09
i2c 40: w 10 01 0A
i2c 40: w 42 00 05 5F FF
)");
  EXPECT_EQ(PanABSMove(0, 7200, 5), 0);
  EXPECT_EQ(script.transcript(), "i2c 40: w 42 00 05 5F FF\n");
}

TEST(PanAbsoluteMove, KnowsNoTiltLimits) {
  Script script;
  vetra_head(script);
  TiltLimit(60000, 40000);
  TiltLimitEn(1);
  PanLimitSet(60000, 40000);
  PanLimitEn(1);
  Debug_PID_En(1);
  script.transcript();
  PanABSMove(1, 100, 56432);
  EXPECT_EQ(script.transcript(), paced("i2c 40: w 01 00 09 C4 00 64\n"));
}

TEST(PanAbsoluteMove, IsZeroWhateverTheBusDid) {
  Script script;
  tasmere_head(script);
  script.fail(Call::i2c, 1, forever, ENXIO);
  EXPECT_EQ(PanABSMove(0, 7200, 5), 0);
  EXPECT_EQ(script.transcript(), "i2c 40: w 42 00 05 5F FF -> ENXIO\n");
}

}  // namespace
}  // namespace kelvo::test
