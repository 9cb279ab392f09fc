// Zoom 3 of the DF033 module: the command block.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "kelvo.h"
#include "lens/module_case.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::frame_of_move;
using kelvo::test::locks;
using kelvo::test::Script;

TEST(Zoom3CommandBlock, TakesTheLockForEachFrameAndNotForTheWait) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(setZoom3Forward(100, 1000), 0U);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_renesas
lock
spi_renesas: 16 00 00 00 00 16 00
unlock
lock
spi_renesas: 17 00 00 00 03 1A 00
unlock
lock
spi_renesas: 18 00 00 10 28 50 00
unlock
lock
spi_renesas: 1D 00 00 19 00 36 00
unlock
lock
spi_renesas: 19 00 00 03 E8 04 00
unlock
lock
spi_renesas: 1A 00 00 00 64 7E 00
unlock
lock
spi_renesas: 1B 00 00 00 01 1C 00
unlock
usleep 5000
lock
spi_renesas: 1C 00 00 00 01 1D 00
unlock
)");
}

TEST(Zoom3CommandBlock, DiffersBackwardOnlyInItsDirection) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(setZoom3Backward(100, 1000), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 16 00 00 00 01 17 00
spi_renesas: 17 00 00 00 03 1A 00
spi_renesas: 18 00 00 10 28 50 00
spi_renesas: 1D 00 00 19 00 36 00
spi_renesas: 19 00 00 03 E8 04 00
spi_renesas: 1A 00 00 00 64 7E 00
spi_renesas: 1B 00 00 00 01 1C 00
usleep 5000
spi_renesas: 1C 00 00 00 01 1D 00
)");
}

TEST(Zoom3CommandBlock, WaitsOnlyBeforeTheFirstMoveInEitherDirection) {
  Script script;
  SetLensType(8);
  setZoom3Backward(100, 1000);
  script.transcript();
  EXPECT_EQ(setZoom3Forward(100, 1000), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(spi_renesas: 16 00 00 00 00 16 00
spi_renesas: 17 00 00 00 03 1A 00
spi_renesas: 18 00 00 10 28 50 00
spi_renesas: 1D 00 00 19 00 36 00
spi_renesas: 19 00 00 03 E8 04 00
spi_renesas: 1A 00 00 00 64 7E 00
spi_renesas: 1B 00 00 00 01 1C 00
spi_renesas: 1C 00 00 00 01 1D 00
)");
}

TEST(Zoom3CommandBlock, HasAStartedFlagOfItsOwn) {
  Script script;
  SetLensType(8);
  setFocusForward(100, 10);
  setZoom2Forward(100, 10);
  setZoom1Forward(100, 10);
  script.transcript();
  setZoom3Forward(100, 10);
  EXPECT_NE(script.transcript().find("usleep 5000\n"), std::string::npos);
}

std::string zoom3_frame(std::uint8_t speed, std::uint32_t steps, const std::string& command) {
  return frame_of_move(8, setZoom3Forward, speed, steps, command);
}

TEST(Zoom3CommandBlock, ScalesTheSpeedLevelAndTruncatesBeforeTheEightfold) {
  EXPECT_EQ(zoom3_frame(0, 10, "18"), "18 00 00 00 00 18 00");
  EXPECT_EQ(zoom3_frame(1, 10, "18"), "18 00 00 00 28 40 00");
  EXPECT_EQ(zoom3_frame(2, 10, "18"), "18 00 00 00 50 68 00");
  EXPECT_EQ(zoom3_frame(53, 10, "18"), "18 00 00 08 90 B0 00");
  EXPECT_EQ(zoom3_frame(128, 10, "18"), "18 00 00 14 B0 DC 00");
  EXPECT_EQ(zoom3_frame(254, 10, "18"), "18 00 00 29 10 51 00");
  EXPECT_EQ(zoom3_frame(255, 10, "18"), "18 00 00 29 40 81 00");
}

TEST(Zoom3CommandBlock, SendsOnlyTheLowSixteenBitsOfTheCount) {
  EXPECT_EQ(zoom3_frame(0, 0, "19"), "19 00 00 00 00 19 00");
  EXPECT_EQ(zoom3_frame(0, 65535, "19"), "19 00 00 FF FF 17 00");
  EXPECT_EQ(zoom3_frame(0, 65536, "19"), "19 00 00 00 00 19 00");
  EXPECT_EQ(zoom3_frame(0, 70000, "19"), "19 00 00 11 70 9A 00");
  EXPECT_EQ(zoom3_frame(0, 0xFFFFFFFF, "19"), "19 00 00 FF FF 17 00");
}

TEST(Zoom3CommandBlock, SucceedsWhenOneFrameNeedsItsRetry) {
  for (int nth = 1; nth <= 8; ++nth) {
    for (uint32_t (*const move)(uint8_t, uint32_t) : {setZoom3Forward, setZoom3Backward}) {
      Script script;
      SetLensType(8);
      script.fail(Call::transfer, nth, 1, EIO);
      EXPECT_EQ(move(100, 1000), 0U) << nth;
      EXPECT_EQ(script.count(Call::transfer), 9) << nth;
      EXPECT_EQ(GetLensType(), 8) << nth;
    }
  }
}

TEST(Zoom3CommandBlock, ReturnsTheLatchAndSendsNoMoreAfterAFrameThatFailedTwice) {
  for (int nth = 1; nth <= 8; ++nth) {
    for (uint32_t (*const move)(uint8_t, uint32_t) : {setZoom3Forward, setZoom3Backward}) {
      Script script;
      SetLensType(8);
      script.fail(Call::transfer, nth, 2, EIO);
      EXPECT_EQ(move(100, 1000), 255U) << nth;
      EXPECT_EQ(script.count(Call::transfer), nth + 1) << nth;
      EXPECT_EQ(GetLensType(), -1) << nth;
    }
  }
}

TEST(Zoom3CommandBlock, ReturnsOnlyTheLowByteOfTheLatch) {
  Script script;
  SetLensType(8);
  script.result(Call::transfer, 8, 0x105);
  script.result(Call::transfer, 9, 0x207);
  EXPECT_EQ(setZoom3Backward(100, 1000), 7U);
}

TEST(Zoom3CommandBlock, WaitsButSendsNothingWhileTheLatchIsSet) {
  Script script;
  SetLensType(8);
  script.fail(Call::transfer, 1, 2, EIO);
  SendCommand(1, 0, 0, 0, 0);
  script.transcript();
  EXPECT_EQ(setZoom3Forward(100, 1000), 255U);
  EXPECT_EQ(script.transcript(),
            "lock\nunlock\nlock\nunlock\nlock\nunlock\nlock\nunlock\n"
            "lock\nunlock\nlock\nunlock\nlock\nunlock\n"
            "usleep 5000\n"
            "lock\nunlock\n");
}

TEST(Zoom3CommandBlock, WithoutADeviceFailsAtTheFirstFrame) {
  Script script;
  SetLensType(8);
  script.fail(Call::open, 1, forever, ENOENT);
  EXPECT_EQ(setZoom3Forward(100, 1000), 255U);
  EXPECT_EQ(script.count(Call::open), 8);
  EXPECT_EQ(script.count(Call::transfer), 2);
}

TEST(Zoom3CommandBlock, IgnoresAnInterruptedWait) {
  Script script;
  SetLensType(8);
  script.fail(Call::usleep, 1, forever, EINTR);
  EXPECT_EQ(setZoom3Forward(100, 1000), 0U);
  EXPECT_EQ(script.count(Call::usleep), 1);
}

}  // namespace
