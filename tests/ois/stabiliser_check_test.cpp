// The quality check of the stabiliser, while nothing fails.
#include <gtest/gtest.h>

#include <string>

#include "kelvo.h"
#include "lens/boot_transcript.h"
#include "ois/quality_check.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::Script;
using namespace kelvo::test::boot;
using namespace kelvo::test::check;

/// Both boots find their checksums right.
void answer_boots(Script& script) {
  answer_de015_once(script);
  answer_de015_once(script);
}

const std::string measuring = calibration_started + locked("12 00 00 00 AB BD 00") +
                              "spi_renesas: 92 00 00 00 01 93 00 00 00 00 00 00\n" +
                              printed("gyro_stability_spec 0x92:0c 00 00 ab");

/// All up to the first poll.
std::string stabiliser_check_beginning() {
  return "open /dev/spi_renesas\n" + first_boot(de015) + measuring;
}

/// All behind the last poll of a check that measured.
std::string stabiliser_check_ending() {
  return stabiliser_values_read + all_saved("OIS_S_Cali.dat") +
         last_de015_boot(loaded("/bin/OIS_S_Cali.dat") + stabiliser_values_sent());
}

/// A unit whose calibration is finished from the nth poll on; before, it is in state 1.
void answer_stabiliser_measurements(Script& script, int finished_at) {
  SetLensType(7);
  answer_boots(script);
  answer_stabiliser_values(script);
  script.query_reply(0x92, {0x0C, 0x00, 0x00, 0xAB});
  for (int i = 1; i < finished_at; ++i) script.query_reply_once(0x80, {0x21, 0x02, 0xFF, 0x01});
  script.query_reply(0x80, {0x00, 0x80, 0x10, 0x04});
  script.query_reply(0x82, {0x00, 0x00, 0x00, 0x00});
}

TEST(StabiliserCheck, CalibratesStoresAndBootsAgain) {
  Script script;
  answer_stabiliser_measurements(script, 1);
  EXPECT_EQ(OIS_Quality_Check(), 0);
  EXPECT_EQ(script.transcript(), stabiliser_check_beginning() + poll("0 128 16 4") +
                                     error_code("00 00 00 00") + stabiliser_check_ending());
  expect_copies(script, stabiliser_copies, stabiliser_record);
  EXPECT_EQ(GetLensType(), 7);
}

TEST(StabiliserCheck, PollsOnceASecondUntilTheCalibrationIsFinished) {
  Script script;
  answer_stabiliser_measurements(script, 4);
  EXPECT_EQ(OIS_Quality_Check(), 0);
  EXPECT_EQ(script.transcript(), stabiliser_check_beginning() + repeated(3, poll("33 2 255 1")) +
                                     poll("0 128 16 4") + error_code("00 00 00 00") +
                                     stabiliser_check_ending());
  expect_copies(script, stabiliser_copies, stabiliser_record);
}

TEST(StabiliserCheck, TakesACalibrationThatIsFinishedAtTheFortiethPoll) {
  Script script;
  answer_stabiliser_measurements(script, 40);
  EXPECT_EQ(OIS_Quality_Check(), 0);
  EXPECT_EQ(script.transcript(), stabiliser_check_beginning() + repeated(39, poll("33 2 255 1")) +
                                     poll("0 128 16 4") + error_code("00 00 00 00") +
                                     stabiliser_check_ending());
  EXPECT_EQ(script.count(Call::sleep), 40);
  expect_copies(script, stabiliser_copies, stabiliser_record);
}

TEST(StabiliserCheck, GivesUpAfterTheFortiethPollAndBootsAgain) {
  Script script;
  answer_stabiliser_measurements(script, 41);
  EXPECT_EQ(OIS_Quality_Check(), -1);
  EXPECT_EQ(script.transcript(), stabiliser_check_beginning() + repeated(40, poll("33 2 255 1")) +
                                     last_de015_boot(no_stabiliser_file));
  expect_copies(script, stabiliser_copies, {});
  EXPECT_EQ(GetLensType(), 7);
}

TEST(StabiliserCheck, EndsAtOnceWhenNoCalibrationRuns) {
  Script script;
  answer_stabiliser_measurements(script, 1);
  script.query_reply_once(0x80, {0x04, 0x04, 0x04, 0x00});
  EXPECT_EQ(OIS_Quality_Check(), -1);
  EXPECT_EQ(script.transcript(),
            stabiliser_check_beginning() + poll("4 4 4 0") + last_de015_boot(no_stabiliser_file));
  expect_copies(script, stabiliser_copies, {});
}

