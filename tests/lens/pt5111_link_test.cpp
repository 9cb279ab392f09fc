// One word to the PT5111, on each lens module.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <limits>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

TEST(SendPT5111CMD, OpensTheDriversOwnDeviceOnceAndTakesNoLock) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(SendPT5111CMD(0xCFC0), 0);
  EXPECT_EQ(SendPT5111CMD(0x3400), 0);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_pt5111
spi_pt5111: CF C0
spi_pt5111: 34 00
)");
  EXPECT_EQ(fd, -1);
}

TEST(SendPT5111CMD, NeedsNoClearLatchOnDe015) {
  Script script;
  EXPECT_EQ(GetLensType(), -1);
  EXPECT_EQ(SendPT5111CMD(0x1234), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_pt5111\nspi_pt5111: 12 34\n");
}

TEST(SendPT5111CMD, UsesTheLowSixteenBitsOfItsWord) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(SendPT5111CMD(0), 0);
  EXPECT_EQ(SendPT5111CMD(0x1234CFC0), 0);
  EXPECT_EQ(SendPT5111CMD(-1), 0);
  EXPECT_EQ(SendPT5111CMD(std::numeric_limits<int32_t>::min()), 0);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_pt5111
spi_pt5111: 00 00
spi_pt5111: CF C0
spi_pt5111: FF FF
spi_pt5111: 00 00
)");
}

TEST(SendPT5111CMD, GoesThroughTheLensControllerOnDf033) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(SendPT5111CMD(0xCFC0), 0);
  EXPECT_EQ(SendPT5111CMD(0x12340000), 0);
  EXPECT_EQ(SendPT5111CMD(-1), 0);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_renesas
lock
spi_renesas: 2F 02 CF C0 00 C0 00
unlock
lock
spi_renesas: 2F 02 00 00 00 31 00
unlock
lock
spi_renesas: 2F 02 FF FF 00 2F 00
unlock
)");
}

TEST(SendPT5111CMD, SendsNothingElsewhereAndReturnsTheVariant) {
  Script script;
  for (const int32_t variant : {9, 0, 5, 6, 10, 263, -3, std::numeric_limits<int32_t>::min()}) {
    SetLensType(variant);
    EXPECT_EQ(SendPT5111CMD(0xCFC0), int64_t{variant});
  }
  EXPECT_EQ(script.transcript(), "");
}

TEST(SendPT5111CMD, ReturnsAFailedTransferWithoutARetryAndLeavesTheLatchAlone) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, 1, EIO);
  EXPECT_EQ(SendPT5111CMD(0xCFC0), int64_t{-1});
  EXPECT_EQ(SendPT5111CMD(0xCFC0), 0);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_pt5111
spi_pt5111: CF C0 -> EIO
spi_pt5111: CF C0
)");
  EXPECT_EQ(GetLensType(), 7);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0);
}

TEST(SendPT5111CMD, ReturnsAPositiveTransferResultUnchanged) {
  Script script;
  SetLensType(7);
  script.result(Call::transfer, 1, 70000);
  EXPECT_EQ(SendPT5111CMD(0xCFC0), 70000);
}

TEST(SendPT5111CMD, ReturnsTheLengthOfItsMessageWhenTheDeviceCannotBeOpened) {
  Script script;
  SetLensType(7);
  script.fail(Call::open, 1, 2, ENOENT);
  EXPECT_EQ(SendPT5111CMD(0xCFC0), 26);
  EXPECT_EQ(SendPT5111CMD(0x3400), 26);
  EXPECT_EQ(SendPT5111CMD(0x7400), 0);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_pt5111 -> ENOENT
err "Open /dev/spi_pt5111 fail\n"
open /dev/spi_pt5111 -> ENOENT
err "Open /dev/spi_pt5111 fail\n"
open /dev/spi_pt5111
spi_pt5111: 74 00
)");
  EXPECT_EQ(GetLensType(), 7);
}

