// The quality check of the stabiliser, when something fails.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "kelvo.h"
#include "lens/boot_transcript.h"
#include "ois/quality_check.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;
using namespace kelvo::test::boot;
using namespace kelvo::test::check;

/// A unit that passes at its first poll.
void answer_passing_stabiliser(Script& script) {
  answer_de015_once(script);
  answer_de015_once(script);
  answer_stabiliser_values(script);
  script.query_reply(0x80, {0, 0, 0, 4});
}

/// The transcript from the first poll on.
std::string from_first_poll(Script& script) {
  const std::string transcript = script.transcript();
  const std::size_t at = transcript.find("spi_renesas: 80 00 00 00 01 81");
  return at == std::string::npos ? "no poll in " + transcript : transcript.substr(at);
}

TEST(StabiliserCheck, IsMinusOneAndBootsAgainInAProcessWhoseLatchIsSet) {
  Script script;
  answer_passing_stabiliser(script);
  EXPECT_EQ(OIS_Quality_Check(), -1);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n" + first_boot(de015) +
                                     repeated(3, latched_command) +
                                     printed("gyro_stability_spec 0x92:00 00 00 00") +
                                     latched_poll() + last_de015_boot(no_stabiliser_file));
  for (const char* const path : stabiliser_copies) EXPECT_EQ(script.written(path), Bytes());
  EXPECT_EQ(GetLensType(), 7);
}

TEST(StabiliserCheck, IgnoresADownloadThatFailedInItsFirstBoot) {
  Script script;
  SetLensType(7);
  answer_corrupted_once(script);
  answer_de015_once(script);
  answer_stabiliser_values(script);
  script.query_reply(0x80, {0, 0, 0, 4});
  EXPECT_EQ(OIS_Quality_Check(), 0);
  const std::string transcript = script.transcript();
  const std::string begin =
      "open /dev/spi_renesas\n" + first_boot(de015, Verdict::corrupted) + calibration_started;
  EXPECT_EQ(transcript.substr(0, begin.size()), begin);
  EXPECT_EQ(script.count(Call::sleep), 1);
}

TEST(StabiliserCheck, HidesAFailedDownloadOfItsLastBoot) {
  Script script;
  SetLensType(7);
  answer_de015_once(script);
  answer_corrupted(script);
  answer_stabiliser_values(script);
  script.query_reply(0x80, {0, 0, 0, 4});
  script.query_reply(0x82, {0, 0, 0, 6});
  EXPECT_EQ(OIS_Quality_Check(), 6);
  EXPECT_EQ(script.count(Call::sleep), 11);  // a poll and ten attempts
}

TEST(StabiliserCheck, EndsAtTheFirstPollWhenACommandFails) {
  for (const int command : {1, 2, 3}) {
    Script script;
    SetLensType(7);
    answer_passing_stabiliser(script);
    script.fail(Call::transfer, boot_transfers + command, 2, EIO);
    EXPECT_EQ(OIS_Quality_Check(), -1) << "command " << command;
    EXPECT_EQ(script.count(Call::sleep), 1);
    EXPECT_EQ(GetLensType(), 7);
  }
}

TEST(StabiliserCheck, GoesOnAfterACommandThatNeededItsRetry) {
  Script script;
  SetLensType(7);
  answer_passing_stabiliser(script);
  script.fail(Call::transfer, boot_transfers + 3, 1, EIO);
  EXPECT_EQ(OIS_Quality_Check(), 0);
}

TEST(StabiliserCheck, EndsAtTheFirstPollWhenTheQueryBeforeItFails) {
  Script script;
  SetLensType(7);
  answer_passing_stabiliser(script);
  script.query_reply(0x92, {1, 2, 3, 4});
  script.fail(Call::transfer, boot_transfers + 4, 1, EIO);
  EXPECT_EQ(OIS_Quality_Check(), -1);
  const std::string transcript = script.transcript();
  EXPECT_NE(transcript.find("00 -> EIO\n" + printed("gyro_stability_spec 0x92:00 00 00 00") +
                            latched_poll() + reset),
            std::string::npos)
      << transcript;
}

TEST(StabiliserCheck, EndsWhenAPollFails) {
  Script script;
  SetLensType(7);
  answer_passing_stabiliser(script);
  script.query_reply_once(0x80, {9, 9, 9, 1});
  script.fail(Call::transfer, boot_transfers + 6, 1, EIO);
  EXPECT_EQ(OIS_Quality_Check(), -1);
  EXPECT_EQ(from_first_poll(script),
            poll("9 9 9 1") + "spi_renesas: 80 00 00 00 01 81 00 00 00 00 00 00 -> EIO\n" +
                latched_poll() + last_de015_boot(no_stabiliser_file));
}

