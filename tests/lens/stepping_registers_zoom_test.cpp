// Zoom 1 of the T5391 module and zoom 2: the register path on the controller's zoom channel.
#include <gtest/gtest.h>

#include <string>

#include "kelvo.h"
#include "lens/module_case.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::locks;
using kelvo::test::Script;

TEST(ZoomRegisters, MoveZoom1OfT5391ForwardInHalfSteps) {
  Script script;
  SetLensType(9);
  EXPECT_EQ(setZoom1Forward(128, 1000), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0C 00 86 00 01 93 00
spi_renesas: 0C 00 8E 00 49 E3 00
spi_renesas: 0C 00 3E 00 00 4A 00
spi_renesas: 0C 00 20 03 40 6F 00
spi_renesas: 0C 00 22 03 D0 01 00
spi_renesas: 0C 00 24 00 01 31 00
spi_renesas: 0C 00 26 14 C2 08 00
spi_renesas: 0C 00 38 00 00 44 00
spi_renesas: 0C 00 FC 01 F3 FC 00
spi_renesas: 0C 00 3E 0F 02 5B 00
usleep 5000
spi_renesas: 0C 00 3E 0F 0A 63 00
)");
}

TEST(ZoomRegisters, MoveZoom1OfT5391BackwardInHalfSteps) {
  Script script;
  SetLensType(9);
  EXPECT_EQ(setZoom1Backward(128, 1000), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0C 00 86 00 01 93 00
spi_renesas: 0C 00 8E 00 49 E3 00
spi_renesas: 0C 00 3E 00 00 4A 00
spi_renesas: 0C 00 20 03 00 2F 00
spi_renesas: 0C 00 22 03 D0 01 00
spi_renesas: 0C 00 24 00 01 31 00
spi_renesas: 0C 00 26 14 C2 08 00
spi_renesas: 0C 00 38 00 00 44 00
spi_renesas: 0C 00 FC 01 F3 FC 00
spi_renesas: 0C 00 3E 0F 02 5B 00
usleep 5000
spi_renesas: 0C 00 3E 0F 0A 63 00
)");
}

TEST(ZoomRegisters, MoveZoom1OfT5391BackwardTheSameForTwoTwo) {
  Script script;
  SetLensType(9);
  EXPECT_EQ(setZoom1Backward2_2(128, 1000), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0C 00 86 00 01 93 00
spi_renesas: 0C 00 8E 00 49 E3 00
spi_renesas: 0C 00 3E 00 00 4A 00
spi_renesas: 0C 00 20 03 00 2F 00
spi_renesas: 0C 00 22 03 D0 01 00
spi_renesas: 0C 00 24 00 01 31 00
spi_renesas: 0C 00 26 14 C2 08 00
spi_renesas: 0C 00 38 00 00 44 00
spi_renesas: 0C 00 FC 01 F3 FC 00
spi_renesas: 0C 00 3E 0F 02 5B 00
usleep 5000
spi_renesas: 0C 00 3E 0F 0A 63 00
)");
}

TEST(ZoomRegisters, MoveZoom2OfDe015ForwardInEighthSteps) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(setZoom2Forward(200, 300), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0F 00 86 00 01 96 00
spi_renesas: 0F 00 8E 00 49 E6 00
spi_renesas: 0F 00 3E 00 00 4D 00
spi_renesas: 0F 00 20 06 00 35 00
spi_renesas: 0F 00 22 01 60 92 00
spi_renesas: 0F 00 24 00 02 35 00
spi_renesas: 0F 00 26 28 67 C4 00
spi_renesas: 0F 00 38 00 00 47 00
spi_renesas: 0F 00 FC 01 F3 FF 00
spi_renesas: 0F 00 3E 0F 02 5E 00
usleep 50000
spi_renesas: 0F 00 3E 0F 0A 66 00
)");
}

