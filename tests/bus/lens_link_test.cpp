#include <gtest/gtest.h>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

TEST(LensDevice, IsClosedAtLoad) {
  Script script;
  EXPECT_EQ(fd, -1);
  EXPECT_EQ(script.transcript(), "");
}

TEST(LensDevice, IsOpenedOnce) {
  Script script;
  EXPECT_EQ(InitSPI(), 0);
  EXPECT_GE(fd, 0);
  EXPECT_EQ(InitSPI(), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n");
}

TEST(LensDevice, ComplainsOnStandardErrorWhenItCannotBeOpened) {
  Script script;
  script.fail(Call::open, 1, 1, ENOENT);
  EXPECT_EQ(InitSPI(), -1);
  EXPECT_EQ(fd, -1);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
)");
}

TEST(LensDevice, IsTriedAgainByTheNextCallAfterAFailure) {
  Script script;
  script.fail(Call::open, 1, 2, EACCES);
  EXPECT_EQ(InitSPI(), -1);
  EXPECT_EQ(InitSPI(), -1);
  EXPECT_EQ(InitSPI(), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas -> EACCES
err "Open /dev/spi_renesas fail\n"
open /dev/spi_renesas -> EACCES
err "Open /dev/spi_renesas fail\n"
open /dev/spi_renesas
)");
}

