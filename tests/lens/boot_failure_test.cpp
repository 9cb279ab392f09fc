#include <gtest/gtest.h>

#include <cstddef>
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

std::string last_part(const std::string& text, std::size_t length) {
  return text.size() < length ? text : text.substr(text.size() - length);
}

constexpr int last_checksum_read = 25;

/// A boot that finds no calibration file, and its number of transfers.
struct Boot {
  int32_t (*run)();
  void (*answer_once)(Script& script);
  int32_t variant;
  int transfers;
};
constexpr Boot boots[3] = {{Init30516, answer_de015_once, 7, 45},
                           {Init30516_DF033, answer_df033_once, 8, 45},
                           {Init30516_T5391, answer_t5391_once, 9, 29}};

TEST(BootFailure, OfASingleTransferIsWithoutConsequence) {
  for (const Boot& boot : boots) {
    for (int nth = 1; nth <= boot.transfers; ++nth) {
      Script script;
      boot.answer_once(script);
      script.fail(Call::transfer, nth, 1, EIO);
      EXPECT_EQ(boot.run(), 0) << boot.variant << ": " << nth;
      EXPECT_EQ(GetLensType(), boot.variant) << nth;
      EXPECT_EQ(script.count(Call::sleep), 0) << nth;
    }
  }
}

TEST(BootFailure, OfEveryTransferFromOneOnSetsTheLatchAndFailsTheUnreadChecksums) {
  for (const Boot& boot : boots) {
    for (int nth = 1; nth <= boot.transfers; ++nth) {
      Script script;
      boot.answer_once(script);
      script.fail(Call::transfer, nth, forever, EIO);
      const bool checked = nth > last_checksum_read;
      EXPECT_EQ(boot.run(), checked ? 0 : 1) << boot.variant << ": " << nth;
      EXPECT_EQ(script.count(Call::sleep), checked ? 0 : 10) << nth;
      EXPECT_EQ(GetLensType(), -1) << nth;
      EXPECT_EQ(gi30516Ver, boot.variant) << nth;
    }
  }
}

TEST(BootFailure, ToOpenTheControllerAsksForTheSpeedOnceInTenAttemptsOfInit30516) {
  Script script;
  script.fail(Call::open, 1, forever, ENOENT);
  EXPECT_EQ(Init30516(), 1);
  const std::string text = script.transcript();
  const std::string first = R"(open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: speed 250000 -> EBADF
unlock
system echo 33 > /sys/class/gpio/export
)";
  const std::string last = R"(usleep 500000
open /dev/spi_pt5111 -> ENOENT
err "Open /dev/spi_pt5111 fail\n"
open /dev/spi_pt5111 -> ENOENT
err "Open /dev/spi_pt5111 fail\n"
open /dev/spi_pt5111 -> ENOENT
err "Open /dev/spi_pt5111 fail\n"
open /dev/spi_pt5111 -> ENOENT
err "Open /dev/spi_pt5111 fail\n"
open /dev/i2c-2 -> ENOENT
out "open /dev/i2c-2 error\n"
usleep 100000
open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: 05 00 00 00 00 05 00 -> EBADF
fd -1: 05 00 00 00 00 05 00 -> EBADF
out "SendCommand Error -1\n"
unlock
open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: speed 1000000 -> EBADF
unlock
)";
  std::string without_files;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find('\n', at) + 1;
    const std::string line = text.substr(at, end - at);
    if (line.substr(0, 5) != "fopen") without_files += line;
    at = end;
  }
  EXPECT_EQ(text.substr(0, first.size()), first);
  EXPECT_EQ(last_part(without_files, last.size()), last);
  EXPECT_EQ(script.count(Call::speed), 2);
  EXPECT_EQ(script.count(Call::sleep), 10);
  EXPECT_EQ(GetLensType(), -1);
  EXPECT_EQ(fd, -1);
  EXPECT_LT(hndl, 0);
}

TEST(BootFailure, ToOpenTheControllerAsksForTheSpeedInEveryAttemptOfTheOtherModules) {
  Script script;
  const std::string first = R"(open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: speed 250000 -> EBADF
unlock
out "Reset R2J30516\n"
system echo 33 > /sys/class/gpio/export
)";
  const std::string next = "sleep 1\n" + first;
  script.fail(Call::open, 1, forever, ENOENT);
  for (int32_t (*const boot)() : {Init30516_DF033, Init30516_T5391}) {
    const int speeds = script.count(Call::speed);
    EXPECT_EQ(boot(), 1);
    const std::string text = script.transcript();
    EXPECT_EQ(text.substr(0, first.size()), first);
    int repeats = 0;
    for (std::size_t at = text.find(next); at != std::string::npos; at = text.find(next, at + 1)) {
      ++repeats;
    }
    EXPECT_EQ(repeats, 9);
    EXPECT_EQ(script.count(Call::speed) - speeds, 11);
    EXPECT_EQ(GetLensType(), -1);
  }
}