TEST(ZoomRegisters, MoveZoom2OfDe015BackwardInEighthSteps) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(setZoom2Backward(200, 300), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0F 00 86 00 01 96 00
spi_renesas: 0F 00 8E 00 49 E6 00
spi_renesas: 0F 00 3E 00 00 4D 00
spi_renesas: 0F 00 20 06 40 75 00
spi_renesas: 0F 00 22 01 60 92 00
spi_renesas: 0F 00 24 00 02 35 00
spi_renesas: 0F 00 26 28 67 C4 00
spi_renesas: 0F 00 38 00 00 47 00
spi_renesas: 0F 00 FC 01 F3 FF 00
spi_renesas: 0F 00 3E 0F 02 5E 00
usleep 50000
spi_renesas: 0F 00 3E 0F 0A 66 00
)");
}

TEST(ZoomRegisters, MoveZoom2OfDf033ForwardAfterFiveMilliseconds) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(setZoom2Forward(200, 300), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0C 00 86 00 01 93 00
spi_renesas: 0C 00 8E 00 49 E3 00
spi_renesas: 0C 00 3E 00 00 4A 00
spi_renesas: 0C 00 20 06 00 32 00
spi_renesas: 0C 00 22 01 60 8F 00
spi_renesas: 0C 00 24 00 02 32 00
spi_renesas: 0C 00 26 28 67 C1 00
spi_renesas: 0C 00 38 00 00 44 00
spi_renesas: 0C 00 FC 01 F3 FC 00
spi_renesas: 0C 00 3E 0F 02 5B 00
usleep 5000
spi_renesas: 0C 00 3E 0F 0A 63 00
)");
}

TEST(ZoomRegisters, MoveZoom2OfDf033BackwardAfterFiveMilliseconds) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(setZoom2Backward(200, 300), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0C 00 86 00 01 93 00
spi_renesas: 0C 00 8E 00 49 E3 00
spi_renesas: 0C 00 3E 00 00 4A 00
spi_renesas: 0C 00 20 06 40 72 00
spi_renesas: 0C 00 22 01 60 8F 00
spi_renesas: 0C 00 24 00 02 32 00
spi_renesas: 0C 00 26 28 67 C1 00
spi_renesas: 0C 00 38 00 00 44 00
spi_renesas: 0C 00 FC 01 F3 FC 00
spi_renesas: 0C 00 3E 0F 02 5B 00
usleep 5000
spi_renesas: 0C 00 3E 0F 0A 63 00
)");
}

TEST(ZoomRegisters, MoveZoom2OfDe015ForwardInMicroSteps) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(setZoom2Forward512(200, 3001), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0F 00 86 00 01 96 00
spi_renesas: 0F 00 8E 00 49 E6 00
spi_renesas: 0F 00 3E 00 00 4D 00
spi_renesas: 0F 00 20 06 00 35 00
spi_renesas: 0F 00 22 03 B9 ED 00
spi_renesas: 0F 00 24 00 02 35 00
spi_renesas: 0F 00 26 28 67 C4 00
spi_renesas: 0F 00 38 00 00 47 00
spi_renesas: 0F 00 FC 01 F3 FF 00
spi_renesas: 0F 00 3E 0F 02 5E 00
usleep 50000
spi_renesas: 0F 00 3E 0F 0A 66 00
)");
}

TEST(ZoomRegisters, MoveZoom2OfDe015BackwardInMicroSteps) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(setZoom2Backward512(200, 3001), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0F 00 86 00 01 96 00
spi_renesas: 0F 00 8E 00 49 E6 00
spi_renesas: 0F 00 3E 00 00 4D 00
spi_renesas: 0F 00 20 06 40 75 00
spi_renesas: 0F 00 22 03 B9 ED 00
spi_renesas: 0F 00 24 00 02 35 00
spi_renesas: 0F 00 26 28 67 C4 00
spi_renesas: 0F 00 38 00 00 47 00
spi_renesas: 0F 00 FC 01 F3 FF 00
spi_renesas: 0F 00 3E 0F 02 5E 00
usleep 50000
spi_renesas: 0F 00 3E 0F 0A 66 00
)");
}

