#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "pantilt/head.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

constexpr HeadCall steps[] = {
    {"slow", [] { return PanLimitstep(100); },
     "out \"###Pan limit step ispeed:100 iStep:5\\n\"\ni2c 40: w 0A 00 05\n"},
    {"slow", [] { return TiltLimitstep(100); },
     "out \"###Tilt limit step ispeed:100 iStep:5\\n\"\ni2c 41: w 0A 00 05\n"},
    {"medium", [] { return PanLimitstep(101); },
     "out \"###Pan limit step ispeed:101 iStep:15\\n\"\ni2c 40: w 0A 00 0F\n"},
    {"medium", [] { return TiltLimitstep(400); },
     "out \"###Tilt limit step ispeed:400 iStep:15\\n\"\ni2c 41: w 0A 00 0F\n"},
    {"medium", [] { return PanLimitstep(400); },
     "out \"###Pan limit step ispeed:400 iStep:15\\n\"\ni2c 40: w 0A 00 0F\n"},
    {"medium", [] { return TiltLimitstep(101); },
     "out \"###Tilt limit step ispeed:101 iStep:15\\n\"\ni2c 41: w 0A 00 0F\n"},
    {"fast", [] { return PanLimitstep(401); },
     "out \"###Pan limit step ispeed:401 iStep:30\\n\"\ni2c 40: w 0A 00 1E\n"},
    {"fast", [] { return TiltLimitstep(401); },
     "out \"###Tilt limit step ispeed:401 iStep:30\\n\"\ni2c 41: w 0A 00 1E\n"},
    {"fastest", [] { return PanLimitstep(INT32_MAX); },
     "out \"###Pan limit step ispeed:2147483647 iStep:30\\n\"\ni2c 40: w 0A 00 1E\n"},
    {"still", [] { return TiltLimitstep(0); },
     "out \"###Tilt limit step ispeed:0 iStep:5\\n\"\ni2c 41: w 0A 00 05\n"},
    {"backward", [] { return PanLimitstep(-7200); },
     "out \"###Pan limit step ispeed:-7200 iStep:5\\n\"\ni2c 40: w 0A 00 05\n"},
};

TEST(LimitStep, GrowsWithTheSpeed) {
  Script script;
  vetra_head(script);
  expect_on_vetra(script, steps);
}

