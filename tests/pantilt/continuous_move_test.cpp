#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "kelvo.h"
#include "pantilt/head.h"
#include "pantilt/pan_schedule.h"
#include "pantilt/tuning.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

/// A move on both axes: pan's lines have slave 40.
struct ContinuousMove {
  std::int32_t dir;
  std::int32_t speed;
  const char* bytes;    // behind the register
  const char* printed;  // behind the write, by a Vetra
};

TEST(ContinuousMove, OfAVetraHasADirectionAndASpeed) {
  Script script;
  vetra_head(script);
  Debug_PID_En(1);
  const ContinuousMove rows[] = {
      {0, 9000, "01 1C 20", "Dir:1 Speed:7200"},
      {1, 9000, "00 1C 20", "Dir:0 Speed:7200"},
      {0, 7200, "01 1C 20", "Dir:1 Speed:7200"},
      {1, 7199, "00 1C 1F", "Dir:0 Speed:7199"},
      {1, 7201, "00 1C 20", "Dir:0 Speed:7200"},
      {0, 1, "01 00 01", "Dir:1 Speed:1"},
      {0, 0, "01 00 00", "Dir:1 Speed:0"},
      {1, -1, "00 FF FF", "Dir:0 Speed:-1"},
      {0, -100'000, "01 79 60", "Dir:1 Speed:-100000"},
      {2, 5, "03 00 05", "Dir:3 Speed:5"},
      {-1, 5, "FE 00 05", "Dir:-2 Speed:5"},
      {256, 5, "01 00 05", "Dir:257 Speed:5"},
      {0, INT32_MAX, "01 1C 20", "Dir:1 Speed:7200"},
  };
  for (const ContinuousMove& row : rows) {
    const std::string rest = std::string(row.bytes) + "\nusleep 2000\nout \"Manaul " + row.printed;
    EXPECT_EQ(PanContinuousMove(row.dir, row.speed), 0);
    EXPECT_EQ(script.transcript(), "out \"TServomotor=1\\n\"\ni2c 40: w 03 " + rest + "\\n\"\n");
    EXPECT_EQ(TiltContinuousMove(row.dir, row.speed), 0);
    EXPECT_EQ(script.transcript(), "out \"TServomotor=1\\n\"\ni2c 41: w 03 " + rest + "\\n\"\n");
  }
}

TEST(ContinuousMove, OfATasmereHasASignedSpeedInOnesComplement) {
  Script script;
  tasmere_head(script);
  giSerTiltUseHall = 0;
  const ContinuousMove rows[] = {
      {0, 7200, "7F FF", ""},     {1, 7200, "80 00", ""},     {0, 9000, "7F FF", ""},
      {1, 9000, "80 00", ""},     {0, 3600, "3F FF", ""},     {1, 3600, "C0 00", ""},
      {0, 100, "01 C7", ""},      {1, 100, "FE 38", ""},      {0, 1, "00 04", ""},
      {1, 1, "FF FB", ""},        {0, 0, "00 00", ""},        {1, 0, "FF FF", ""},
      {0, -1, "FF FC", ""},       {1, -1, "00 03", ""},       {0, -7200, "80 01", ""},
      {1, -7200, "7F FE", ""},    {2, 100, "01 C7", ""},      {-1, 100, "01 C7", ""},
      {257, 100, "01 C7", ""},    {0, -65'536, "72 F4", ""},  // the product wraps in 32 bits
      {0, -100'000, "28 72", ""}, {1, -100'000, "D7 8D", ""},
  };
  for (const ContinuousMove& row : rows) {
    const std::string rest = std::string(row.bytes) + "\n";
    EXPECT_EQ(PanContinuousMove(row.dir, row.speed), 0);
    EXPECT_EQ(script.transcript(), "out \"TServomotor=2\\n\"\ni2c 40: w 07 " + rest);
    EXPECT_EQ(TiltContinuousMove(row.dir, row.speed), 0);
    EXPECT_EQ(script.transcript(), "out \"TServomotor=2\\n\"\ni2c 41: w 07 " + rest);
  }
}

TEST(ContinuousMove, OfATasmeresTiltAxisAsksForTheHallSensorOnceAndDoesWithoutTheAnswer) {
  Script script;
  tasmere_head(script);
  script.i2c_register(41, 0x4F, {1});
  EXPECT_EQ(TiltContinuousMove(0, 7200), 0);
  EXPECT_EQ(script.transcript(),
            "out \"TServomotor=2\\n\"\ni2c 41: w 4F r 1\ni2c 41: w 07 7F FF\n");
  EXPECT_EQ(TiltContinuousMove(0, 7200), 0);
  EXPECT_EQ(script.transcript(), "out \"TServomotor=2\\n\"\ni2c 41: w 07 7F FF\n");
  EXPECT_EQ(giSerTiltUseHall, 1);
}

TEST(ContinuousMove, OfAPanAxisAsksForNoHallSensor) {
  Script script;
  tasmere_head(script);
  PanContinuousMove(0, 1);
  EXPECT_EQ(giSerTiltUseHall, -1);
  EXPECT_EQ(script.transcript(), "out \"TServomotor=2\\n\"\ni2c 40: w 07 00 04\n");
}

TEST(ContinuousMove, RetunesAVetraFirst) {
  Script script;
  vetra_head(script);
  load(plain_tuning());
  PanContinuousMove(0, 9000);
  EXPECT_EQ(script.transcript(), paced(std::string(pan_cruise) + R"(out "TServomotor=1\n"
i2c 40: w 03 01 1C 20
)") + "out \"Manaul Dir:1 Speed:7200\\n\"\n");
  PanContinuousMove(1, -29);
  EXPECT_TRUE(
      script.transcript().starts_with(R"(out "pos 1#####################pan P:0x14 I:0x0\n")"));
  TiltContinuousMove(1, -149);
  EXPECT_NE(script.transcript().find(R"(out "spd 3************Tilt P:0xbb8 I:0x149\n"
i2c 41: w 11 0B B8 01 49
usleep 2000
out "TServomotor=1\n"
i2c 41: w 03 00 FF 6B
)"),
            std::string::npos);
}

TEST(ContinuousMove, RetunesATasmereFirst) {
  Script script;
  tasmere_head(script);
  load(plain_tuning());
  giSerTiltUseHall = 0;
  PanContinuousMove(0, 0);
  TiltContinuousMove(0, 0);
  EXPECT_EQ(script.transcript(), R"(out "TASMERE #####################pan P:0x101 I:0x102 D:0x103\n"
i2c 40: w 0C 01 01
i2c 40: w 0E 01 02
i2c 40: w 10 01 03
out "TASMERE @@@@@@@@@@@@@@@@@pan P:0x11d I:0x11e D:0x11f\n"
i2c 40: w 0C 01 1D
i2c 40: w 0E 01 1E
i2c 40: w 10 01 1F
out "TServomotor=2\n"
i2c 40: w 07 00 00
out "TASMERE #####################tilt P:0x11d I:0x11e D:0x11f\n"
i2c 41: w 0C 01 0F
i2c 41: w 0E 01 10
i2c 41: w 10 01 11
out "TServomotor=2\n"
i2c 41: w 07 00 00
)");
}

TEST(ContinuousMove, IsSentAgainThoughTheGainsAreInPlace) {
  Script script;
  vetra_head(script);
  load(plain_tuning());
  PanContinuousMove(0, 500);
  script.transcript();
  PanContinuousMove(0, 500);
  EXPECT_EQ(script.transcript(),
            "out \"TServomotor=1\\n\"\ni2c 40: w 03 01 01 F4\nusleep 2000\n"
            "out \"Manaul Dir:1 Speed:500\\n\"\n");
}

TEST(ContinuousMove, IsZeroWhateverTheBusDid) {
  Script script;
  vetra_head(script);
  script.fail(Call::i2c, 1, forever, ENXIO);
  EXPECT_EQ(PanContinuousMove(0, 500), 0);
  EXPECT_EQ(TiltContinuousMove(0, 500), 0);
  EXPECT_EQ(script.transcript_without({"out", "usleep"}),
            "i2c 40: w 03 01 01 F4 -> ENXIO\ni2c 41: w 03 01 01 F4 -> ENXIO\n");
}

}  // namespace
}  // namespace kelvo::test
