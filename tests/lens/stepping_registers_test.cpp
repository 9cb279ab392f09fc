// Focus: the register path on the controller's focus channel.
#include <gtest/gtest.h>

#include <string>

#include "kelvo.h"
#include "lens/module_case.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::locks;
using kelvo::test::Script;

TEST(FocusRegisters, TakeTheLockForEachWriteAndNotForTheWait) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(setFocusForward(100, 200), 0U);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_renesas
lock
spi_renesas: 0F 00 86 00 01 96 00
unlock
lock
spi_renesas: 0F 00 8E 00 49 E6 00
unlock
lock
spi_renesas: 0F 00 1E 00 00 2D 00
unlock
lock
spi_renesas: 0F 00 00 06 00 15 00
unlock
lock
spi_renesas: 0F 00 02 02 40 53 00
unlock
lock
spi_renesas: 0F 00 04 00 01 14 00
unlock
lock
spi_renesas: 0F 00 06 28 CD 0A 00
unlock
lock
spi_renesas: 0F 00 18 00 00 27 00
unlock
lock
spi_renesas: 0F 00 FC 01 F3 FF 00
unlock
lock
spi_renesas: 0F 00 1E 0F 02 3E 00
unlock
usleep 50000
lock
spi_renesas: 0F 00 1E 0F 0A 46 00
unlock
)");
}

TEST(FocusRegisters, MoveDe015ForwardInEighthSteps) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(setFocusForward(100, 200), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0F 00 86 00 01 96 00
spi_renesas: 0F 00 8E 00 49 E6 00
spi_renesas: 0F 00 1E 00 00 2D 00
spi_renesas: 0F 00 00 06 00 15 00
spi_renesas: 0F 00 02 02 40 53 00
spi_renesas: 0F 00 04 00 01 14 00
spi_renesas: 0F 00 06 28 CD 0A 00
spi_renesas: 0F 00 18 00 00 27 00
spi_renesas: 0F 00 FC 01 F3 FF 00
spi_renesas: 0F 00 1E 0F 02 3E 00
usleep 50000
spi_renesas: 0F 00 1E 0F 0A 46 00
)");
}

TEST(FocusRegisters, MoveDe015BackwardInEighthSteps) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(setFocusBackward(100, 200), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0F 00 86 00 01 96 00
spi_renesas: 0F 00 8E 00 49 E6 00
spi_renesas: 0F 00 1E 00 00 2D 00
spi_renesas: 0F 00 00 06 40 55 00
spi_renesas: 0F 00 02 02 40 53 00
spi_renesas: 0F 00 04 00 01 14 00
spi_renesas: 0F 00 06 28 CD 0A 00
spi_renesas: 0F 00 18 00 00 27 00
spi_renesas: 0F 00 FC 01 F3 FF 00
spi_renesas: 0F 00 1E 0F 02 3E 00
usleep 50000
spi_renesas: 0F 00 1E 0F 0A 46 00
)");
}

TEST(FocusRegisters, MoveDf033ForwardAfterTenMilliseconds) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(setFocusForward(100, 200), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0C 00 86 00 01 93 00
spi_renesas: 0C 00 8E 00 49 E3 00
spi_renesas: 0C 00 1E 00 00 2A 00
spi_renesas: 0C 00 00 06 00 12 00
spi_renesas: 0C 00 02 02 40 50 00
spi_renesas: 0C 00 04 00 01 11 00
spi_renesas: 0C 00 06 28 CD 07 00
spi_renesas: 0C 00 18 00 00 24 00
spi_renesas: 0C 00 FC 01 F3 FC 00
spi_renesas: 0C 00 1E 0F 02 3B 00
usleep 10000
spi_renesas: 0C 00 1E 0F 0A 43 00
)");
}