TEST(StabiliserCheck, EndsWhenTheCalibrationStopsRunning) {
  Script script;
  answer_stabiliser_measurements(script, 1);
  script.query_reply_once(0x80, {0x00, 0x00, 0x00, 0x05});
  script.query_reply_once(0x80, {0x00, 0x00, 0x00, 0xFF});
  script.query_reply_once(0x80, {0x00, 0x00, 0x00, 0x00});
  EXPECT_EQ(OIS_Quality_Check(), -1);
  EXPECT_EQ(script.transcript(), stabiliser_check_beginning() + poll("0 0 0 5") +
                                     poll("0 0 0 255") + poll("0 0 0 0") +
                                     last_de015_boot(no_stabiliser_file));
  expect_copies(script, stabiliser_copies, {});
}

TEST(StabiliserCheck, StopsAtTheFortiethPollThatFindsNoCalibrationRunning) {
  Script script;
  answer_stabiliser_measurements(script, 40);
  script.query_reply(0x80, {0x00, 0x00, 0x00, 0x00});
  EXPECT_EQ(OIS_Quality_Check(), -1);
  EXPECT_EQ(script.transcript(), stabiliser_check_beginning() + repeated(39, poll("33 2 255 1")) +
                                     poll("0 0 0 0") + last_de015_boot(no_stabiliser_file));
}

class StabiliserErrorCode : public testing::TestWithParam<ErrorCode> {};
INSTANTIATE_TEST_SUITE_P(All, StabiliserErrorCode,
                         testing::Values(ErrorCode{{0, 0, 2, 0}, 2, "00 00 02 00"},
                                         ErrorCode{{0, 0, 0, 5}, 5, "00 00 00 05"},
                                         ErrorCode{{0xFF, 0xFF, 1, 4}, 5, "ff ff 01 04"},
                                         ErrorCode{{0, 0, 0x80, 0xC1}, 0xC1, "00 00 80 c1"},
                                         ErrorCode{{0xFF, 0xFF, 0, 0}, 0, "ff ff 00 00"}));

TEST_P(StabiliserErrorCode, IsTheResultAndTheRecordIsWrittenAllTheSame) {
  Script script;
  answer_stabiliser_measurements(script, 1);
  script.query_reply(0x82, GetParam().bytes);
  EXPECT_EQ(OIS_Quality_Check(), GetParam().result);
  EXPECT_EQ(script.transcript(), stabiliser_check_beginning() + poll("0 128 16 4") +
                                     error_code(GetParam().printed) + stabiliser_check_ending());
  expect_copies(script, stabiliser_copies, stabiliser_record);
}

TEST(StabiliserCheck, DoesNotLookAtTheModuleAndEndsOnDe015) {
  for (const int32_t variant : {8, 9, 6}) {
    Script script;
    answer_stabiliser_measurements(script, 1);
    SetLensType(variant);
    EXPECT_EQ(OIS_Quality_Check(), 0);
    EXPECT_EQ(script.payloads()[0],
              Bytes(CORVO_PROGRAM_DATA_DE015, CORVO_PROGRAM_DATA_DE015 + 33276));
    EXPECT_EQ(GetLensType(), 7);
    expect_copies(script, stabiliser_copies, stabiliser_record);
  }
}

TEST(StabiliserCheck, ReplacesOlderRecordsByTheirWholeLength) {
  Script script;
  answer_stabiliser_measurements(script, 1);
  for (const char* const path : stabiliser_copies) script.file(path, Bytes(200, 0x77));
  EXPECT_EQ(OIS_Quality_Check(), 0);
  expect_copies(script, stabiliser_copies, stabiliser_record);
}

TEST(StabiliserCheck, LoadsTheOlderRecordAfterACalibrationThatDidNotRun) {
  Script script;
  answer_stabiliser_measurements(script, 1);
  script.query_reply_once(0x80, {0, 0, 0, 0});
  script.file("/bin/OIS_S_Cali.dat", stabiliser_record);
  EXPECT_EQ(OIS_Quality_Check(), -1);
  EXPECT_EQ(script.transcript(),
            stabiliser_check_beginning() + poll("0 0 0 0") +
                last_de015_boot(loaded("/bin/OIS_S_Cali.dat") + stabiliser_values_sent()));
  EXPECT_EQ(script.written("/bin/OIS_S_Cali.dat"), stabiliser_record);
  EXPECT_EQ(script.written("/tmp/OIS_S_Cali.dat"), Bytes());
}

}  // namespace
