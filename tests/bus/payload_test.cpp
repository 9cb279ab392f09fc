#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

constexpr std::uint8_t four_bytes[4] = {0x01, 0x02, 0x03, 0x04};

TEST(Payload, IsAnnouncedByAHeaderBetweenTwoWaits) {
  Script script;
  EXPECT_EQ(WriteData(0x20, 4, four_bytes), 0);
  EXPECT_EQ(script.transcript(),
            R"(out "Download FW size:4\n"
open /dev/spi_renesas
usleep 100000
lock
spi_renesas: E1 11 20 00 A0
unlock
usleep 100000
out "Read Addr2:20 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 \n"
lock
spi_renesas: 01 02 03 04
unlock
)");
}

TEST(Payload, CarriesEveryByteOfTheData) {
  Script script;
  Bytes data;
  for (int i = 0; i < 1000; ++i) data.push_back(static_cast<std::uint8_t>(i * 7));
  EXPECT_EQ(WriteData(0x23, 1000, data.data()), 0);
  EXPECT_EQ(script.transcript_without({"out", "usleep"}),
            R"(open /dev/spi_renesas
lock
spi_renesas: E1 11 23 00 A0
unlock
lock
spi_renesas: 1000 bytes
unlock
)");
  ASSERT_EQ(script.payloads().size(), 1U);
  EXPECT_EQ(script.payloads()[0], data);
}

TEST(Payload, PrintsZerosBecauseNothingWasReceivedYet) {
  Script script;
  script.reply({0xE1}, {9, 9, 9, 9, 9});
  script.reply({0x01}, {8, 8, 8, 8});
  EXPECT_EQ(WriteData(0xF2, 4, four_bytes), 0);
  EXPECT_EQ(script.transcript(),
            R"(out "Download FW size:4\n"
open /dev/spi_renesas
usleep 100000
lock
spi_renesas: E1 11 F2 00 A0
unlock
usleep 100000
out "Read Addr2:f2 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 \n"
lock
spi_renesas: 01 02 03 04
unlock
)");
}

TEST(Payload, IgnoresAFailedHeader) {
  Script script;
  script.fail(Call::transfer, 1, 1, EIO);
  EXPECT_EQ(WriteData(0x20, 4, four_bytes), 0);
  EXPECT_EQ(script.transcript(),
            R"(out "Download FW size:4\n"
open /dev/spi_renesas
usleep 100000
lock
spi_renesas: E1 11 20 00 A0 -> EIO
unlock
usleep 100000
out "Read Addr2:20 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 \n"
lock
spi_renesas: 01 02 03 04
unlock
)");
}

TEST(Payload, IsNotRetriedAndReturnsItsFailure) {
  Script script;
  script.fail(Call::transfer, 2, 1, EIO);
  EXPECT_EQ(WriteData(0x20, 4, four_bytes), -1);
  EXPECT_EQ(script.transcript(),
            R"(out "Download FW size:4\n"
open /dev/spi_renesas
usleep 100000
lock
spi_renesas: E1 11 20 00 A0
unlock
usleep 100000
out "Read Addr2:20 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 \n"
lock
spi_renesas: 01 02 03 04 -> EIO
unlock
)");
}

TEST(Payload, ReturnsAPositiveResultOfItsOwnTransferAndNotTheHeaders) {
  Script script;
  script.result(Call::transfer, 1, 9);
  script.result(Call::transfer, 2, 4);
  EXPECT_EQ(WriteData(0x20, 4, four_bytes), 4);
  EXPECT_EQ(script.transcript_without({"out", "usleep", "lock", "unlock"}),
            R"(open /dev/spi_renesas
spi_renesas: E1 11 20 00 A0 -> 9
spi_renesas: 01 02 03 04 -> 4
)");
}

TEST(Payload, WorksWhileTheLatchIsSetAndLeavesItSet) {
  Script script;
  EXPECT_EQ(WriteData(0x20, 4, four_bytes), 0);
  EXPECT_EQ(script.count(Call::transfer), 2);
  EXPECT_EQ(GetLensType(), -1);
}

