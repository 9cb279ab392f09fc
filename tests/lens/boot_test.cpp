#include <gtest/gtest.h>

#include <string>

#include "kelvo.h"
#include "lens/boot_transcript.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;
using namespace kelvo::test::boot;

const char* const command_5 = R"(lock
spi_renesas: 05 00 00 00 00 05 00
unlock
)";

/// Everything behind the attempts, on a camera without a calibration file.
std::string closing_steps() {
  return start_program() + "open /dev/spi_pt5111\n" + de015_driver_words +
         "open /dev/i2c-2\n"
         "usleep 100000\n"
         "fopen /bin/OIS_S_Cali.dat r -> ENOENT\n" +
         command_5;
}

TEST(Init30516, BootsInOneAttemptWhenEveryChecksumIsRight) {
  Script script;
  answer_de015_once(script);
  script.fail(Call::fopen, 1, forever, ENOENT);
  EXPECT_EQ(Init30516(), 0);
  EXPECT_EQ(script.transcript(),
            "open /dev/spi_renesas\n" + silent_attempt(de015) + closing_steps());
  EXPECT_EQ(GetLensType(), 7);
  EXPECT_GT(hndl, 0);
  EXPECT_EQ(cMotorPower, 0);
}

TEST(Init30516, DownloadsTheThreeImagesOfItsModule) {
  Script script;
  answer_de015_once(script);
  EXPECT_EQ(Init30516(), 0);
  ASSERT_EQ(script.payloads().size(), 3U);
  EXPECT_EQ(script.payloads()[0],
            Bytes(CORVO_PROGRAM_DATA_DE015, CORVO_PROGRAM_DATA_DE015 + 33276));
  EXPECT_EQ(script.payloads()[1],
            Bytes(CORVO_PROGRAM3_DATA_DE015, CORVO_PROGRAM3_DATA_DE015 + 1228));
  EXPECT_EQ(script.payloads()[2],
            Bytes(CORVO_PROGRAM2_DATA_DE015, CORVO_PROGRAM2_DATA_DE015 + 944));
}

TEST(Init30516, PrintsThreeCleanVerdictsAndNoReadBackAfterAnIntactDownload) {
  Script script;
  answer_de015_once(script);
  EXPECT_EQ(Init30516(), 0);
  const std::string text = script.transcript();
  int clean = 0;
  for (std::size_t at = text.find("ChecksumError:0\\n"); at != std::string::npos;
       at = text.find("ChecksumError:0\\n", at + 1)) {
    ++clean;
  }
  EXPECT_EQ(clean, 3);
  EXPECT_EQ(text.find("Read Checksum"), std::string::npos);
  EXPECT_EQ(text.find("ChecksumError:1"), std::string::npos);
}

TEST(Init30516, MakesAllTenAttemptsAfterOneThatFailed) {
  Script script;
  answer_corrupted_once(script);
  for (int attempt = 2; attempt <= 10; ++attempt) answer_de015_once(script);
  script.fail(Call::fopen, 1, forever, ENOENT);
  EXPECT_EQ(Init30516(), 1);
  EXPECT_EQ(script.transcript(),
            "open /dev/spi_renesas\n" + silent_attempt(de015, Verdict::corrupted) + "sleep 1\n" +
                repeated(9, silent_attempt(de015) + "sleep 1\n") + closing_steps());
  EXPECT_EQ(script.count(Call::sleep), 10);
  EXPECT_EQ(GetLensType(), 7);
}

TEST(Init30516, StartsTheProgramAfterTenFailedAttempts) {
  Script script;
  answer_corrupted(script);
  script.fail(Call::fopen, 1, forever, ENOENT);
  EXPECT_EQ(Init30516(), 1);
  EXPECT_EQ(script.transcript(),
            "open /dev/spi_renesas\n" +
                repeated(10, silent_attempt(de015, Verdict::corrupted) + "sleep 1\n") +
                closing_steps());
  EXPECT_EQ(GetLensType(), 7);
}

TEST(Init30516, DownloadsEveryImageEvenIfOnlyTheFirstFails) {
  Script script;
  script.reply_once({0x66, 0, 0, 0, 0xA0}, {0, 0, 0x11, 0x22, 0});
  script.reply_once({0x67, 0, 0, 0, 0xA0}, {0, 0, 0x33, 0x44, 0});
  script.reply_once({0x66, 0, 0, 0, 0xA0}, {0, 0, 0xF5, 0x8E, 0});
  script.reply_once({0x67, 0, 0, 0, 0xA0}, {0, 0, 0x9F, 0xDB, 0});
  script.reply_once({0x66, 0, 0, 0, 0xA0}, {0, 0, 0x2F, 0x34, 0});
  script.reply_once({0x67, 0, 0, 0, 0xA0}, {0, 0, 0xAA, 0x02, 0});
  for (int attempt = 2; attempt <= 10; ++attempt) answer_de015_once(script);
  script.fail(Call::fopen, 1, forever, ENOENT);
  EXPECT_EQ(Init30516(), 1);
  EXPECT_EQ(script.transcript(),
            "open /dev/spi_renesas\n" + std::string(reset) + silent_clock_set_up() +
                download(de015[0], Verdict::corrupted) + download(de015[1], Verdict::intact) +
                download(de015[2], Verdict::intact) + end_of_attempt() + "sleep 1\n" +
                repeated(9, silent_attempt(de015) + "sleep 1\n") + closing_steps());
}