TEST(BootFailure, WithoutAControllerTheOtherModulesStillSendBothLastCommands) {
  Script script;
  script.fail(Call::open, 1, forever, ENOENT);
  EXPECT_EQ(Init30516_T5391(), 1);
  const std::string last = R"(open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: 05 00 00 00 00 05 00 -> EBADF
fd -1: 05 00 00 00 00 05 00 -> EBADF
out "SendCommand Error -1\n"
unlock
open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: speed 1000000 -> EBADF
unlock
open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
unlock
)";
  EXPECT_EQ(last_part(script.transcript(), last.size()), last);
}

TEST(BootFailure, ToOpenThePt5111LosesOneWord) {
  Script script;
  answer_de015_once(script);
  script.fail(Call::open, 2, 1, ENOENT);
  EXPECT_EQ(Init30516(), 0);
  const std::string text = script.transcript();
  const std::string expected = R"(open /dev/spi_pt5111 -> ENOENT
err "Open /dev/spi_pt5111 fail\n"
open /dev/spi_pt5111
spi_pt5111: C4 00
)";
  EXPECT_NE(text.find(start_program() + expected), std::string::npos);
  EXPECT_EQ(GetLensType(), 7);
}

TEST(BootFailure, ToOpenTheI2cLinkIsPrintedAndIgnored) {
  Script script;
  answer_t5391_once(script);
  script.fail(Call::open, 2, 1, ENODEV);
  EXPECT_EQ(Init30516_T5391(), 0);
  const std::string text = script.transcript();
  EXPECT_NE(text.find(start_program() + "open /dev/i2c-2 -> ENODEV\n"
                                        "out \"open /dev/i2c-2 error\\n\"\n"
                                        "usleep 100000\n"),
            std::string::npos);
  EXPECT_LT(hndl, 0);
  EXPECT_EQ(GetLensType(), 9);
}

TEST(BootFailure, OfCommandFiveSilencesWhatFollowsButNotTheResult) {
  Script script;
  answer_df033_once(script);
  script.fail(Call::transfer, 28, 2, EIO);
  EXPECT_EQ(Init30516_DF033(), 0);
  const std::string last =
      "lock\n"
      "spi_renesas: 05 00 00 00 00 05 00 -> EIO\n"
      "spi_renesas: 05 00 00 00 00 05 00 -> EIO\n"
      "out \"SendCommand Error -1\\n\"\n"
      "unlock\n"
      "lock\nunlock\n" +
      repeated(15, "lock\nunlock\n") + "usleep 200000\nlock\nunlock\n";
  EXPECT_EQ(last_part(script.transcript(), last.size()), last);
  EXPECT_EQ(GetLensType(), -1);
  EXPECT_EQ(gi30516Ver, 8);
}

TEST(BootFailure, OfACalibrationQuerySilencesEveryCommandBehindIt) {
  Script script;
  answer_df033_once(script);
  script.file("/bin/DC_S_Cali.dat", Bytes(24, 0));
  script.fail(Call::transfer, 33, 1, EIO);
  EXPECT_EQ(Init30516_DF033(), 0);
  const std::string text = script.transcript_without({"out"});
  const std::string last = "spi_renesas: A1 00 00 00 01 A2 00 00 00 00 00 00 -> EIO\n" +
                           repeated(17, "lock\nunlock\n") + "usleep 200000\nlock\nunlock\n";
  EXPECT_EQ(last_part(text, last.size()), last);
  EXPECT_EQ(GetLensType(), -1);
}

TEST(BootFailure, OfEveryShellCommandAndSleepIsIgnored) {
  for (const Boot& boot : boots) {
    Script script;
    boot.answer_once(script);
    script.fail(Call::system, 1, forever, ECHILD);
    script.fail(Call::usleep, 1, forever, EINTR);
    EXPECT_EQ(boot.run(), 0);
    EXPECT_EQ(script.count(Call::system), 4);
    EXPECT_EQ(script.count(Call::transfer), boot.transfers);
    EXPECT_EQ(GetLensType(), boot.variant);
  }
}

TEST(BootFailure, OfThePauseBetweenAttemptsIsIgnored) {
  Script script;
  answer_corrupted(script);
  script.result(Call::sleep, 1, 1);
  EXPECT_EQ(Init30516(), 1);
  EXPECT_EQ(script.count(Call::sleep), 10);
  EXPECT_EQ(script.count(Call::system), 40);
}

TEST(BootFailure, OfTheBusLockIsIgnored) {
  for (const Boot& boot : boots) {
    Script script;
    boot.answer_once(script);
    script.fail(Call::semget, 1, forever, EACCES);
    EXPECT_EQ(boot.run(), 0);
    EXPECT_EQ(script.count(Call::transfer), boot.transfers);
  }
}

TEST(BootFailure, ToFindMemoryForThePayloadsIsSeenOnlyInTheChecksums) {
  Script script;
  answer_t5391_once(script);
  script.fail(Call::calloc, 1, 1, ENOMEM);
  EXPECT_EQ(Init30516_T5391(), 0);
  EXPECT_EQ(script.payloads().size(), 2U);
}

}  // namespace