TEST(LimitStep, IsUnknownToATasmere) {
  Script script;
  tasmere_head(script);
  for (const HeadCall& row : steps) EXPECT_EQ(row.call(), 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(LimitEnable, IsOneForAVetraAndElseZero) {
  Script script;
  vetra_head(script);
  const HeadCall rows[] = {
      {"pan 1", [] { return PanLimitEn(1); }, "i2c 40: w 04 01\n"},
      {"pan 0", [] { return PanLimitEn(0); }, "i2c 40: w 04 00\n"},
      {"pan 5", [] { return PanLimitEn(5); }, "i2c 40: w 04 00\n"},
      {"pan -1", [] { return PanLimitEn(-1); }, "i2c 40: w 04 00\n"},
      {"pan 257", [] { return PanLimitEn(257); }, "i2c 40: w 04 00\n"},
      {"tilt 1", [] { return TiltLimitEn(1); }, "i2c 41: w 04 01\n"},
      {"tilt 0", [] { return TiltLimitEn(0); }, "i2c 41: w 04 00\n"},
      {"tilt 5", [] { return TiltLimitEn(5); }, "i2c 41: w 04 00\n"},
      {"tilt -1", [] { return TiltLimitEn(-1); }, "i2c 41: w 04 00\n"},
      {"tilt 257", [] { return TiltLimitEn(257); }, "i2c 41: w 04 00\n"},
  };
  expect_on_vetra(script, rows);
}

TEST(LimitEnable, IsATravelModeForATasmere) {
  Script script;
  tasmere_head(script);
  const HeadCall rows[] = {
      {"pan 1", [] { return PanLimitEn(1); }, "i2c 40: w 19 00 02\n"},
      {"pan 0", [] { return PanLimitEn(0); }, "i2c 40: w 19 00 01\n"},
      {"pan 5", [] { return PanLimitEn(5); }, "i2c 40: w 19 00 00\n"},
      {"pan -1", [] { return PanLimitEn(-1); }, "i2c 40: w 19 00 00\n"},
      {"pan 256", [] { return PanLimitEn(256); }, "i2c 40: w 19 00 00\n"},
      {"tilt 1", [] { return TiltLimitEn(1); }, "i2c 41: w 19 00 02\n"},
      {"tilt 0", [] { return TiltLimitEn(0); }, "i2c 41: w 19 00 01\n"},
      {"tilt 5", [] { return TiltLimitEn(5); }, "i2c 41: w 19 00 00\n"},
      {"tilt -1", [] { return TiltLimitEn(-1); }, "i2c 41: w 19 00 00\n"},
      {"tilt 256", [] { return TiltLimitEn(256); }, "i2c 41: w 19 00 00\n"},
  };
  expect_on_tasmere(script, rows);
}

TEST(Limits, OfAVetraGoOutAsCountsInOneWrite) {
  Script script;
  vetra_head(script);
  const HeadCall rows[] = {
      {"pan", [] { return PanLimitSet(10000, 60000); }, "i2c 40: w 05 3B 95 05 F0\n"},
      {"pan the other way", [] { return PanLimitSet(60000, 10000); }, "i2c 40: w 05 05 F0 3B 95\n"},
      {"pan whole range", [] { return PanLimitSet(0, 65535); }, "i2c 40: w 05 46 50 00 00\n"},
      {"pan beyond", [] { return PanLimitSet(70000, 0); }, "i2c 40: w 05 FB 37 46 50\n"},
  };
  expect_on_vetra(script, rows);
}

TEST(Limits, OfAVetrasTiltAxisGoOutEndFirst) {
  Script script;
  vetra_head(script);
  const HeadCall rows[] = {
      {"tilt", [] { return TiltLimit(10000, 60000); },
       "out \"Limit S:60000 5020 E:10000 753\\n\"\ni2c 41: w 05 13 9C 02 F1\n"},
      {"the other way", [] { return TiltLimit(60000, 10000); },
       "out \"Limit S:10000 753 E:60000 5020\\n\"\ni2c 41: w 05 02 F1 13 9C\n"},
      {"beyond", [] { return TiltLimit(70000, 0); },
       "out \"Limit S:0 3500 E:70000 2275\\n\"\ni2c 41: w 05 0D AC 08 E3\n"},
  };
  expect_on_vetra(script, rows);
}

TEST(Limits, OfATasmeresPanAxisAreAStartAndALength) {
  Script script;
  tasmere_head(script);
  const HeadCall rows[] = {
      {"forward", [] { return PanLimitSet(1000, 60000); },
       "i2c 40: w 12 03 E8\ni2c 40: w 13 E6 78\n"},
      {"wrapped", [] { return PanLimitSet(60000, 1000); },
       "i2c 40: w 12 EA 60\ni2c 40: w 13 19 87\n"},
      {"equal", [] { return PanLimitSet(4660, 4660); }, "i2c 40: w 12 12 34\ni2c 40: w 13 00 00\n"},
      {"one back", [] { return PanLimitSet(1, 0); }, "i2c 40: w 12 00 01\ni2c 40: w 13 FF FE\n"},
      {"negative start", [] { return PanLimitSet(-1, 1); },
       "i2c 40: w 12 FF FF\ni2c 40: w 13 00 02\n"},
      {"negative end", [] { return PanLimitSet(1, -1); },
       "i2c 40: w 12 00 01\ni2c 40: w 13 FF FD\n"},
      {"beyond", [] { return PanLimitSet(70000, 70001); },
       "i2c 40: w 12 11 70\ni2c 40: w 13 00 01\n"},
  };
  expect_on_tasmere(script, rows);
}

TEST(Limits, OfATasmeresTiltAxisAreAStartAndALengthWithoutHallSensor) {
  Script script;
  tasmere_head(script);
  giSerTiltUseHall = 0;
  const HeadCall rows[] = {
      {"forward", [] { return TiltLimit(1000, 60000); },
       "i2c 41: w 12 03 E8\ni2c 41: w 13 E6 78\n"},
      {"wrapped", [] { return TiltLimit(60000, 1000); },
       "i2c 41: w 12 EA 60\ni2c 41: w 13 19 87\n"},
      {"equal", [] { return TiltLimit(0, 0); }, "i2c 41: w 12 00 00\ni2c 41: w 13 00 00\n"},
      {"beyond", [] { return TiltLimit(70000, 70001); },
       "i2c 41: w 12 11 70\ni2c 41: w 13 00 01\n"},
  };
  expect_on_tasmere(script, rows);
}

TEST(Limits, OfATasmeresTiltAxisAreMovedToItsHallSensor) {
  Script script;
  tasmere_head(script);
  const HeadCall rows[] = {
      {"at zero", [] { return TiltLimit(0, 0); }, "i2c 41: w 12 6C CC\ni2c 41: w 13 00 00\n"},
      {"forward", [] { return TiltLimit(1, 1000); }, "i2c 41: w 12 6C CD\ni2c 41: w 13 03 E7\n"},
      {"backward", [] { return TiltLimit(1000, 1); }, "i2c 41: w 12 70 B4\ni2c 41: w 13 FC 18\n"},
      {"last before the wrap", [] { return TiltLimit(37682, 37682); },
       "i2c 41: w 12 FF FE\ni2c 41: w 13 00 00\n"},
      {"first behind the wrap", [] { return TiltLimit(37683, 37683); },
       "i2c 41: w 12 00 00\ni2c 41: w 13 00 00\n"},
      {"across the wrap", [] { return TiltLimit(37682, 37683); },
       "i2c 41: w 12 FF FE\ni2c 41: w 13 00 01\n"},
      {"back across the wrap", [] { return TiltLimit(37683, 37682); },
       "i2c 41: w 12 00 00\ni2c 41: w 13 FF FE\n"},
      {"whole range, of no length", [] { return TiltLimit(0, 65535); },
       "i2c 41: w 12 6C CC\ni2c 41: w 13 00 00\n"},
      {"beyond", [] { return TiltLimit(70000, 70001); },
       "i2c 41: w 12 7E 3D\ni2c 41: w 13 00 01\n"},
  };
  for (const int setting : {1, 2, 255}) {
    giSerTiltUseHall = setting;
    expect_on_tasmere(script, rows);
  }
}

TEST(Limits, OfATasmeresTiltAxisAskForTheHallSensorOnce) {
  Script script;
  tasmere_head(script);
  script.i2c_register(41, 0x4F, {3});
  EXPECT_EQ(TiltLimit(0, 0), 0);
  EXPECT_EQ(script.transcript(), "i2c 41: w 4F r 1\ni2c 41: w 12 6C CC\ni2c 41: w 13 00 00\n");
  EXPECT_EQ(TiltLimit(0, 0), 0);
  EXPECT_EQ(script.transcript(), "i2c 41: w 12 6C CC\ni2c 41: w 13 00 00\n");
}

TEST(Limits, OfATasmeresTiltAxisDoWithoutTheHallSensorThatCannotBeAskedFor) {
  Script script;
  tasmere_head(script);
  script.i2c_register(41, 0x4F, {1});
  script.fail(Call::i2c, 1, 2, ENXIO);
  EXPECT_EQ(TiltLimit(5, 6), 0);
  EXPECT_EQ(script.transcript(),
            "i2c 41: w 4F r 1 -> ENXIO\ni2c 41: w 12 00 05 -> ENXIO\ni2c 41: w 13 00 01\n");
}

TEST(Limits, OfAPanAxisKnowNoHallSensor) {
  Script script;
  tasmere_head(script);
  giSerTiltUseHall = 1;
  EXPECT_EQ(PanLimitSet(0, 1), 0);
  EXPECT_EQ(script.transcript(), "i2c 40: w 12 00 00\ni2c 40: w 13 00 01\n");
}

TEST(Limits, AreSentThoughAWriteFails) {
  Script script;
  tasmere_head(script);
  script.fail(Call::i2c, 1, 1, ENXIO);
  EXPECT_EQ(PanLimitSet(1000, 60000), 0);
  EXPECT_EQ(script.transcript(), "i2c 40: w 12 03 E8 -> ENXIO\ni2c 40: w 13 E6 78\n");
}

}  // namespace
}  // namespace kelvo::test
