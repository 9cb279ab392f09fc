// The quality check of the iris, while nothing fails.
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

/// A unit whose calibration is finished from the nth poll on; before, it is in state 1.
void answer_iris_measurements(Script& script, int finished_at) {
  SetLensType(8);
  answer_df033_once(script);
  answer_df033_once(script);
  answer_iris_values(script);
  for (int i = 1; i < finished_at; ++i) script.query_reply_once(0x80, {0x21, 0x02, 0xFF, 0x01});
  script.query_reply(0x80, {0x00, 0x80, 0x10, 0x04});
}

/// All behind the error code of a unit that passed.
std::string iris_check_ending() {
  return iris_values_read + all_saved("DC_S_Cali.dat") +
         last_df033_boot(loaded("/bin/DC_S_Cali.dat") + iris_values_sent() + iris_values_read);
}

TEST(IrisCheck, CalibratesStoresAndBootsAgain) {
  Script script;
  answer_iris_measurements(script, 1);
  EXPECT_EQ(DC_Quality_Check(), 0);
  EXPECT_EQ(script.transcript(), iris_check_beginning() + poll("0 128 16 4") +
                                     error_code("00 00 00 00") + iris_check_ending());
  expect_copies(script, iris_copies, iris_record);
  EXPECT_EQ(GetLensType(), 8);
}

TEST(IrisCheck, PollsOnceASecondUntilTheCalibrationIsFinished) {
  Script script;
  answer_iris_measurements(script, 4);
  EXPECT_EQ(DC_Quality_Check(), 0);
  EXPECT_EQ(script.transcript(), iris_check_beginning() + repeated(3, poll("33 2 255 1")) +
                                     poll("0 128 16 4") + error_code("00 00 00 00") +
                                     iris_check_ending());
}

TEST(IrisCheck, GoesOnPollingWhenNoCalibrationRuns) {
  Script script;
  answer_iris_measurements(script, 1);
  for (const std::uint8_t state : {0, 5, 0xFF}) script.query_reply_once(0x80, {4, 4, 4, state});
  EXPECT_EQ(DC_Quality_Check(), 0);
  EXPECT_EQ(script.transcript(), iris_check_beginning() + poll("4 4 4 0") + poll("4 4 4 5") +
                                     poll("4 4 4 255") + poll("0 128 16 4") +
                                     error_code("00 00 00 00") + iris_check_ending());
}

TEST(IrisCheck, HasNoLimitToItsPolls) {
  constexpr int polls = 3000;
  Script script;
  answer_iris_measurements(script, 1);
  script.query_reply(0x80, {0, 0, 0, 1});
  script.at(Call::sleep, polls - 1, [&] { script.query_reply(0x80, {0, 0, 0, 4}); });
  EXPECT_EQ(DC_Quality_Check(), 0);
  EXPECT_EQ(script.count(Call::sleep), polls);
  EXPECT_EQ(script.transcript(), iris_check_beginning() + repeated(polls - 1, poll("0 0 0 1")) +
                                     poll("0 0 0 4") + error_code("00 00 00 00") +
                                     iris_check_ending());
}

/// Whose last byte alone decides.
class IrisErrorCode : public testing::TestWithParam<ErrorCode> {};
INSTANTIATE_TEST_SUITE_P(All, IrisErrorCode,
                         testing::Values(ErrorCode{{0, 0, 0, 5}, 5, "00 00 00 05"},
                                         ErrorCode{{0, 0, 0, 0xC1}, 0xC1, "00 00 00 c1"},
                                         ErrorCode{{1, 2, 3, 4}, 4, "01 02 03 04"}));

TEST_P(IrisErrorCode, IsTheResultAndNothingIsReadOrWritten) {
  Script script;
  answer_iris_measurements(script, 1);
  script.query_reply(0x82, GetParam().bytes);
  EXPECT_EQ(DC_Quality_Check(), GetParam().result);
  EXPECT_EQ(script.transcript(), iris_check_beginning() + poll("0 128 16 4") +
                                     error_code(GetParam().printed) +
                                     last_df033_boot(no_iris_file));
  expect_copies(script, iris_copies, {});
  EXPECT_EQ(GetLensType(), 8);
}

TEST(IrisCheck, PassesWhateverTheOtherBytesOfTheErrorCodeAre) {
  Script script;
  answer_iris_measurements(script, 1);
  script.query_reply(0x82, {0xFF, 0xFE, 0x02, 0x00});
  EXPECT_EQ(DC_Quality_Check(), 0);
  EXPECT_EQ(script.transcript(), iris_check_beginning() + poll("0 128 16 4") +
                                     error_code("ff fe 02 00") + iris_check_ending());
  expect_copies(script, iris_copies, iris_record);
}

TEST(IrisCheck, DoesNotLookAtTheModuleAndEndsOnDf033) {
  for (const int32_t variant : {7, 9, 6}) {
    Script script;
    answer_iris_measurements(script, 1);
    SetLensType(variant);
    EXPECT_EQ(DC_Quality_Check(), 0);
    EXPECT_EQ(script.payloads()[0],
              Bytes(CORVO_PROGRAM_DATA_DF033, CORVO_PROGRAM_DATA_DF033 + 35000));
    EXPECT_EQ(GetLensType(), 8);
    expect_copies(script, iris_copies, iris_record);
  }
}

TEST(IrisCheck, ReplacesOlderRecordsByTheirWholeLength) {
  Script script;
  answer_iris_measurements(script, 1);
  for (const char* const path : iris_copies) script.file(path, Bytes(200, 0x77));
  EXPECT_EQ(DC_Quality_Check(), 0);
  expect_copies(script, iris_copies, iris_record);
}

TEST(IrisCheck, LoadsTheOlderRecordAfterAnError) {
  Script script;
  answer_iris_measurements(script, 1);
  script.query_reply(0x82, {0, 0, 0, 1});
  script.file("/bin/DC_S_Cali.dat", iris_record);
  EXPECT_EQ(DC_Quality_Check(), 1);
  EXPECT_EQ(
      script.transcript(),
      iris_check_beginning() + poll("0 128 16 4") + error_code("00 00 00 01") +
          last_df033_boot(loaded("/bin/DC_S_Cali.dat") + iris_values_sent() + iris_values_read));
  EXPECT_EQ(script.written("/bin/DC_S_Cali.dat"), iris_record);
  EXPECT_EQ(script.written("/mnt/nand/DC_S_Cali.dat"), Bytes());
}

}  // namespace
