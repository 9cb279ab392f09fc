#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "pantilt/head.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

TEST(HeadSetUp, CommandsAVetra) {
  Script script;
  vetra_head(script);
  const HeadCall rows[] = {
      {"PanReset", PanReset, "i2c 40: w 22\n"},
      {"TiltReset", TiltReset, "i2c 41: w 22\n"},
      {"PanStop", PanStop, "i2c 40: w 06\n"},
      {"TiltStop", TiltStop, "i2c 41: w 06\n"},
      {"SetPanWakeUp", SetPanWakeUp, ""},
      {"SetTiltWakeUp", SetTiltWakeUp, ""},
      {"PanTurboMode on", [] { return PanTurboMode(1); }, ""},
      {"TiltTurboMode on", [] { return TiltTurboMode(1); }, ""},
      {"PanTurboMode off", [] { return PanTurboMode(0); }, ""},
      {"TiltTurboMode off", [] { return TiltTurboMode(0); }, ""},
      {"PanInitParam", PanInitParam, ""},
      {"TiltInitParam", TiltInitParam, ""},
  };
  expect_on_vetra(script, rows);
}

TEST(HeadSetUp, CommandsATasmere) {
  Script script;
  tasmere_head(script);
  const HeadCall rows[] = {
      {"PanReset", PanReset, "i2c 40: w 01\n"},
      {"TiltReset", TiltReset, "i2c 41: w 01\n"},
      {"PanStop", PanStop, "i2c 40: w 07 00 00\n"},
      {"TiltStop", TiltStop, "i2c 41: w 07 00 00\n"},
      {"PanTurboMode 1", [] { return PanTurboMode(1); }, "i2c 40: w 53 01\n"},
      {"TiltTurboMode 1", [] { return TiltTurboMode(1); }, "i2c 41: w 53 01\n"},
      {"PanTurboMode 2", [] { return PanTurboMode(2); }, "i2c 40: w 53 01\n"},
      {"TiltTurboMode 256", [] { return TiltTurboMode(256); }, "i2c 41: w 53 01\n"},
      {"PanTurboMode -1", [] { return PanTurboMode(-1); }, "i2c 40: w 53 01\n"},
      {"PanTurboMode 0", [] { return PanTurboMode(0); }, "i2c 40: w 53 00\n"},
      {"TiltTurboMode 0", [] { return TiltTurboMode(0); }, "i2c 41: w 53 00\n"},
  };
  expect_on_tasmere(script, rows);
}

TEST(HeadSetUp, IgnoresWhatTheBusDid) {
  Script script;
  tasmere_head(script);
  script.fail(Call::i2c, 1, forever, ENXIO);
  EXPECT_EQ(PanReset(), 0);
  EXPECT_EQ(TiltStop(), 0);
  EXPECT_EQ(PanTurboMode(1), 0);
  EXPECT_EQ(SetTILTCurrent(1), 0);
  EXPECT_EQ(script.count(Call::i2c), 1 + 3 + 14);
}

TEST(HeadWakeUp, IsAnEmptyMessageAndMinusOneForSuccess) {
  Script script;
  tasmere_head(script);
  EXPECT_EQ(SetPanWakeUp(), -1);
  EXPECT_EQ(SetTiltWakeUp(), -1);
  EXPECT_EQ(script.transcript(), "i2c 40: w\ni2c 41: w\n");
}

TEST(HeadWakeUp, IsMinusOneForAFailureToo) {
  Script script;
  tasmere_head(script);
  script.fail(Call::i2c, 1, 2, ENXIO);
  EXPECT_EQ(SetPanWakeUp(), -1);
  EXPECT_EQ(SetTiltWakeUp(), -1);
  EXPECT_EQ(script.transcript(), "i2c 40: w -> ENXIO\ni2c 41: w -> ENXIO\n");
  script.fail(Call::calloc, 1, 2, ENOMEM);
  EXPECT_EQ(SetPanWakeUp(), -1);
  EXPECT_EQ(SetTiltWakeUp(), -1);
  Release_I2C();
  script.transcript();
  EXPECT_EQ(SetPanWakeUp(), -1);
  EXPECT_EQ(SetTiltWakeUp(), -1);
  EXPECT_EQ(script.transcript(), "");
}

TEST(HeadWakeUp, IsZeroWhenTheKernelCarriedNothing) {
  Script script;
  tasmere_head(script);
  script.result(Call::i2c, 1, 0);
  script.result(Call::i2c, 2, 0);
  EXPECT_EQ(SetPanWakeUp(), 0);
  EXPECT_EQ(SetTiltWakeUp(), 0);
  EXPECT_EQ(script.transcript(), "i2c 40: w -> 0\ni2c 41: w -> 0\n");
}

TEST(HeadCurrent, IsAValueForAVetra) {
  Script script;
  vetra_head(script);
  const HeadCall rows[] = {
      {"pan 500", [] { return SetPanCurrent(500); },
       "out \"Current :500\\n\"\ni2c 40: w 12 01 F4\n"},
      {"tilt 500", [] { return SetTILTCurrent(500); }, "i2c 41: w 12 01 F4\n"},
      {"pan 0", [] { return SetPanCurrent(0); }, "out \"Current :0\\n\"\ni2c 40: w 12 00 00\n"},
      {"pan 1", [] { return SetPanCurrent(1); }, "out \"Current :1\\n\"\ni2c 40: w 12 00 01\n"},
      {"pan -1", [] { return SetPanCurrent(-1); }, "out \"Current :-1\\n\"\ni2c 40: w 12 FF FF\n"},
      {"pan beyond 16 bits", [] { return SetPanCurrent(0x12345); },
       "out \"Current :74565\\n\"\ni2c 40: w 12 23 45\n"},
      {"tilt beyond 16 bits", [] { return SetTILTCurrent(0xFFFF8001); }, "i2c 41: w 12 80 01\n"},
  };
  expect_on_vetra(script, rows);
}

}  // namespace
}  // namespace kelvo::test
