// Zoom 1 of the DE015 module: the command block.
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

/// The six operations at speed 100 and 1000 steps, and the frames in which they differ.
struct Zoom1Operation {
  const char* name;
  uint32_t (*run)();
  const char* direction;
  const char* mode;
  const char* early_wait;
};
constexpr Zoom1Operation zoom1_operations[6] = {
    {"setZoom1Forward", [] { return setZoom1Forward(100, 1000); }, "38 00 00 00 00 38 00",
     "39 00 00 00 01 3A 00", ""},
    {"setZoom1Backward", [] { return setZoom1Backward(100, 1000); }, "38 00 00 00 01 39 00",
     "39 00 00 00 01 3A 00", ""},
    {"setZoom1Forward2_2", [] { return setZoom1Forward2_2(100, 1000); }, "38 00 00 00 00 38 00",
     "39 00 00 00 00 39 00", ""},
    {"setZoom1Backward2_2", [] { return setZoom1Backward2_2(100, 1000); }, "38 00 00 00 01 39 00",
     "39 00 00 00 00 39 00", ""},
    {"setZoom1uForward", [] { return setZoom1uForward(100, 1000); }, "38 00 00 00 00 38 00",
     "39 00 00 00 01 3A 00", "usleep 50000\n"},
    {"setZoom1uBackward", [] { return setZoom1uBackward(100, 1000); }, "38 00 00 00 01 39 00",
     "39 00 00 00 01 3A 00", "usleep 100000\n"},
};

std::string first_move(const Zoom1Operation& operation) {
  return std::string("spi_renesas: ") + operation.direction + "\nspi_renesas: " + operation.mode +
         R"(
spi_renesas: 3A 00 00 01 78 B3 00
spi_renesas: 3B 00 00 19 00 54 00
spi_renesas: 3C 00 00 03 E8 27 00
spi_renesas: 3D 00 00 00 64 A1 00
)" + operation.early_wait +
         R"(spi_renesas: 3E 00 00 00 01 3F 00
usleep 50000
spi_renesas: 3F 00 00 00 01 40 00
)";
}

std::string later_move(const Zoom1Operation& operation) {
  return std::string("spi_renesas: ") + operation.direction + "\nspi_renesas: " + operation.mode +
         R"(
spi_renesas: 3A 00 00 01 78 B3 00
spi_renesas: 3B 00 00 19 00 54 00
spi_renesas: 3C 00 00 03 E8 27 00
spi_renesas: 3D 00 00 00 64 A1 00
spi_renesas: 3E 00 00 00 01 3F 00
spi_renesas: 3F 00 00 00 01 40 00
)";
}

/// A fresh process for one operation's first move.
void expect_first_move(const Zoom1Operation& operation) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(operation.run(), 0U) << operation.name;
  EXPECT_EQ(script.transcript_without(locks), "open /dev/spi_renesas\n" + first_move(operation))
      << operation.name;
}

TEST(Zoom1CommandBlock, TakesTheLockForEachFrameAndNeverAcrossAWait) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(setZoom1uBackward(255, 1), 0U);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_renesas
lock
spi_renesas: 38 00 00 00 01 39 00
unlock
lock
spi_renesas: 39 00 00 00 01 3A 00
unlock
lock
spi_renesas: 3A 00 00 03 C0 FD 00
unlock
lock
spi_renesas: 3B 00 00 19 00 54 00
unlock
lock
spi_renesas: 3C 00 00 00 01 3D 00
unlock
lock
spi_renesas: 3D 00 00 00 64 A1 00
unlock
usleep 100000
lock
spi_renesas: 3E 00 00 00 01 3F 00
unlock
usleep 50000
lock
spi_renesas: 3F 00 00 00 01 40 00
unlock
)");
}

