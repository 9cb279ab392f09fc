// The quality check of the iris, when something fails.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <string>

#include "kelvo.h"
#include "lens/boot_transcript.h"
#include "ois/quality_check.h"
#include "script/child.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::in_a_process;
using kelvo::test::Script;
using kelvo::test::Tell;
using kelvo::test::Told;
using namespace kelvo::test::boot;
using namespace kelvo::test::check;

/// A unit that passes at its first poll.
void answer_passing_iris(Script& script) {
  answer_df033_once(script);
  answer_df033_once(script);
  answer_iris_values(script);
  script.query_reply(0x80, {0, 0, 0, 4});
}

// ---- checks that never end -------------------------------------------------------------------

constexpr int patience = 500;  // seconds that a check is given

/// The transcript of a check in a process of its own that is ended in the middle of a wait.
std::string check_without_end(const std::function<void(Script&)>& arrange) {
  const Told told = in_a_process([&](const Tell& tell) {
    Script script;
    answer_passing_iris(script);
    arrange(script);
    script.transcript();
    script.at(Call::sleep, patience, [&] {
      tell(script.transcript());
      _exit(0);
    });
    DC_Quality_Check();
    tell("the check has ended:\n" + script.transcript());
  });
  return told.text + told.trouble;
}

TEST(EndlessIrisCheck, PollsOnInAProcessWhoseLatchIsSet) {
  EXPECT_EQ(check_without_end([](Script&) {}), "open /dev/spi_renesas\n" + first_boot(df033) +
                                                   repeated(2, latched_command) +
                                                   repeated(patience, latched_poll()));
}

TEST(EndlessIrisCheck, PollsOnWhileTheCalibrationIsInAnotherState) {
  EXPECT_EQ(check_without_end([](Script& script) {
              SetLensType(8);
              script.query_reply(0x80, {4, 4, 4, 3});
            }),
            iris_check_beginning() + repeated(patience, poll("4 4 4 3")));
}

TEST(EndlessIrisCheck, PollsOnAfterAPollThatFailed) {
  EXPECT_EQ(check_without_end([](Script& script) {
              SetLensType(8);
              script.fail(Call::transfer, boot_transfers + 3, 1, EIO);
            }),
            iris_check_beginning() + "spi_renesas: 80 00 00 00 01 81 00 00 00 00 00 00 -> EIO\n" +
                repeated(patience, latched_poll()));
}

TEST(EndlessIrisCheck, PollsOnAfterACommandThatFailed) {
  EXPECT_EQ(check_without_end([](Script& script) {
              SetLensType(8);
              script.fail(Call::transfer, boot_transfers + 1, 2, EIO);
            }),
            "open /dev/spi_renesas\n" + first_boot(df033) +
                R"(lock
spi_renesas: 04 00 00 00 01 05 00 -> EIO
spi_renesas: 04 00 00 00 01 05 00 -> EIO
out "SendCommand Error -1\n"
unlock
)" + latched_command +
                repeated(patience, latched_poll()));
}

TEST(EndlessIrisCheck, PollsOnThoughItsWaitsFail) {
  std::string expected = iris_check_beginning();
  for (int i = 0; i < patience; ++i) {
    expected +=
        "spi_renesas: 80 00 00 00 01 81 00 00 00 00 00 00\nout \"State:0 0 0 1\\n\"\n"
        "sleep 1 -> 1\n";
  }
  EXPECT_EQ(check_without_end([](Script& script) {
              SetLensType(8);
              script.query_reply(0x80, {0, 0, 0, 1});
              for (int i = 1; i <= patience; ++i) script.result(Call::sleep, i, 1);
            }),
            expected);
}

// ---- checks that end -------------------------------------------------------------------------

TEST(IrisCheck, IgnoresADownloadThatFailedInItsFirstBoot) {
  Script script;
  SetLensType(8);
  answer_corrupted_once(script);
  answer_df033_once(script);
  answer_iris_values(script);
  script.query_reply(0x80, {0, 0, 0, 4});
  EXPECT_EQ(DC_Quality_Check(), 0);
  const std::string transcript = script.transcript();
  const std::string begin =
      "open /dev/spi_renesas\n" + first_boot(df033, Verdict::corrupted) + calibration_started;
  EXPECT_EQ(transcript.substr(0, begin.size()), begin);
  EXPECT_EQ(script.count(Call::sleep), 1);
}