TEST(StabiliserCheck, PassesWithARecordOfZerosWhenTheErrorCodeCannotBeRead) {
  Script script;
  SetLensType(7);
  answer_passing_stabiliser(script);
  script.query_reply(0x82, {0, 0, 0, 7});
  script.fail(Call::transfer, boot_transfers + 6, 1, EIO);
  EXPECT_EQ(OIS_Quality_Check(), 0);
  for (const char* const path : stabiliser_copies) EXPECT_EQ(script.written(path), Bytes(60, 0));
}

TEST(StabiliserCheck, StoresZerosFromTheValueOnThatCannotBeRead) {
  Script script;
  SetLensType(7);
  answer_passing_stabiliser(script);
  script.query_reply(0x82, {0, 0, 0, 7});
  script.fail(Call::transfer, boot_transfers + 9, 1, EIO);  // the third value: Hall gain, X
  EXPECT_EQ(OIS_Quality_Check(), 7);
  Bytes record(60, 0);
  std::copy_n(stabiliser_record.begin(), 8, record.begin());  // polarity; Hall offset, X
  for (const char* const path : stabiliser_copies) EXPECT_EQ(script.written(path), record);
  EXPECT_EQ(GetLensType(), 7);
}

class StabiliserCopy : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(All, StabiliserCopy, testing::Values(1, 2, 3));

TEST_P(StabiliserCopy, ThatCannotBeOpenedIsSkipped) {
  const int failing = GetParam();
  Script script;
  SetLensType(7);
  answer_passing_stabiliser(script);
  script.fail(Call::fopen, failing, 1, EROFS);
  EXPECT_EQ(OIS_Quality_Check(), 0);
  std::string expected = poll("0 0 0 4") + error_code("00 00 00 00") + stabiliser_values_read;
  for (int copy = 1; copy <= 3; ++copy) {
    const std::string path = stabiliser_copies[copy - 1];
    expected += copy == failing ? "fopen " + path + " w -> EROFS\n" : saved(path);
    EXPECT_EQ(script.written(path), copy == failing ? Bytes() : stabiliser_record) << path;
  }
  expected += last_de015_boot(
      failing == 3 ? no_stabiliser_file : loaded("/bin/OIS_S_Cali.dat") + stabiliser_values_sent());
  EXPECT_EQ(from_first_poll(script), expected);
  EXPECT_EQ(script.open_files(), 0);
}

TEST_P(StabiliserCopy, ThatTakesNothingIsSynchronisedAndClosed) {
  Script script;
  SetLensType(7);
  answer_passing_stabiliser(script);
  script.full_file(stabiliser_copies[GetParam() - 1]);
  EXPECT_EQ(OIS_Quality_Check(), 0);
  const std::string transcript = script.transcript();
  EXPECT_NE(transcript.find(stabiliser_values_read + all_saved("OIS_S_Cali.dat")),
            std::string::npos)
      << transcript;
}

TEST(StabiliserCheck, WritesNoCopyWhereNoFileCanBeOpened) {
  Script script;
  SetLensType(7);
  answer_passing_stabiliser(script);
  script.query_reply(0x82, {0, 0, 3, 0});
  script.fail(Call::fopen, 1, forever, EROFS);
  EXPECT_EQ(OIS_Quality_Check(), 3);
  EXPECT_EQ(script.transcript_without({"out", "lock", "unlock", "spi_renesas", "spi_pt5111", "open",
                                       "usleep", "system", "sleep"}),
            "fopen /mnt/nand/OIS_S_Cali.dat w -> EROFS\n"
            "fopen /tmp/OIS_S_Cali.dat w -> EROFS\n"
            "fopen /bin/OIS_S_Cali.dat w -> EROFS\n"
            "fopen /bin/OIS_S_Cali.dat r -> EROFS\n");
}

TEST(StabiliserCheck, ClosesItsFilesThoughTheyCannotBeSynchronised) {
  Script script;
  SetLensType(7);
  answer_passing_stabiliser(script);
  script.fail(Call::fsync, 1, forever, EIO);
  EXPECT_EQ(OIS_Quality_Check(), 0);
  EXPECT_EQ(script.open_files(), 0);
  EXPECT_EQ(script.count(Call::fsync), 3);
  for (const char* const path : stabiliser_copies) {
    EXPECT_EQ(script.written(path), stabiliser_record);
  }
}

}  // namespace
