// Iris, heater and converter.
#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "lens/module_case.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::calling;
using kelvo::test::expect_cases;
using kelvo::test::forever;
using kelvo::test::ModuleCase;
using kelvo::test::Script;
using kelvo::test::set_latch;

TEST(Iris, IsSteppedOnDe015AtItsOwnSpeed) {
  const char* const closing_40 = R"(spi_pt5111: CF C0
spi_pt5111: 34 00
spi_pt5111: 74 00
spi_pt5111: 40 80
spi_pt5111: 44 28
spi_pt5111: 48 00
spi_pt5111: 4F 0D
spi_pt5111: 51 80
spi_pt5111: 7E 80
)";
  const char* const opening_1500 = R"(spi_pt5111: CF C0
spi_pt5111: 34 00
spi_pt5111: 74 00
spi_pt5111: 42 80
spi_pt5111: 45 DC
spi_pt5111: 48 01
spi_pt5111: 4F 0D
spi_pt5111: 51 80
spi_pt5111: 7E 80
)";
  const ModuleCase rows[] = {
      {7, calling<setIrisForward, 0, 40U>, closing_40},
      {7, calling<setIrisForward, 255, 40U>, closing_40},
      {7, calling<setIrisForward, 7, 65536U + 40U>, closing_40},
      {7, calling<setIrisBackward, 0, 1500U>, opening_1500},
      {7, calling<setIrisBackward, 255, 1500U>, opening_1500},
  };
  expect_cases(rows);
  EXPECT_EQ(cMotorPower, 1);
}

TEST(Iris, IsNotSteppedOnOtherModules) {
  for (const int32_t variant : {8, 9, 6, 10}) {
    const ModuleCase rows[] = {
        {variant, calling<setIrisForward, 100, 40U>, ""},
        {variant, calling<setIrisBackward, 100, 40U>, ""},
    };
    expect_cases(rows);
  }
  EXPECT_EQ(cMotorPower, 0);
}

TEST(Iris, IsZeroThoughTheDriverCannotBeReached) {
  Script script;
  SetLensType(7);
  script.fail(Call::open, 1, forever, ENOENT);
  EXPECT_EQ(setIrisForward(1, 1), 0U);
  EXPECT_EQ(setIrisBackward(1, 1), 0U);
  EXPECT_EQ(script.count(Call::open), 18);
  EXPECT_EQ(script.count(Call::transfer), 0);
}

TEST(DcIris, SendsSixteenBitsAndHandsTheLevelBack) {
  for (const int32_t variant : {7, 8, 9, 6, 10}) {
    const ModuleCase rows[] = {
        {variant, calling<setDCIrisABS, 0x1234U>, "spi_renesas: 61 00 00 12 34 A7 00\n", 0x1234},
        {variant, calling<setDCIrisABS, 0x12345U>, "spi_renesas: 61 00 00 23 45 C9 00\n", 0x12345},
        {variant, calling<setDCIrisABS, 0xFFFFFFFFU>, "spi_renesas: 61 00 00 FF FF 5F 00\n",
         0xFFFFFFFF},
        {variant, calling<setDCIrisABS, 0U>, "spi_renesas: 61 00 00 00 00 61 00\n", 0},
    };
    expect_cases(rows);
  }
}

TEST(Heater, SendsTheLowByteOfItsLevel) {
  for (const int32_t variant : {7, 8, 9, 6, 10}) {
    const ModuleCase rows[] = {
        {variant, calling<setHeater, 5U>, "spi_renesas: 07 00 00 00 05 0C 00\n"},
        {variant, calling<setHeater, 0x1FFU>, "spi_renesas: 07 00 00 00 FF 06 00\n"},
        {variant, calling<setHeater, 0x100U>, "spi_renesas: 07 00 00 00 00 07 00\n"},
    };
    expect_cases(rows);
  }
}

TEST(Converter, IsStartedThenAskedOnEveryModule) {
  const char* const conversion = R"(spi_renesas: 20 00 00 00 60 80 00
usleep 10000
spi_renesas: 81 03 00 00 00 84 00 00 00 00 00 00
)";
  for (const int32_t variant : {7, 8, 9, 6, 10}) {
    const ModuleCase rows[] = {
        {variant, calling<getADC, 3U>, conversion},
        {variant, calling<getADC, 0x703U>, conversion},
    };
    expect_cases(rows);
  }
}

TEST(Converter, ReadsTheTwoLastBytes) {
  Script script;
  SetLensType(9);
  script.query_reply_once(0x81, {0x11, 0x22, 0x33, 0x44});
  script.query_reply_once(0x81, {0xFF, 0xFF, 0x00, 0x00});
  script.query_reply_once(0x81, {0x00, 0x00, 0xFF, 0xFF});
  EXPECT_EQ(getADC(0), 0x3344U);
  EXPECT_EQ(getADC(0), 0U);
  EXPECT_EQ(getADC(0), 0xFFFFU);
}

TEST(Converter, TakesTheLockForItsCommandAlone) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(getADC(1), 0U);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_renesas
lock
spi_renesas: 20 00 00 00 60 80 00
unlock
usleep 10000
spi_renesas: 81 01 00 00 00 82 00 00 00 00 00 00
)");
}

TEST(Converter, IsNoughtWhenTheConversionOrItsReadingFails) {
  for (const int failing : {1, 2}) {
    Script script;
    SetLensType(7);
    script.query_reply(0x81, {1, 2, 3, 4});
    EXPECT_EQ(getADC(0), 0x0304U);
    script.fail(Call::transfer, failing, forever, EIO);
    EXPECT_EQ(getADC(0), 0U) << "transfer " << failing;
    EXPECT_EQ(GetLensType(), -1);
  }
}

TEST(Converter, WaitsEvenWhileTheLatchIsSet) {
  Script script;
  SetLensType(7);
  set_latch(script);
  EXPECT_EQ(getADC(0), 0U);
  EXPECT_EQ(script.transcript(), "lock\nunlock\nusleep 10000\n");
}

TEST(DcIrisAndHeater, TellNothingOfAFailure) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, forever, EIO);
  EXPECT_EQ(setDCIrisABS(0x1234), 0x1234U);
  EXPECT_EQ(setHeater(5), 0U);
  EXPECT_EQ(script.transcript_without({"open"}), R"(lock
spi_renesas: 61 00 00 12 34 A7 00 -> EIO
spi_renesas: 61 00 00 12 34 A7 00 -> EIO
out "SendCommand Error -1\n"
unlock
lock
unlock
)");
}

}  // namespace