TEST(Zoom1CommandBlock, MovesForwardInModeOne) { expect_first_move(zoom1_operations[0]); }
TEST(Zoom1CommandBlock, MovesBackwardInModeOne) { expect_first_move(zoom1_operations[1]); }
TEST(Zoom1CommandBlock, MovesForwardInModeZeroForTwoTwo) { expect_first_move(zoom1_operations[2]); }
TEST(Zoom1CommandBlock, MovesBackwardInModeZeroForTwoTwo) {
  expect_first_move(zoom1_operations[3]);
}
TEST(Zoom1CommandBlock, WaitsFiftyMoreForTheFirstMicroForward) {
  expect_first_move(zoom1_operations[4]);
}
TEST(Zoom1CommandBlock, WaitsAHundredMoreForTheFirstMicroBackward) {
  expect_first_move(zoom1_operations[5]);
}

TEST(Zoom1CommandBlock, WaitsOnlyBeforeTheFirstMoveOfWhicheverOperation) {
  Script script;
  SetLensType(7);
  zoom1_operations[5].run();
  script.transcript();
  for (const Zoom1Operation& operation : zoom1_operations) {
    EXPECT_EQ(operation.run(), 0U);
    EXPECT_EQ(script.transcript_without(locks), later_move(operation)) << operation.name;
  }
}

TEST(Zoom1CommandBlock, DoesNotWaitAgainAfterSetLensType) {
  Script script;
  SetLensType(7);
  zoom1_operations[0].run();
  SetLensType(7);
  script.transcript();
  zoom1_operations[4].run();
  EXPECT_EQ(script.transcript_without(locks), later_move(zoom1_operations[4]));
}

std::string zoom1_frame(std::uint8_t speed, std::uint32_t steps, const std::string& command) {
  return frame_of_move(7, setZoom1Forward, speed, steps, command);
}

TEST(Zoom1CommandBlock, ScalesTheSpeedLevelToNineHundredAndSixty) {
  EXPECT_EQ(zoom1_frame(0, 10, "3A"), "3A 00 00 00 00 3A 00");
  EXPECT_EQ(zoom1_frame(1, 10, "3A"), "3A 00 00 00 03 3D 00");
  EXPECT_EQ(zoom1_frame(53, 10, "3A"), "3A 00 00 00 C7 01 00");
  EXPECT_EQ(zoom1_frame(128, 10, "3A"), "3A 00 00 01 E1 1C 00");
  EXPECT_EQ(zoom1_frame(254, 10, "3A"), "3A 00 00 03 BC F9 00");
  EXPECT_EQ(zoom1_frame(255, 10, "3A"), "3A 00 00 03 C0 FD 00");
}

TEST(Zoom1CommandBlock, SendsOnlyTheLowSixteenBitsOfTheCount) {
  EXPECT_EQ(zoom1_frame(0, 0, "3C"), "3C 00 00 00 00 3C 00");
  EXPECT_EQ(zoom1_frame(0, 65535, "3C"), "3C 00 00 FF FF 3A 00");
  EXPECT_EQ(zoom1_frame(0, 65536, "3C"), "3C 00 00 00 00 3C 00");
  EXPECT_EQ(zoom1_frame(0, 70000, "3C"), "3C 00 00 11 70 BD 00");
  EXPECT_EQ(zoom1_frame(0, 0xFFFFFFFF, "3C"), "3C 00 00 FF FF 3A 00");
}

TEST(Zoom1CommandBlock, TakesANegativeMicroCountByItsLowBits) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(setZoom1uBackward(100, -300), 0U);
  EXPECT_EQ(script.transcript_without(locks), R"(open /dev/spi_renesas
spi_renesas: 38 00 00 00 01 39 00
spi_renesas: 39 00 00 00 01 3A 00
spi_renesas: 3A 00 00 01 78 B3 00
spi_renesas: 3B 00 00 19 00 54 00
spi_renesas: 3C 00 00 FE D4 0E 00
spi_renesas: 3D 00 00 00 64 A1 00
usleep 100000
spi_renesas: 3E 00 00 00 01 3F 00
usleep 50000
spi_renesas: 3F 00 00 00 01 40 00
)");
}