TEST(LensDevice, CountsAsClosedForAnyNegativeDescriptor) {
  Script script;
  fd = -5;
  EXPECT_EQ(InitSPI(), 0);
  EXPECT_GE(fd, 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n");
}

TEST(LensDevice, CountsAsOpenForDescriptorZero) {
  Script script;
  fd = 0;
  EXPECT_EQ(InitSPI(), 0);
  EXPECT_EQ(fd, 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(LensDevice, IsClosedOnce) {
  Script script;
  InitSPI();
  EXPECT_EQ(CloseSPI(), 0);
  EXPECT_EQ(fd, -1);
  EXPECT_EQ(CloseSPI(), 0);
  EXPECT_EQ(fd, -1);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\nclose /dev/spi_renesas\n");
}

TEST(LensDevice, ClosesNothingBeforeItWasOpened) {
  Script script;
  EXPECT_EQ(CloseSPI(), 0);
  EXPECT_EQ(fd, -1);
  EXPECT_EQ(script.transcript(), "");
}

TEST(LensDevice, KeepsAnyNegativeDescriptorWhenThereIsNothingToClose) {
  Script script;
  fd = -5;
  EXPECT_EQ(CloseSPI(), 0);
  EXPECT_EQ(fd, -5);
  EXPECT_EQ(script.transcript(), "");
}

TEST(LensDevice, CountsAsClosedAfterAFailedClose) {
  Script script;
  InitSPI();
  script.fail(Call::close, 1, 1, EIO);
  EXPECT_EQ(CloseSPI(), 0);
  EXPECT_EQ(fd, -1);
  EXPECT_EQ(CloseSPI(), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\nclose /dev/spi_renesas -> EIO\n");
}

TEST(LensDevice, OpensAgainForTheFirstFrameAfterAClose) {
  Script script;
  SetLensType(7);
  SendCommand(1, 0, 0, 0, 0);
  CloseSPI();
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0);
  EXPECT_EQ(script.transcript_without({"lock", "unlock"}),
            R"(open /dev/spi_renesas
spi_renesas: 01 00 00 00 00 01 00
close /dev/spi_renesas
open /dev/spi_renesas
spi_renesas: 01 00 00 00 00 01 00
)");
}

TEST(SpiSpeed, IsNotRequestedFromAnOpenDevice) {
  Script script;
  InitSPI();
  script.transcript();
  EXPECT_EQ(setSPISpeed(1000000), 0);
  EXPECT_EQ(setSPISpeed(250000), 0);
  EXPECT_EQ(script.transcript(), "");
  EXPECT_EQ(script.count(Call::speed), 0);
}

TEST(SpiSpeed, IsNotRequestedFromTheDeviceThatItOpensItself) {
  Script script;
  EXPECT_EQ(setSPISpeed(1000000), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n");
  EXPECT_GE(fd, 0);
}

TEST(SpiSpeed, IsRequestedUnderTheLockWhenTheDeviceCannotBeOpened) {
  Script script;
  script.fail(Call::open, 1, 1, ENOENT);
  EXPECT_EQ(setSPISpeed(250000), 0);
  EXPECT_EQ(fd, -1);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: speed 250000 -> EBADF
unlock
)");
}

TEST(SpiSpeed, LeavesTheLatchAloneWhenTheRequestFails) {
  Script script;
  SetLensType(8);
  script.fail(Call::open, 1, 1, ENOENT);
  EXPECT_EQ(setSPISpeed(250000), 0);
  EXPECT_EQ(GetLensType(), 8);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0);
}

TEST(ResetLine, IsExportedDrivenLowAndReleased) {
  Script script;
  EXPECT_EQ(ResetR2J30516(), 0);
  EXPECT_EQ(script.transcript(),
            R"(system echo 33 > /sys/class/gpio/export
system echo "out" > /sys/class/gpio/gpio33/direction
system echo 0 > /sys/class/gpio/gpio33/value
usleep 500000
system echo 1 > /sys/class/gpio/gpio33/value
usleep 100000
)");
  EXPECT_EQ(fd, -1);
}

TEST(ResetLine, IgnoresFailingShellCommands) {
  Script script;
  script.fail(Call::system, 1, forever, ENOMEM);
  EXPECT_EQ(ResetR2J30516(), 0);
  EXPECT_EQ(script.transcript(),
            R"(system echo 33 > /sys/class/gpio/export -> ENOMEM
system echo "out" > /sys/class/gpio/gpio33/direction -> ENOMEM
system echo 0 > /sys/class/gpio/gpio33/value -> ENOMEM
usleep 500000
system echo 1 > /sys/class/gpio/gpio33/value -> ENOMEM
usleep 100000
)");
}

TEST(ResetLine, IgnoresTheExitStatusOfAShellCommand) {
  Script script;
  script.result(Call::system, 1, 256);
  EXPECT_EQ(ResetR2J30516(), 0);
  EXPECT_EQ(script.transcript(),
            R"(system echo 33 > /sys/class/gpio/export -> 256
system echo "out" > /sys/class/gpio/gpio33/direction
system echo 0 > /sys/class/gpio/gpio33/value
usleep 500000
system echo 1 > /sys/class/gpio/gpio33/value
usleep 100000
)");
}

TEST(ResetLine, IgnoresAnInterruptedFirstWait) {
  Script script;
  script.fail(Call::usleep, 1, 1, EINTR);
  EXPECT_EQ(ResetR2J30516(), 0);
  EXPECT_EQ(script.transcript_without({"system"}), "usleep 500000 -> EINTR\nusleep 100000\n");
  EXPECT_EQ(script.count(Call::system), 4);
}

TEST(ResetLine, ReturnsTheResultOfTheLastWait) {
  Script script;
  script.fail(Call::usleep, 2, 1, EINTR);
  EXPECT_EQ(ResetR2J30516(), -1);
  EXPECT_EQ(script.transcript_without({"system"}), "usleep 500000\nusleep 100000 -> EINTR\n");
}

TEST(ResetLine, LeavesTheLatchAlone) {
  Script script;
  EXPECT_EQ(ResetR2J30516(), 0);
  EXPECT_EQ(GetLensType(), -1);
  SetLensType(9);
  script.fail(Call::usleep, 1, forever, EINTR);
  script.fail(Call::system, 1, forever, EIO);
  EXPECT_EQ(ResetR2J30516(), -1);
  EXPECT_EQ(GetLensType(), 9);
}

}  // namespace
