// The reduced boots that precede a quality check.
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

TEST(InitOIS_K, BootsOnceWithTheDe015ImagesAndLoadsNothing) {
  Script script;
  answer_de015_once(script);
  EXPECT_EQ(InitOIS_K(), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n" + silent_attempt(de015) +
                                     start_program() + "usleep 100000\n");
  ASSERT_EQ(script.payloads().size(), 3U);
  EXPECT_EQ(script.payloads()[0],
            Bytes(CORVO_PROGRAM_DATA_DE015, CORVO_PROGRAM_DATA_DE015 + 33276));
  EXPECT_EQ(script.payloads()[1],
            Bytes(CORVO_PROGRAM3_DATA_DE015, CORVO_PROGRAM3_DATA_DE015 + 1228));
  EXPECT_EQ(script.payloads()[2],
            Bytes(CORVO_PROGRAM2_DATA_DE015, CORVO_PROGRAM2_DATA_DE015 + 944));
}

TEST(InitDC_K, BootsOnceWithTheDf033ImagesAndPrintsNoStep) {
  Script script;
  answer_df033_once(script);
  EXPECT_EQ(InitDC_K(), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n" + silent_attempt(df033) +
                                     start_program() + "usleep 100000\n");
  ASSERT_EQ(script.payloads().size(), 3U);
  EXPECT_EQ(script.payloads()[0],
            Bytes(CORVO_PROGRAM_DATA_DF033, CORVO_PROGRAM_DATA_DF033 + 35000));
  EXPECT_EQ(script.payloads()[1],
            Bytes(CORVO_PROGRAM3_DATA_DF033, CORVO_PROGRAM3_DATA_DF033 + 1160));
  EXPECT_EQ(script.payloads()[2],
            Bytes(CORVO_PROGRAM2_DATA_DF033, CORVO_PROGRAM2_DATA_DF033 + 648));
}

TEST(InitOIS_K, IgnoresFailedDownloadsAndDoesNotTryAgain) {
  Script script;
  answer_corrupted(script);
  EXPECT_EQ(InitOIS_K(), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n" +
                                     silent_attempt(de015, Verdict::corrupted) + start_program() +
                                     "usleep 100000\n");
}

TEST(InitDC_K, IgnoresFailedDownloadsAndDoesNotTryAgain) {
  Script script;
  answer_corrupted(script);
  EXPECT_EQ(InitDC_K(), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n" +
                                     silent_attempt(df033, Verdict::corrupted) + start_program() +
                                     "usleep 100000\n");
}

TEST(InitOIS_K, LeavesTheVariantAndTheLatchOfAFreshProcess) {
  Script script;
  answer_de015_once(script);
  InitOIS_K();
  EXPECT_EQ(gi30516Ver, 7);
  EXPECT_EQ(GetLensType(), -1);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0xFF);
}

TEST(InitDC_K, LeavesTheVariantAndTheLatchOfAFreshProcess) {
  Script script;
  answer_df033_once(script);
  InitDC_K();
  EXPECT_EQ(gi30516Ver, 7);
  EXPECT_EQ(GetLensType(), -1);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0xFF);
}

TEST(InitOIS_K, KeepsAVariantThatWasSetAndAClearLatch) {
  Script script;
  SetLensType(9);
  answer_corrupted(script);
  InitOIS_K();
  EXPECT_EQ(GetLensType(), 9);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0);
}

TEST(InitDC_K, KeepsAVariantThatWasSetAndAClearLatch) {
  Script script;
  SetLensType(7);
  answer_corrupted(script);
  InitDC_K();
  EXPECT_EQ(GetLensType(), 7);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0);
}

TEST(InitOIS_K, DoesNotClearALatchThatAFailureSet) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, 2, EIO);
  SendCommand(1, 0, 0, 0, 0);
  answer_de015_once(script);
  EXPECT_EQ(InitOIS_K(), 0);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0xFF);
}

TEST(InitDC_K, DoesNotClearALatchThatAFailureSet) {
  Script script;
  SetLensType(8);
  script.fail(Call::transfer, 1, 2, EIO);
  SendCommand(1, 0, 0, 0, 0);
  answer_df033_once(script);
  EXPECT_EQ(InitDC_K(), 0);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0xFF);
}

TEST(InitOIS_K, AsksForBothSpeedsOnlyWithoutADevice) {
  Script script;
  script.fail(Call::open, 1, forever, ENOENT);
  EXPECT_EQ(InitOIS_K(), 0);
  const std::string text = script.transcript();
  const std::string first = R"(open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: speed 250000 -> EBADF
unlock
system echo 33 > /sys/class/gpio/export
)";
  const std::string last = R"(usleep 100000
open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: speed 1000000 -> EBADF
unlock
)";
  EXPECT_EQ(text.substr(0, first.size()), first);
  ASSERT_GT(text.size(), last.size());
  EXPECT_EQ(text.substr(text.size() - last.size()), last);
  EXPECT_EQ(script.count(Call::speed), 2);
}

TEST(InitDC_K, AsksForBothSpeedsOnlyWithoutADevice) {
  Script script;
  script.fail(Call::open, 1, forever, ENOENT);
  EXPECT_EQ(InitDC_K(), 0);
  EXPECT_EQ(script.count(Call::speed), 2);
  EXPECT_EQ(script.count(Call::sleep), 0);
}

TEST(InitOIS_K, ReturnsZeroWhicheverTransferFails) {
  for (int nth = 1; nth <= 27; ++nth) {
    for (const int times : {1, forever}) {
      Script script;
      SetLensType(7);
      answer_de015_once(script);
      script.fail(Call::transfer, nth, times, EIO);
      EXPECT_EQ(InitOIS_K(), 0) << nth;
      EXPECT_EQ(GetLensType(), 7) << nth;
      EXPECT_GE(script.count(Call::transfer), 27) << nth;
    }
  }
}

TEST(InitDC_K, ReturnsZeroWhicheverTransferFails) {
  for (int nth = 1; nth <= 27; ++nth) {
    for (const int times : {1, forever}) {
      Script script;
      SetLensType(7);
      answer_df033_once(script);
      script.fail(Call::transfer, nth, times, EIO);
      EXPECT_EQ(InitDC_K(), 0) << nth;
      EXPECT_EQ(GetLensType(), 7) << nth;
      EXPECT_GE(script.count(Call::transfer), 27) << nth;
    }
  }
}

}  // namespace