TEST(FocusRegisters, MoveDf033BackwardAfterTenMilliseconds) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(setFocusBackward(100, 200), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0C 00 86 00 01 93 00
spi_renesas: 0C 00 8E 00 49 E3 00
spi_renesas: 0C 00 1E 00 00 2A 00
spi_renesas: 0C 00 00 06 40 52 00
spi_renesas: 0C 00 02 02 40 50 00
spi_renesas: 0C 00 04 00 01 11 00
spi_renesas: 0C 00 06 28 CD 07 00
spi_renesas: 0C 00 18 00 00 24 00
spi_renesas: 0C 00 FC 01 F3 FC 00
spi_renesas: 0C 00 1E 0F 02 3B 00
usleep 10000
spi_renesas: 0C 00 1E 0F 0A 43 00
)");
}

TEST(FocusRegisters, MoveT5391ForwardInWholeSteps) {
  Script script;
  SetLensType(9);
  EXPECT_EQ(setFocusForward(100, 5000), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0C 00 86 00 01 93 00
spi_renesas: 0C 00 8E 00 49 E3 00
spi_renesas: 0C 00 1E 00 00 2A 00
spi_renesas: 0C 00 00 03 40 4F 00
spi_renesas: 0C 00 02 03 88 99 00
spi_renesas: 0C 00 04 00 04 14 00
spi_renesas: 0C 00 06 0C 7C 9A 00
spi_renesas: 0C 00 18 00 00 24 00
spi_renesas: 0C 00 FC 01 F3 FC 00
spi_renesas: 0C 00 1E 0F 02 3B 00
usleep 10000
spi_renesas: 0C 00 1E 0F 0A 43 00
)");
}

TEST(FocusRegisters, MoveT5391BackwardInWholeSteps) {
  Script script;
  SetLensType(9);
  EXPECT_EQ(setFocusBackward(100, 5000), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 0C 00 86 00 01 93 00
spi_renesas: 0C 00 8E 00 49 E3 00
spi_renesas: 0C 00 1E 00 00 2A 00
spi_renesas: 0C 00 00 03 00 0F 00
spi_renesas: 0C 00 02 03 88 99 00
spi_renesas: 0C 00 04 00 04 14 00
spi_renesas: 0C 00 06 0C 7C 9A 00
spi_renesas: 0C 00 18 00 00 24 00
spi_renesas: 0C 00 FC 01 F3 FC 00
spi_renesas: 0C 00 1E 0F 02 3B 00
usleep 10000
spi_renesas: 0C 00 1E 0F 0A 43 00
)");
}

TEST(FocusRegisters, WaitOnlyForTheFirstMoveInEitherDirection) {
  Script script;
  SetLensType(7);
  setFocusForward(100, 200);
  script.transcript();
  EXPECT_EQ(setFocusBackward(100, 200), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(spi_renesas: 0F 00 86 00 01 96 00
spi_renesas: 0F 00 8E 00 49 E6 00
spi_renesas: 0F 00 1E 00 00 2D 00
spi_renesas: 0F 00 00 06 40 55 00
spi_renesas: 0F 00 02 02 40 53 00
spi_renesas: 0F 00 04 00 01 14 00
spi_renesas: 0F 00 06 28 CD 0A 00
spi_renesas: 0F 00 18 00 00 27 00
spi_renesas: 0F 00 FC 01 F3 FF 00
spi_renesas: 0F 00 1E 0F 02 3E 00
spi_renesas: 0F 00 1E 0F 0A 46 00
)");
}

TEST(FocusRegisters, WaitOnceForTheMotorWhateverTheVariantsThatMoveIt) {
  Script script;
  SetLensType(9);
  setFocusForward(100, 200);
  SetLensType(7);
  setFocusForward(100, 200);
  SetLensType(8);
  setFocusForward(100, 200);
  EXPECT_EQ(script.count(Call::usleep), 1);
}

TEST(FocusRegisters, HaveAStartedFlagOfTheirOwn) {
  Script script;
  SetLensType(7);
  setZoom1Forward(100, 10);
  setZoom2Forward(100, 10);
  const int waits = script.count(Call::usleep);
  setFocusForward(100, 10);
  EXPECT_EQ(script.count(Call::usleep), waits + 1);
}
}  // namespace
