#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

TEST(CommandFrame, CarriesFiveBytesAndTheirSumModulo256UnderTheLock) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(SendCommand(1, 2, 3, 4, 250), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 01 02 03 04 FA 04 00
unlock
)");
}

TEST(CommandFrame, SumsAllFiveBytes) {
  Script script;
  SetLensType(7);
  SendCommand(0x10, 0, 0, 0, 0);
  SendCommand(0, 0x20, 0, 0, 0);
  SendCommand(0, 0, 0x40, 0, 0);
  SendCommand(0, 0, 0, 0x80, 0);
  SendCommand(0xFF, 0xFF, 0xFF, 0xFF, 0xFF);
  EXPECT_EQ(script.transcript_without({"open", "lock", "unlock"}),
            R"(spi_renesas: 10 00 00 00 00 10 00
spi_renesas: 00 20 00 00 00 20 00
spi_renesas: 00 00 40 00 00 40 00
spi_renesas: 00 00 00 80 00 80 00
spi_renesas: FF FF FF FF FF FB 00
)");
}

TEST(CommandFrame, IgnoresWhatComesBack) {
  Script script;
  SetLensType(7);
  script.reply({0x01}, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF});
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0);
  EXPECT_EQ(script.count(Call::transfer), 2);
}

TEST(CommandFrame, IsNotSentBeforeTheControllerWasBroughtUp) {
  Script script;
  EXPECT_EQ(SendCommand(1, 2, 3, 4, 5), 0xFF);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
unlock
)");
}

TEST(CommandFrame, IsSuccessfulOnItsRetryWithoutAWord) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, 1, EIO);
  EXPECT_EQ(SendCommand(1, 2, 3, 4, 250), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 01 02 03 04 FA 04 00 -> EIO
spi_renesas: 01 02 03 04 FA 04 00
unlock
)");
  EXPECT_EQ(GetLensType(), 7);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0);
  EXPECT_EQ(script.transcript(), "lock\nspi_renesas: 01 00 00 00 00 01 00\nunlock\n");
}

TEST(CommandFrame, IsRetriedOnceThenLatches) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, 2, EIO);
  EXPECT_EQ(SendCommand(1, 2, 3, 4, 250), 0xFF);
  EXPECT_EQ(GetLensType(), -1);
  EXPECT_EQ(SendCommand(1, 2, 3, 4, 250), 0xFF);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 01 02 03 04 FA 04 00 -> EIO
spi_renesas: 01 02 03 04 FA 04 00 -> EIO
out "SendCommand Error -1\n"
unlock
lock
unlock
)");
}

TEST(CommandFrame, TakesAPositiveResultForAFailure) {
  Script script;
  SetLensType(7);
  script.result(Call::transfer, 1, 1);
  script.result(Call::transfer, 2, 9);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 9);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 01 00 00 00 00 01 00 -> 1
spi_renesas: 01 00 00 00 00 01 00 -> 9
out "SendCommand Error 9\n"
unlock
)");
}

TEST(CommandFrame, ForgetsAPositiveFirstResultAfterAGoodRetry) {
  Script script;
  SetLensType(7);
  script.result(Call::transfer, 1, 9);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 01 00 00 00 00 01 00 -> 9
spi_renesas: 01 00 00 00 00 01 00
unlock
)");
}

TEST(CommandFrame, FailsTwiceAndLatchesWithoutADevice) {
  Script script;
  SetLensType(7);
  script.fail(Call::open, 1, 1, ENOENT);
  EXPECT_EQ(SendCommand(1, 2, 3, 4, 250), 0xFF);
  EXPECT_EQ(GetLensType(), -1);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: 01 02 03 04 FA 04 00 -> EBADF
fd -1: 01 02 03 04 FA 04 00 -> EBADF
out "SendCommand Error -1\n"
unlock
)");
}

TEST(QueryFrame, CarriesItsArgumentInTheThirdByteWithoutTheLock) {
  Script script;
  SetLensType(7);
  std::uint8_t out[4] = {};
  EXPECT_EQ(RecvCommand(0x80, 5, out), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
spi_renesas: 80 00 05 00 01 86 00 00 00 00 00 00
)");
}

TEST(QueryFrame, CarriesTheArgumentOfA0InTheSecondByte) {
  Script script;
  SetLensType(7);
  std::uint8_t out[4] = {};
  EXPECT_EQ(RecvCommand(0xA0, 5, out), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
spi_renesas: A0 05 00 00 01 A6 00 00 00 00 00 00
)");
}