TEST(Zoom1CommandBlock, SucceedsWhenOneFrameNeedsItsRetry) {
  for (int nth = 1; nth <= 8; ++nth) {
    for (const Zoom1Operation& operation : zoom1_operations) {
      Script script;
      SetLensType(7);
      script.fail(Call::transfer, nth, 1, EIO);
      EXPECT_EQ(operation.run(), 0U) << operation.name << ": " << nth;
      EXPECT_EQ(script.count(Call::transfer), 9) << operation.name << ": " << nth;
      EXPECT_EQ(GetLensType(), 7);
    }
  }
}

TEST(Zoom1CommandBlock, ReturnsTheLatchAndSendsNoMoreAfterAFrameThatFailedTwice) {
  for (int nth = 1; nth <= 8; ++nth) {
    for (const Zoom1Operation& operation : zoom1_operations) {
      Script script;
      SetLensType(7);
      script.fail(Call::transfer, nth, 2, EIO);
      EXPECT_EQ(operation.run(), 255U) << operation.name << ": " << nth;
      EXPECT_EQ(script.count(Call::transfer), nth + 1) << operation.name << ": " << nth;
      EXPECT_EQ(GetLensType(), -1);
    }
  }
}

TEST(Zoom1CommandBlock, PrintsTheFailureOfItsStartFrame) {
  Script script;
  SetLensType(7);
  setZoom1Forward(100, 1000);
  script.transcript();
  script.fail(Call::transfer, 8, 2, EIO);
  EXPECT_EQ(setZoom1Forward(100, 1000), 255U);
  EXPECT_EQ(script.transcript_without(locks), R"(spi_renesas: 38 00 00 00 00 38 00
spi_renesas: 39 00 00 00 01 3A 00
spi_renesas: 3A 00 00 01 78 B3 00
spi_renesas: 3B 00 00 19 00 54 00
spi_renesas: 3C 00 00 03 E8 27 00
spi_renesas: 3D 00 00 00 64 A1 00
spi_renesas: 3E 00 00 00 01 3F 00
spi_renesas: 3F 00 00 00 01 40 00 -> EIO
spi_renesas: 3F 00 00 00 01 40 00 -> EIO
out "SendCommand Error -1\n"
)");
}

TEST(Zoom1CommandBlock, ReturnsOnlyTheLowByteOfTheLatch) {
  Script script;
  SetLensType(7);
  script.result(Call::transfer, 8, 0x105);
  script.result(Call::transfer, 9, 0x207);
  EXPECT_EQ(setZoom1Forward(100, 1000), 7U);
  EXPECT_EQ(setZoom1Forward(100, 1000), 7U);
  EXPECT_EQ(script.count(Call::transfer), 9);
}

TEST(Zoom1CommandBlock, WaitsButSendsNothingBeforeTheLinkIsUsable) {
  Script script;
  EXPECT_EQ(setZoom1uForward(100, 1000), 255U);
  EXPECT_EQ(script.transcript(),
            "open /dev/spi_renesas\n"
            "lock\nunlock\nlock\nunlock\nlock\nunlock\nlock\nunlock\nlock\nunlock\nlock\nunlock\n"
            "usleep 50000\n"
            "lock\nunlock\n"
            "usleep 50000\n"
            "lock\nunlock\n");
}

TEST(Zoom1CommandBlock, WithoutADeviceFailsAtTheFirstFrame) {
  Script script;
  SetLensType(7);
  script.fail(Call::open, 1, forever, ENOENT);
  EXPECT_EQ(setZoom1Forward(100, 1000), 255U);
  EXPECT_EQ(script.count(Call::open), 8);
  EXPECT_EQ(script.count(Call::transfer), 2);
  EXPECT_EQ(fd, -1);
}

TEST(Zoom1CommandBlock, IgnoresInterruptedWaits) {
  Script script;
  SetLensType(7);
  script.fail(Call::usleep, 1, forever, EINTR);
  EXPECT_EQ(setZoom1uForward(100, 1000), 0U);
  EXPECT_EQ(script.count(Call::usleep), 2);
  EXPECT_EQ(setZoom1uForward(100, 1000), 0U);
  EXPECT_EQ(script.count(Call::usleep), 2);
}

}  // namespace