TEST(IrisCheck, HidesAFailedDownloadOfItsLastBoot) {
  Script script;
  SetLensType(8);
  answer_df033_once(script);
  answer_corrupted(script);
  answer_iris_values(script);
  script.query_reply(0x80, {0, 0, 0, 4});
  EXPECT_EQ(DC_Quality_Check(), 0);
  EXPECT_EQ(script.count(Call::sleep), 11);  // a poll and ten attempts
}

TEST(IrisCheck, PassesWithARecordOfZerosWhenTheErrorCodeCannotBeRead) {
  Script script;
  SetLensType(8);
  answer_passing_iris(script);
  script.query_reply(0x82, {0, 0, 0, 7});
  script.fail(Call::transfer, boot_transfers + 4, 1, EIO);
  EXPECT_EQ(DC_Quality_Check(), 0);
  for (const char* const path : iris_copies) EXPECT_EQ(script.written(path), Bytes(24, 0));
  EXPECT_EQ(GetLensType(), 8);
}

TEST(IrisCheck, StoresZerosFromTheValueOnThatCannotBeRead) {
  Script script;
  SetLensType(8);
  answer_passing_iris(script);
  script.fail(Call::transfer, boot_transfers + 8, 1, EIO);  // the fourth value: the minimum
  EXPECT_EQ(DC_Quality_Check(), 0);
  Bytes record(24, 0);
  std::copy_n(iris_record.begin(), 12, record.begin());
  for (const char* const path : iris_copies) EXPECT_EQ(script.written(path), record);
}

class IrisCopy : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(All, IrisCopy, testing::Values(1, 2, 3));

TEST_P(IrisCopy, ThatCannotBeOpenedIsSkipped) {
  const int failing = GetParam();
  Script script;
  SetLensType(8);
  answer_passing_iris(script);
  script.fail(Call::fopen, failing, 1, EROFS);
  EXPECT_EQ(DC_Quality_Check(), 0);
  std::string expected =
      iris_check_beginning() + poll("0 0 0 4") + error_code("00 00 00 00") + iris_values_read;
  for (int copy = 1; copy <= 3; ++copy) {
    const std::string path = iris_copies[copy - 1];
    expected += copy == failing ? "fopen " + path + " w -> EROFS\n" : saved(path);
    EXPECT_EQ(script.written(path), copy == failing ? Bytes() : iris_record) << path;
  }
  expected += last_df033_boot(failing == 3 ? no_iris_file
                                           : loaded("/bin/DC_S_Cali.dat") + iris_values_sent() +
                                                 iris_values_read);
  EXPECT_EQ(script.transcript(), expected);
  EXPECT_EQ(script.open_files(), 0);
}

TEST_P(IrisCopy, ThatTakesNothingIsSynchronisedAndClosed) {
  Script script;
  SetLensType(8);
  answer_passing_iris(script);
  script.full_file(iris_copies[GetParam() - 1]);
  EXPECT_EQ(DC_Quality_Check(), 0);
  const std::string transcript = script.transcript();
  EXPECT_NE(transcript.find(iris_values_read + all_saved("DC_S_Cali.dat")), std::string::npos)
      << transcript;
}

TEST(IrisCheck, WritesNoCopyWhereNoFileCanBeOpened) {
  Script script;
  SetLensType(8);
  answer_passing_iris(script);
  script.fail(Call::fopen, 1, forever, EROFS);
  EXPECT_EQ(DC_Quality_Check(), 0);
  EXPECT_EQ(script.transcript_without(
                {"out", "lock", "unlock", "spi_renesas", "open", "usleep", "system", "sleep"}),
            "fopen /mnt/nand/DC_S_Cali.dat w -> EROFS\n"
            "fopen /tmp/DC_S_Cali.dat w -> EROFS\n"
            "fopen /bin/DC_S_Cali.dat w -> EROFS\n"
            "fopen /bin/DC_S_Cali.dat r -> EROFS\n");
}

TEST(IrisCheck, ClosesItsFilesThoughTheyCannotBeSynchronised) {
  Script script;
  SetLensType(8);
  answer_passing_iris(script);
  script.fail(Call::fsync, 1, forever, EIO);
  EXPECT_EQ(DC_Quality_Check(), 0);
  EXPECT_EQ(script.open_files(), 0);
  EXPECT_EQ(script.count(Call::fsync), 3);
  for (const char* const path : iris_copies) EXPECT_EQ(script.written(path), iris_record);
}

}  // namespace