TEST(QueryFrame, CarriesTheArgumentOf81InTheSecondByteAndNoOne) {
  Script script;
  SetLensType(7);
  std::uint8_t out[4] = {};
  EXPECT_EQ(RecvCommand(0x81, 5, out), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
spi_renesas: 81 05 00 00 00 86 00 00 00 00 00 00
)");
}

TEST(QueryFrame, TakesTheCommonFormForTheNeighboursOfTheTwoOddCodes) {
  Script script;
  SetLensType(7);
  std::uint8_t out[4] = {};
  RecvCommand(0x82, 5, out);
  RecvCommand(0x9F, 5, out);
  RecvCommand(0xA1, 5, out);
  RecvCommand(58, 5, out);
  EXPECT_EQ(script.transcript_without({"open"}),
            R"(spi_renesas: 82 00 05 00 01 88 00 00 00 00 00 00
spi_renesas: 9F 00 05 00 01 A5 00 00 00 00 00 00
spi_renesas: A1 00 05 00 01 A7 00 00 00 00 00 00
spi_renesas: 3A 00 05 00 01 40 00 00 00 00 00 00
)");
}

TEST(QueryFrame, SumsModulo256) {
  Script script;
  SetLensType(7);
  std::uint8_t out[4] = {};
  RecvCommand(0xFF, 0xFF, out);
  RecvCommand(0xA0, 0xF0, out);
  RecvCommand(0x81, 0xF0, out);
  EXPECT_EQ(script.transcript_without({"open"}),
            R"(spi_renesas: FF 00 FF 00 01 FF 00 00 00 00 00 00
spi_renesas: A0 F0 00 00 01 91 00 00 00 00 00 00
spi_renesas: 81 F0 00 00 00 71 00 00 00 00 00 00
)");
}

TEST(QueryFrame, AnswersWithTheReceivedBytesSevenToTen) {
  Script script;
  SetLensType(7);
  script.reply({0x90}, {0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1A, 0x1B});
  std::uint8_t out[6] = {0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE};
  EXPECT_EQ(RecvCommand(0x90, 0, out + 1), 0);
  EXPECT_EQ(Bytes(out, out + 6), (Bytes{0xEE, 0x17, 0x18, 0x19, 0x1A, 0xEE}));
}

TEST(QueryFrame, IsNotSentBeforeTheControllerWasBroughtUp) {
  Script script;
  std::uint8_t out[4] = {1, 2, 3, 4};
  EXPECT_EQ(RecvCommand(0x80, 5, out), 0xFF);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n");
  EXPECT_EQ(Bytes(out, out + 4), (Bytes{1, 2, 3, 4}));
}

TEST(QueryFrame, IsNotRetriedAndLatchesWithoutAWord) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, 1, EIO);
  std::uint8_t out[4] = {};
  EXPECT_EQ(RecvCommand(0x80, 5, out), 0xFF);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
spi_renesas: 80 00 05 00 01 86 00 00 00 00 00 00 -> EIO
)");
  EXPECT_EQ(GetLensType(), -1);
}

TEST(QueryFrame, OverwritesTheAnswerEvenWhenItFails) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, 1, EIO);
  std::uint8_t out[4] = {1, 2, 3, 4};
  RecvCommand(0x80, 5, out);
  EXPECT_EQ(Bytes(out, out + 4), (Bytes{0, 0, 0, 0}));
}

TEST(QueryFrame, LatchesAPositiveResult) {
  Script script;
  SetLensType(7);
  script.result(Call::transfer, 1, 12);
  std::uint8_t out[4] = {};
  EXPECT_EQ(RecvCommand(0x80, 5, out), 12);
  EXPECT_EQ(RecvCommand(0x80, 5, out), 12);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
spi_renesas: 80 00 05 00 01 86 00 00 00 00 00 00 -> 12
)");
}

TEST(QueryFrame, FailsOnceAndLatchesWithoutADevice) {
  Script script;
  SetLensType(7);
  script.fail(Call::open, 1, 1, ENOENT);
  std::uint8_t out[4] = {1, 2, 3, 4};
  EXPECT_EQ(RecvCommand(0x80, 5, out), 0xFF);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
fd -1: 80 00 05 00 01 86 00 00 00 00 00 00 -> EBADF
)");
  EXPECT_EQ(Bytes(out, out + 4), (Bytes{0, 0, 0, 0}));
  EXPECT_EQ(GetLensType(), -1);
}

}  // namespace