TEST(ZoomRegisters, MoveZoom2OfDf033ForwardInMicroSteps) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(setZoom2Forward512(200, 3001), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0C 00 86 00 01 93 00
spi_renesas: 0C 00 8E 00 49 E3 00
spi_renesas: 0C 00 3E 00 00 4A 00
spi_renesas: 0C 00 20 06 00 32 00
spi_renesas: 0C 00 22 03 B9 EA 00
spi_renesas: 0C 00 24 00 02 32 00
spi_renesas: 0C 00 26 28 67 C1 00
spi_renesas: 0C 00 38 00 00 44 00
spi_renesas: 0C 00 FC 01 F3 FC 00
spi_renesas: 0C 00 3E 0F 02 5B 00
usleep 5000
spi_renesas: 0C 00 3E 0F 0A 63 00
)");
}

TEST(ZoomRegisters, MoveZoom2OfDf033BackwardInMicroSteps) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(setZoom2Backward512(200, 3001), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0C 00 86 00 01 93 00
spi_renesas: 0C 00 8E 00 49 E3 00
spi_renesas: 0C 00 3E 00 00 4A 00
spi_renesas: 0C 00 20 06 40 72 00
spi_renesas: 0C 00 22 03 B9 EA 00
spi_renesas: 0C 00 24 00 02 32 00
spi_renesas: 0C 00 26 28 67 C1 00
spi_renesas: 0C 00 38 00 00 44 00
spi_renesas: 0C 00 FC 01 F3 FC 00
spi_renesas: 0C 00 3E 0F 02 5B 00
usleep 5000
spi_renesas: 0C 00 3E 0F 0A 63 00
)");
}

TEST(ZoomRegisters, WaitOnlyForTheFirstMoveOfZoom1) {
  Script script;
  SetLensType(9);
  setZoom1Forward(128, 1000);
  script.transcript();
  EXPECT_EQ(setZoom1Backward2_2(128, 1000), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(spi_renesas: 0C 00 86 00 01 93 00
spi_renesas: 0C 00 8E 00 49 E3 00
spi_renesas: 0C 00 3E 00 00 4A 00
spi_renesas: 0C 00 20 03 00 2F 00
spi_renesas: 0C 00 22 03 D0 01 00
spi_renesas: 0C 00 24 00 01 31 00
spi_renesas: 0C 00 26 14 C2 08 00
spi_renesas: 0C 00 38 00 00 44 00
spi_renesas: 0C 00 FC 01 F3 FC 00
spi_renesas: 0C 00 3E 0F 02 5B 00
spi_renesas: 0C 00 3E 0F 0A 63 00
)");
}

TEST(ZoomRegisters, WaitOnlyForTheFirstMoveOfZoom2) {
  Script script;
  SetLensType(8);
  setZoom2Forward(200, 300);
  script.transcript();
  EXPECT_EQ(setZoom2Backward512(200, 3001), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(spi_renesas: 0C 00 86 00 01 93 00
spi_renesas: 0C 00 8E 00 49 E3 00
spi_renesas: 0C 00 3E 00 00 4A 00
spi_renesas: 0C 00 20 06 40 72 00
spi_renesas: 0C 00 22 03 B9 EA 00
spi_renesas: 0C 00 24 00 02 32 00
spi_renesas: 0C 00 26 28 67 C1 00
spi_renesas: 0C 00 38 00 00 44 00
spi_renesas: 0C 00 FC 01 F3 FC 00
spi_renesas: 0C 00 3E 0F 02 5B 00
spi_renesas: 0C 00 3E 0F 0A 63 00
)");
}

TEST(ZoomRegisters, WaitForZoom2ThoughZoom1UsedTheSameChannelBefore) {
  Script script;
  SetLensType(9);
  setZoom1Forward(128, 1000);
  SetLensType(7);
  const int waits = script.count(Call::usleep);
  setZoom2Forward(200, 300);
  EXPECT_EQ(script.count(Call::usleep), waits + 1);
}

TEST(ZoomRegisters, ShareTheStartedFlagOfZoom1WithTheCommandBlock) {
  Script script;
  SetLensType(7);
  setZoom1Forward(128, 1000);
  SetLensType(9);
  const int waits = script.count(Call::usleep);
  setZoom1Forward(128, 1000);
  EXPECT_EQ(script.count(Call::usleep), waits);
}
}  // namespace
