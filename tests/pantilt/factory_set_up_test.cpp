// What a new Tasmere controller gets once in its life.
#include <gtest/gtest.h>

#include "kelvo.h"
#include "pantilt/head.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

constexpr const char* pan_sequence = R"(out "Set Turbo\n"
i2c 40: w 53 01
out "Set Hall\n"
i2c 40: w 4E 01
out "Set sleep on power up mode\n"
i2c 40: w 1D 00
sleep 1
out "Set PID\n"
i2c 40: w 0C 0A 00
i2c 40: w 0E 00 10
i2c 40: w 10 30 00
i2c 40: w 08 00 0A
i2c 40: w 4C 01
i2c 40: w 43 00
i2c 40: w 46 02 66
i2c 40: w 58 00 F3 33 33
i2c 40: w 97 01
i2c 40: w 95 01 00 01 00
i2c 40: w 51 02 A0
i2c 40: w 56 01
i2c 40: w 83 01
out "Set Max Current 0.5A\n"
i2c 40: w 51 03 80
i2c 40: w 75 03 00
out "Set continuous\n"
i2c 40: w 19 00 01
out "Save to flash\n"
i2c 40: w 23
sleep 1
out "Reset Pan\n"
i2c 40: w 01
sleep 1
)";
constexpr const char* tilt_sequence = R"(i2c 41: w 53 01
i2c 41: w 4E 00
i2c 41: w 1D 00
sleep 1
i2c 41: w 0C 08 00
i2c 41: w 0E 00 01
i2c 41: w 10 18 00
i2c 41: w 08 00 C0
i2c 41: w 4C 01
i2c 41: w 43 00
i2c 41: w 46 02 66
i2c 41: w 58 00 F3 33 33
i2c 41: w 97 01
i2c 41: w 95 01 00 01 00
i2c 41: w 56 01
i2c 41: w 83 01
i2c 41: w 51 03 80
i2c 41: w 75 03 00
i2c 41: w 19 00 00
i2c 41: w 12 00 00
i2c 41: w 13 4E 39
i2c 41: w 23
sleep 1
i2c 41: w 01
sleep 1
)";

TEST(FactorySetUp, OfThePanAxisTellsItsSteps) {
  Script script;
  tasmere_head(script);
  EXPECT_EQ(PanInitParam(), 0);
  EXPECT_EQ(script.transcript(), pan_sequence);
}

TEST(FactorySetUp, OfTheTiltAxisIsSilent) {
  Script script;
  tasmere_head(script);
  EXPECT_EQ(TiltInitParam(), 0);
  EXPECT_EQ(script.transcript(), tilt_sequence);
}

TEST(FactorySetUp, ChangesNothingThatTheLibraryKeeps) {
  Script script;
  tasmere_head(script);
  PanInitParam();
  TiltInitParam();
  EXPECT_EQ(giSerTiltUseHall, -1);
  for (int i = 0; i < 7; ++i) {
    EXPECT_EQ(iPanTASMERE_PID[i], 0);
    EXPECT_EQ(iTiltTASMERE_PID[i], 0);
  }
}

TEST(FactorySetUp, GoesOnToTheResetWhateverFails) {
  Script script;
  tasmere_head(script);
  script.fail(Call::i2c, 1, forever, ENXIO);
  script.fail(Call::sleep, 1, forever, EINTR);
  EXPECT_EQ(PanInitParam(), 0);
  EXPECT_EQ(script.transcript_without({"out"}).ends_with("i2c 40: w 23 -> ENXIO\n"
                                                         "sleep 1 -> EINTR\n"
                                                         "i2c 40: w 01 -> ENXIO\n"
                                                         "sleep 1 -> EINTR\n"),
            true);
  EXPECT_EQ(TiltInitParam(), 0);
  EXPECT_EQ(script.count(Call::i2c), 1 + 21 + 22);
  EXPECT_EQ(script.count(Call::sleep), 6);
}

}  // namespace
}  // namespace kelvo::test