TEST(Init30516, SendsTheStabiliserCalibrationXBeforeYAndNoNoiseField) {
  Script script;
  answer_de015_once(script);
  script.file(
      "/bin/OIS_S_Cali.dat",
      {0x34, 0x12, 0, 0, 0x01, 0x20, 0, 0, 0x02, 0x21, 0, 0, 0x03, 0x30, 0, 0, 0x04, 0x31, 0, 0,
       0x05, 0x40, 0, 0, 0x06, 0x41, 0, 0, 0x07, 0x50, 0, 0, 0x08, 0x51, 0, 0, 0x09, 0x60, 0, 0,
       0xF1, 0xE1, 0, 0, 0xF2, 0xE2, 0, 0, 0xF3, 0xE3, 0, 0, 0xF4, 0xE4, 0, 0, 0x0A, 0x61, 0, 0});
  EXPECT_EQ(Init30516(), 0);
  EXPECT_EQ(script.transcript(),
            "open /dev/spi_renesas\n" + silent_attempt(de015) + start_program() +
                "open /dev/spi_pt5111\n" + de015_driver_words +
                "open /dev/i2c-2\n"
                "usleep 100000\n"
                "fopen /bin/OIS_S_Cali.dat r\n"
                "fclose /bin/OIS_S_Cali.dat\n" +
                locked("21 00 00 12 34 67 00") + locked("51 00 00 20 01 72 00") +
                locked("53 00 00 30 03 86 00") + locked("57 00 00 40 05 9C 00") +
                locked("58 00 00 50 07 AF 00") + locked("63 00 00 60 09 CC 00") +
                locked("52 00 00 21 02 75 00") + locked("54 00 00 31 04 89 00") +
                locked("59 00 00 41 06 A0 00") + locked("5A 00 00 51 08 B3 00") +
                locked("65 00 00 61 0A D0 00") + command_5);
  EXPECT_EQ(script.open_files(), 0);
}

TEST(Init30516, NeedsNoCalibrationFile) {
  Script script;
  answer_de015_once(script);
  EXPECT_EQ(Init30516(), 0);
  EXPECT_EQ(script.transcript_without({"fopen"}),
            "open /dev/spi_renesas\n" + silent_attempt(de015) + start_program() +
                "open /dev/spi_pt5111\n" + de015_driver_words + "open /dev/i2c-2\nusleep 100000\n" +
                command_5);
}

TEST(Init30516, BootsAgainFromTheResetAndOpensOnlyTheI2cLinkAnew) {
  Script script;
  script.fail(Call::fopen, 1, forever, ENOENT);
  answer_de015_once(script);
  EXPECT_EQ(Init30516(), 0);
  script.transcript();
  const int32_t first_link = hndl;
  answer_de015_once(script);
  EXPECT_EQ(Init30516(), 0);
  EXPECT_EQ(script.transcript(), silent_attempt(de015) + start_program() + de015_driver_words +
                                     "open /dev/i2c-2\n"
                                     "usleep 100000\n"
                                     "fopen /bin/OIS_S_Cali.dat r -> ENOENT\n" +
                                     command_5);
  EXPECT_NE(hndl, first_link);
}

TEST(Init30516, ForgetsTheFailureOfAnEarlierBoot) {
  Script script;
  answer_corrupted(script);
  EXPECT_EQ(Init30516(), 1);
  answer_de015_once(script);
  EXPECT_EQ(Init30516(), 0);
  EXPECT_EQ(script.count(Call::sleep), 10);
}

TEST(Init30516, SetsTheVariantAndClearsTheLatchFirst) {
  Script script;
  SetLensType(9);
  script.fail(Call::transfer, 1, 2, EIO);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0xFF);
  EXPECT_EQ(GetLensType(), -1);
  script.fail(Call::fopen, 1, forever, ENOENT);
  answer_de015_once(script);
  script.transcript();
  EXPECT_EQ(Init30516(), 0);
  EXPECT_EQ(script.transcript(), silent_attempt(de015) + closing_steps());
  EXPECT_EQ(GetLensType(), 7);
}

}  // namespace
