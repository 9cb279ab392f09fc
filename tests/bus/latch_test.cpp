#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

TEST(Latch, OfAFailedQueryStopsCommandFrames) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, 1, EIO);
  std::uint8_t out[4] = {};
  RecvCommand(0x80, 5, out);
  script.transcript();
  EXPECT_EQ(SendCommand(1, 2, 3, 4, 5), 0xFF);
  EXPECT_EQ(script.transcript(), "lock\nunlock\n");
}

TEST(Latch, OfAFailedCommandStopsQueryFramesAndLeavesTheirAnswerUntouched) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, 2, EIO);
  SendCommand(1, 2, 3, 4, 5);
  script.transcript();
  std::uint8_t out[4] = {1, 2, 3, 4};
  EXPECT_EQ(RecvCommand(0x80, 5, out), 0xFF);
  EXPECT_EQ(script.transcript(), "");
  EXPECT_EQ(Bytes(out, out + 4), (Bytes{1, 2, 3, 4}));
}

TEST(Latch, ShowsOnlyItsLowByteAndStillStopsFrames) {
  Script script;
  SetLensType(7);
  script.result(Call::transfer, 1, 256);
  script.result(Call::transfer, 2, 256);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0);
  script.transcript();
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0);
  std::uint8_t out[4] = {1, 2, 3, 4};
  EXPECT_EQ(RecvCommand(0x80, 5, out), 0);
  EXPECT_EQ(script.transcript(), "lock\nunlock\n");
  EXPECT_EQ(Bytes(out, out + 4), (Bytes{1, 2, 3, 4}));
}

TEST(Latch, HidesTheVariantOnlyAtMinusOne) {
  Script script;
  SetLensType(8);
  script.result(Call::transfer, 1, 5);
  std::uint8_t out[4] = {};
  EXPECT_EQ(RecvCommand(0x80, 5, out), 5);
  EXPECT_EQ(GetLensType(), 8);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 5);
  EXPECT_EQ(script.count(Call::transfer), 1);
}

TEST(Latch, IsClearedBySetLensType) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, 2, EIO);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0xFF);
  SetLensType(7);
  script.transcript();
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0);
  EXPECT_EQ(script.transcript(), "lock\nspi_renesas: 01 00 00 00 00 01 00\nunlock\n");
}

TEST(Latch, IsNotClearedByReopeningTheDevice) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, 2, EIO);
  SendCommand(1, 0, 0, 0, 0);
  CloseSPI();
  InitSPI();
  script.transcript();
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0xFF);
  EXPECT_EQ(script.transcript(), "lock\nunlock\n");
}

TEST(Latch, IsNotClearedByBootLoaderFrames) {
  Script script;
  const std::uint8_t data[1] = {1};
  std::uint8_t rx[5] = {};
  WriteCommand(0x31, 1, 2, 3);
  WriteData(0x20, 1, data);
  ReadSpi(0x41, rx, 5);
  ResetR2J30516();
  script.transcript();
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0xFF);
  EXPECT_EQ(script.transcript(), "lock\nunlock\n");
}

TEST(Latch, StaysSetWhileEveryTransferWouldSucceedAgain) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, 2, EIO);
  SendCommand(1, 0, 0, 0, 0);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0xFF);
  EXPECT_EQ(script.count(Call::transfer), 2);
}

TEST(Latch, TriesToOpenTheDeviceEvenWhileItIsSet) {
  Script script;
  script.fail(Call::open, 1, 1, ENOENT);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0xFF);
  std::uint8_t out[4] = {};
  EXPECT_EQ(RecvCommand(0x80, 0, out), 0xFF);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
unlock
open /dev/spi_renesas
)");
}

TEST(RegisterWrite, UsesCommand15OnVariant7) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(reg_wt16_0x0c(0x20, 0x1234), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 0F 00 20 12 34 75 00
unlock
)");
}

TEST(RegisterWrite, UsesCommand12OnVariants8And9) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(reg_wt16_0x0c(0x20, 0x1234), 0);
  SetLensType(9);
  EXPECT_EQ(reg_wt16_0x0c(0x20, 0x1234), 0);
  EXPECT_EQ(script.transcript_without({"open"}),
            R"(lock
spi_renesas: 0C 00 20 12 34 72 00
unlock
lock
spi_renesas: 0C 00 20 12 34 72 00
unlock
)");
}

TEST(RegisterWrite, UsesCommand12OnEveryOtherVariant) {
  Script script;
  SetLensType(5);
  EXPECT_EQ(reg_wt16_0x0c(0x20, 0x1234), 0);
  SetLensType(-1);
  EXPECT_EQ(reg_wt16_0x0c(0x20, 0x1234), 0);
  EXPECT_EQ(script.transcript_without({"open", "lock", "unlock"}),
            "spi_renesas: 0C 00 20 12 34 72 00\n"
            "spi_renesas: 0C 00 20 12 34 72 00\n");
}

TEST(RegisterWrite, SendsNegativeValuesInTwosComplement) {
  Script script;
  SetLensType(7);
  reg_wt16_0x0c(0x20, -2);
  reg_wt16_0x0c(0xFF, -32768);
  EXPECT_EQ(script.transcript_without({"open", "lock", "unlock"}),
            "spi_renesas: 0F 00 20 FF FE 2C 00\n"
            "spi_renesas: 0F 00 FF 80 00 8E 00\n");
}

TEST(RegisterWrite, IsNotSentBeforeTheControllerWasBroughtUp) {
  Script script;
  EXPECT_EQ(reg_wt16_0x0c(0x20, 0x1234), 0xFF);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\nlock\nunlock\n");
}

TEST(RegisterWrite, IsRetriedOnceThenLatches) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, forever, EIO);
  EXPECT_EQ(reg_wt16_0x0c(0x20, 0x1234), 0xFF);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 0F 00 20 12 34 75 00 -> EIO
spi_renesas: 0F 00 20 12 34 75 00 -> EIO
out "SendCommand Error -1\n"
unlock
)");
  EXPECT_EQ(GetLensType(), -1);
}

TEST(RegisterWrite, IsSuccessfulOnItsRetry) {
  Script script;
  SetLensType(8);
  script.fail(Call::transfer, 1, 1, EIO);
  EXPECT_EQ(reg_wt16_0x0c(0x20, 0x1234), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 0C 00 20 12 34 72 00 -> EIO
spi_renesas: 0C 00 20 12 34 72 00
unlock
)");
  EXPECT_EQ(GetLensType(), 8);
}

}  // namespace