TEST(SendPT5111CMD, SendsNothingOnDescriptorZero) {
  Script script;
  SetLensType(7);
  ASSERT_EQ(close(0), 0);
  EXPECT_EQ(SendPT5111CMD(0xCFC0), 0);
  EXPECT_EQ(SendPT5111CMD(0x3400), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_pt5111\n");
  EXPECT_EQ(script.count(Call::transfer), 0);
}

TEST(SendPT5111CMD, KeepsItsDeviceThroughAChangeOfVariant) {
  Script script;
  SetLensType(7);
  SendPT5111CMD(1);
  SetLensType(8);
  SendPT5111CMD(2);
  SetLensType(7);
  SendPT5111CMD(3);
  EXPECT_EQ(script.transcript_without({"lock", "unlock"}), R"(open /dev/spi_pt5111
spi_pt5111: 00 01
open /dev/spi_renesas
spi_renesas: 2F 02 00 02 00 33 00
spi_pt5111: 00 03
)");
}

TEST(SendPT5111CMD, ReturnsTheLowByteOfTheLatchOnDf033) {
  Script script;
  SetLensType(8);
  script.fail(Call::transfer, 1, 1, EIO);
  EXPECT_EQ(SendPT5111CMD(0xCFC0), 0);
  script.fail(Call::transfer, 1, 2, EIO);
  EXPECT_EQ(SendPT5111CMD(0xCFC0), 255);
  script.transcript();
  EXPECT_EQ(SendPT5111CMD(0xCFC0), 255);
  EXPECT_EQ(script.transcript(), "lock\nunlock\n");
  EXPECT_EQ(GetLensType(), -1);
}

TEST(SendPT5111CMD, IsHeldBackByTheLatchOnDf033) {
  Script script;
  gi30516Ver = 8;
  EXPECT_EQ(SendPT5111CMD(0xCFC0), 255);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\nlock\nunlock\n");
}

TEST(SendPT5111CMD, FailsWithoutALensControllerOnDf033) {
  Script script;
  SetLensType(8);
  script.fail(Call::open, 1, forever, ENOENT);
  EXPECT_EQ(SendPT5111CMD(0xCFC0), 255);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: 2F 02 CF C0 00 C0 00 -> EBADF
fd -1: 2F 02 CF C0 00 C0 00 -> EBADF
out "SendCommand Error -1\n"
unlock
)");
}

TEST(PT5111PI1, IsSwitchedOnByOneAlone) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(PT5111PI1(1), 0);
  EXPECT_EQ(PT5111PI1(0), 0);
  EXPECT_EQ(PT5111PI1(2), 0);
  EXPECT_EQ(PT5111PI1(-1), 0);
  EXPECT_EQ(PT5111PI1(257), 0);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_pt5111
spi_pt5111: CA 00
spi_pt5111: C8 00
spi_pt5111: C8 00
spi_pt5111: C8 00
spi_pt5111: C8 00
)");
}

TEST(PT5111PI1, ReturnsTheResultOfItsWord) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(PT5111PI1(1), 0);
  EXPECT_EQ(PT5111PI1(0), 0);
  EXPECT_EQ(script.transcript_without({"lock", "unlock"}), R"(open /dev/spi_renesas
spi_renesas: 2F 02 CA 00 00 FB 00
spi_renesas: 2F 02 C8 00 00 F9 00
)");
  script.fail(Call::transfer, 1, 2, EIO);
  EXPECT_EQ(PT5111PI1(1), 255);
  SetLensType(9);
  EXPECT_EQ(PT5111PI1(1), 9);
  SetLensType(7);
  script.fail(Call::transfer, 1, 1, EIO);
  EXPECT_EQ(PT5111PI1(0), -1);
}

TEST(PT5111Zoom1OFF, SendsOneWordAndReturnsZero) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(PT5111Zoom1OFF(), 0);
  SetLensType(8);
  EXPECT_EQ(PT5111Zoom1OFF(), 0);
  SetLensType(9);
  EXPECT_EQ(PT5111Zoom1OFF(), 0);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_pt5111
spi_pt5111: 35 C0
open /dev/spi_renesas
lock
spi_renesas: 2F 02 35 C0 00 26 00
unlock
)");
}

TEST(PT5111Zoom1OFF, ReturnsZeroEvenIfItsWordFails) {
  Script script;
  SetLensType(7);
  script.fail(Call::open, 1, 1, ENOENT);
  EXPECT_EQ(PT5111Zoom1OFF(), 0);
  script.fail(Call::transfer, 1, forever, EIO);
  EXPECT_EQ(PT5111Zoom1OFF(), 0);
  SetLensType(8);
  EXPECT_EQ(PT5111Zoom1OFF(), 0);
  EXPECT_EQ(GetLensType(), -1);
}

}  // namespace
