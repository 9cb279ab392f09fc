#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

TEST(BootLoaderCommand, GoesOutUnderTheLockAndPrintsWhatCameBack) {
  Script script;
  script.reply({0xAB}, {0x01, 0x20, 0xFE, 0x00, 0x5A});
  EXPECT_EQ(WriteCommand(0xAB, 0x12, 0x34, 0x56), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: AB 12 34 56 A0
unlock
out "Addr:ab 0x01 0x20 0xfe 0x00 0x5a \n"
)");
}

TEST(BootLoaderCommand, PrintsSmallCodesWithTwoDigits) {
  Script script;
  WriteCommand(0x07, 0, 0, 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 07 00 00 00 A0
unlock
out "Addr:07 0x00 0x00 0x00 0x00 0x00 \n"
)");
}

TEST(BootLoaderCommand, WorksWhileTheLatchIsSetAndLeavesItSet) {
  Script script;
  EXPECT_EQ(WriteCommand(0x31, 1, 2, 3), 0);
  EXPECT_EQ(script.count(Call::transfer), 1);
  EXPECT_EQ(GetLensType(), -1);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0xFF);
}

TEST(BootLoaderCommand, IsNotRetriedAndReturnsItsFailure) {
  Script script;
  script.fail(Call::transfer, 1, 1, EIO);
  EXPECT_EQ(WriteCommand(0x31, 1, 2, 3), -1);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 31 01 02 03 A0 -> EIO
unlock
out "Addr:31 0x00 0x00 0x00 0x00 0x00 \n"
)");
}

TEST(BootLoaderCommand, ReturnsAPositiveResultUnchanged) {
  Script script;
  script.result(Call::transfer, 1, 5);
  EXPECT_EQ(WriteCommand(0x31, 1, 2, 3), 5);
  EXPECT_EQ(script.transcript_without({"out"}),
            R"(open /dev/spi_renesas
lock
spi_renesas: 31 01 02 03 A0 -> 5
unlock
)");
}

TEST(BootLoaderCommand, DoesNotSetTheLatchWhenItFails) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, 2, EIO);
  EXPECT_EQ(WriteCommand(0x31, 1, 2, 3), -1);
  EXPECT_EQ(WriteCommand(0x31, 1, 2, 3), -1);
  script.transcript();
  EXPECT_EQ(GetLensType(), 7);
  EXPECT_EQ(SendCommand(1, 2, 3, 4, 5), 0);
  EXPECT_EQ(script.transcript(), "lock\nspi_renesas: 01 02 03 04 05 0F 00\nunlock\n");
}

TEST(BootLoaderCommand, GoesOnWithoutADevice) {
  Script script;
  script.fail(Call::open, 1, 1, ENOENT);
  EXPECT_EQ(WriteCommand(0x31, 1, 2, 3), -1);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: 31 01 02 03 A0 -> EBADF
unlock
out "Addr:31 0x00 0x00 0x00 0x00 0x00 \n"
)");
}

TEST(BootLoaderRead, AnswersInTheCallersBuffer) {
  Script script;
  script.reply({0xC2}, {0x01, 0x02, 0x12, 0x34, 0x05});
  std::uint8_t rx[5] = {};
  ReadSpi(0xC2, rx, 5);
  EXPECT_EQ(Bytes(rx, rx + 5), (Bytes{0x01, 0x02, 0x12, 0x34, 0x05}));
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: C2 00 00 00 A0
unlock
)");
}

TEST(BootLoaderRead, SendsFiveBytesWhateverTheLengthArgument) {
  Script script;
  InitSPI();
  script.transcript();
  std::uint8_t rx[5] = {};
  ReadSpi(0x41, rx, 0);
  ReadSpi(0x42, rx, 1000);
  ReadSpi(0x43, rx, -1);
  EXPECT_EQ(script.transcript(),
            R"(lock
spi_renesas: 41 00 00 00 A0
unlock
lock
spi_renesas: 42 00 00 00 A0
unlock
lock
spi_renesas: 43 00 00 00 A0
unlock
)");
}

TEST(BootLoaderRead, IsRetriedOnce) {
  Script script;
  SetLensType(7);
  script.reply({0x41}, {0, 0, 0x56, 0x78, 0});
  script.fail(Call::transfer, 1, 1, EIO);
  std::uint8_t rx[5] = {};
  EXPECT_EQ(ReadSpi(0x41, rx, 5), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 41 00 00 00 A0 -> EIO
spi_renesas: 41 00 00 00 A0
unlock
)");
  EXPECT_EQ(rx[2], 0x56);
  EXPECT_EQ(rx[3], 0x78);
}

TEST(BootLoaderRead, PrintsASecondFailureInsideTheLock) {
  Script script;
  script.fail(Call::transfer, 1, forever, EIO);
  std::uint8_t rx[5] = {};
  EXPECT_EQ(ReadSpi(0x41, rx, 5), -1);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 41 00 00 00 A0 -> EIO
spi_renesas: 41 00 00 00 A0 -> EIO
out "ReadSpi Error -1\n"
unlock
)");
}

TEST(BootLoaderRead, TakesAnyNonzeroResultForAFailureAndPrintsTheSecond) {
  Script script;
  script.result(Call::transfer, 1, 5);
  script.result(Call::transfer, 2, 6);
  std::uint8_t rx[5] = {};
  EXPECT_EQ(ReadSpi(0x41, rx, 5), -1);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 41 00 00 00 A0 -> 5
spi_renesas: 41 00 00 00 A0 -> 6
out "ReadSpi Error 6\n"
unlock
)");
}

TEST(BootLoaderRead, ReturnsTheLatchAndNotItsOwnFailure) {
  Script script;
  SetLensType(8);
  script.fail(Call::transfer, 1, 2, EIO);
  std::uint8_t rx[5] = {};
  EXPECT_EQ(ReadSpi(0x41, rx, 5), 0);
  EXPECT_EQ(GetLensType(), 8);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0);
}

TEST(BootLoaderRead, ReturnsTheLatchAfterASuccessToo) {
  Script script;
  std::uint8_t rx[5] = {};
  EXPECT_EQ(ReadSpi(0x41, rx, 5), -1);
  EXPECT_EQ(GetLensType(), -1);
}

TEST(BootLoaderRead, ReturnsTheWholeLatch) {
  Script script;
  SetLensType(7);
  script.result(Call::transfer, 1, 300);
  script.result(Call::transfer, 2, 300);
  SendCommand(1, 0, 0, 0, 0);
  std::uint8_t rx[5] = {};
  EXPECT_EQ(ReadSpi(0x41, rx, 5), 300);
}

TEST(BootLoaderRead, GoesOnWithoutADevice) {
  Script script;
  script.fail(Call::open, 1, 1, ENOENT);
  std::uint8_t rx[5] = {};
  EXPECT_EQ(ReadSpi(0x41, rx, 5), -1);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: 41 00 00 00 A0 -> EBADF
fd -1: 41 00 00 00 A0 -> EBADF
out "ReadSpi Error -1\n"
unlock
)");
}

}  // namespace