TEST(Payload, DoesNotSetTheLatchWhenItFails) {
  Script script;
  SetLensType(9);
  script.fail(Call::transfer, 1, 2, EIO);
  EXPECT_EQ(WriteData(0x20, 4, four_bytes), -1);
  EXPECT_EQ(GetLensType(), 9);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0);
}

TEST(Payload, IgnoresInterruptedWaits) {
  Script script;
  script.fail(Call::usleep, 1, forever, EINTR);
  EXPECT_EQ(WriteData(0x20, 4, four_bytes), 0);
  EXPECT_EQ(script.transcript_without({"out"}),
            R"(open /dev/spi_renesas
usleep 100000 -> EINTR
lock
spi_renesas: E1 11 20 00 A0
unlock
usleep 100000 -> EINTR
lock
spi_renesas: 01 02 03 04
unlock
)");
}

TEST(Payload, GoesOnWithoutADevice) {
  Script script;
  script.fail(Call::open, 1, 1, ENOENT);
  EXPECT_EQ(WriteData(0x20, 4, four_bytes), -1);
  EXPECT_EQ(script.transcript(),
            R"(out "Download FW size:4\n"
open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
usleep 100000
lock
fd -1: E1 11 20 00 A0 -> EBADF
unlock
usleep 100000
out "Read Addr2:20 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 \n"
lock
fd -1: 01 02 03 04 -> EBADF
unlock
)");
}

TEST(Payload, IsNotSentWithoutATransmitBuffer) {
  Script script;
  script.fail(Call::calloc, 1, 1, ENOMEM);
  EXPECT_EQ(WriteData(0x20, 4, four_bytes), -1);
  EXPECT_EQ(script.transcript_without({"lock", "unlock"}),
            R"(out "Download FW size:4\n"
open /dev/spi_renesas
usleep 100000
spi_renesas: E1 11 20 00 A0
usleep 100000
out "Read Addr2:20 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 \n"
)");
}

TEST(Payload, IsNotSentWithoutAReceiveBuffer) {
  Script script;
  script.fail(Call::calloc, 2, 1, ENOMEM);
  EXPECT_EQ(WriteData(0x20, 4, four_bytes), -1);
  EXPECT_EQ(script.transcript_without({"lock", "unlock"}),
            R"(out "Download FW size:4\n"
open /dev/spi_renesas
usleep 100000
spi_renesas: E1 11 20 00 A0
usleep 100000
out "Read Addr2:20 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 \n"
)");
}

TEST(Payload, IsNotSentWithoutAnyBuffer) {
  Script script;
  SetLensType(7);
  script.fail(Call::calloc, 1, forever, ENOMEM);
  EXPECT_EQ(WriteData(0x20, 4, four_bytes), -1);
  EXPECT_EQ(script.transcript_without({"lock", "unlock", "out"}),
            R"(open /dev/spi_renesas
usleep 100000
spi_renesas: E1 11 20 00 A0
usleep 100000
)");
  EXPECT_EQ(GetLensType(), 7);
}

TEST(Payload, IsNotSentForANegativeSize) {
  Script script;
  EXPECT_EQ(WriteData(0x20, -1, four_bytes), -1);
  EXPECT_EQ(script.transcript_without({"lock", "unlock"}),
            R"(out "Download FW size:-1\n"
open /dev/spi_renesas
usleep 100000
spi_renesas: E1 11 20 00 A0
usleep 100000
out "Read Addr2:20 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 \n"
)");
}

TEST(Payload, OfSizeZeroIsAnEmptyTransfer) {
  Script script;
  script.result(Call::transfer, 2, 3);
  EXPECT_EQ(WriteData(0x20, 0, four_bytes), 3);
  EXPECT_EQ(script.count(Call::transfer), 2);
  EXPECT_EQ(script.transcript_without({"spi_renesas:"}),
            R"(out "Download FW size:0\n"
open /dev/spi_renesas
usleep 100000
lock
unlock
usleep 100000
out "Read Addr2:20 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 \n"
lock
unlock
)");
}

}  // namespace
