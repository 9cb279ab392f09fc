// The boots of the two modules that print their steps and have an iris calibration.
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

const char* const iris_file_missing = "fopen /bin/DC_S_Cali.dat r -> ENOENT\n";
const char* const iris_file_read = "fopen /bin/DC_S_Cali.dat r\nfclose /bin/DC_S_Cali.dat\n";

TEST(Init30516_DF033, BootsPrintsItsStepsAndInitialisesThePt5111Last) {
  Script script;
  answer_df033_once(script);
  script.fail(Call::fopen, 1, forever, ENOENT);
  EXPECT_EQ(Init30516_DF033(), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n" + printed_attempt(df033) +
                                     start_program() + i2c_link + iris_file_missing +
                                     last_iris_commands() + df033_driver_words());
  EXPECT_EQ(GetLensType(), 8);
}

TEST(Init30516_DF033, DownloadsTheThreeImagesOfItsModule) {
  Script script;
  answer_df033_once(script);
  EXPECT_EQ(Init30516_DF033(), 0);
  ASSERT_EQ(script.payloads().size(), 3U);
  EXPECT_EQ(script.payloads()[0],
            Bytes(CORVO_PROGRAM_DATA_DF033, CORVO_PROGRAM_DATA_DF033 + 35000));
  EXPECT_EQ(script.payloads()[1],
            Bytes(CORVO_PROGRAM3_DATA_DF033, CORVO_PROGRAM3_DATA_DF033 + 1160));
  EXPECT_EQ(script.payloads()[2],
            Bytes(CORVO_PROGRAM2_DATA_DF033, CORVO_PROGRAM2_DATA_DF033 + 648));
}

TEST(Init30516_DF033, LoadsTheIrisCalibrationBeforeTheLastCommands) {
  Script script;
  answer_df033_once(script);
  answer_iris_values(script);
  script.file("/bin/DC_S_Cali.dat", iris_record);
  EXPECT_EQ(Init30516_DF033(), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n" + printed_attempt(df033) +
                                     start_program() + i2c_link + iris_file_read +
                                     iris_values_sent() + iris_values_read + last_iris_commands() +
                                     df033_driver_words());
  EXPECT_EQ(script.open_files(), 0);
}

TEST(Init30516_DF033, NeverUsesTheOtherModulesDefaultCalibration) {
  Script script;
  answer_df033_once(script);
  script.file("/bin/DC_S_Cali_T5391.dat", iris_record);
  EXPECT_EQ(Init30516_DF033(), 0);
  EXPECT_EQ(script.transcript_without({"fopen"}),
            "open /dev/spi_renesas\n" + printed_attempt(df033) + start_program() + i2c_link +
                last_iris_commands() + df033_driver_words());
  EXPECT_EQ(script.count(Call::fopen), 1);
}

TEST(Init30516_DF033, MakesAllTenAttemptsAfterOneThatFailed) {
  Script script;
  answer_corrupted_once(script);
  for (int attempt = 2; attempt <= 10; ++attempt) answer_df033_once(script);
  script.fail(Call::fopen, 1, forever, ENOENT);
  EXPECT_EQ(Init30516_DF033(), 1);
  EXPECT_EQ(script.transcript(),
            "open /dev/spi_renesas\n" + printed_attempt(df033, Verdict::corrupted) + "sleep 1\n" +
                repeated(9, printed_attempt(df033) + "sleep 1\n") + start_program() + i2c_link +
                iris_file_missing + last_iris_commands() + df033_driver_words());
  EXPECT_EQ(GetLensType(), 8);
}

TEST(Init30516_DF033, FinishesTheSequenceAfterTenFailedAttempts) {
  Script script;
  answer_corrupted(script);
  script.fail(Call::fopen, 1, forever, ENOENT);
  EXPECT_EQ(Init30516_DF033(), 1);
  EXPECT_EQ(script.transcript(),
            "open /dev/spi_renesas\n" +
                repeated(10, printed_attempt(df033, Verdict::corrupted) + "sleep 1\n") +
                start_program() + i2c_link + iris_file_missing + last_iris_commands() +
                df033_driver_words());
}

TEST(Init30516_DF033, ClearsTheLatchAndTakesTheVariantFromAnyOther) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, 2, EIO);
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0xFF);
  answer_df033_once(script);
  script.fail(Call::fopen, 1, forever, ENOENT);
  script.transcript();
  EXPECT_EQ(Init30516_DF033(), 0);
  EXPECT_EQ(script.transcript(), printed_attempt(df033) + start_program() + i2c_link +
                                     iris_file_missing + last_iris_commands() +
                                     df033_driver_words());
  EXPECT_EQ(GetLensType(), 8);
}

TEST(Init30516_T5391, BootsWithTheFactoryDefaultAndWithoutThePt5111) {
  Script script;
  answer_t5391_once(script);
  answer_iris_values(script);
  script.file("/bin/DC_S_Cali_T5391.dat", iris_record);
  script.fail(Call::fopen, 1, 1, ENOENT);
  EXPECT_EQ(Init30516_T5391(), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n" + printed_attempt(t5391) +
                                     start_program() + i2c_link + iris_file_missing +
                                     "fopen /bin/DC_S_Cali_T5391.dat r\n"
                                     "out \"Load default DC Calibration\\n\"\n"
                                     "fclose /bin/DC_S_Cali_T5391.dat\n" +
                                     iris_values_sent() + iris_values_read + last_iris_commands());
  EXPECT_EQ(GetLensType(), 9);
  EXPECT_EQ(script.open_files(), 0);
}

TEST(Init30516_T5391, PrefersItsOwnCalibrationToTheDefault) {
  Script script;
  answer_t5391_once(script);
  answer_iris_values(script);
  script.file("/bin/DC_S_Cali.dat", iris_record);
  script.file("/bin/DC_S_Cali_T5391.dat", Bytes(24, 0xEE));
  EXPECT_EQ(Init30516_T5391(), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n" + printed_attempt(t5391) +
                                     start_program() + i2c_link + iris_file_read +
                                     iris_values_sent() + iris_values_read + last_iris_commands());
}

TEST(Init30516_T5391, AnnouncesTheDefaultEvenWhereThereIsNone) {
  Script script;
  answer_t5391_once(script);
  script.fail(Call::fopen, 1, forever, ENOENT);
  EXPECT_EQ(Init30516_T5391(), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n" + printed_attempt(t5391) +
                                     start_program() + i2c_link + iris_file_missing +
                                     "fopen /bin/DC_S_Cali_T5391.dat r -> ENOENT\n"
                                     "out \"Load default DC Calibration\\n\"\n" +
                                     last_iris_commands());
}

TEST(Init30516_T5391, DownloadsTheThreeImagesOfItsModule) {
  Script script;
  answer_t5391_once(script);
  EXPECT_EQ(Init30516_T5391(), 0);
  ASSERT_EQ(script.payloads().size(), 3U);
  EXPECT_EQ(script.payloads()[0],
            Bytes(CORVO_PROGRAM_DATA_T5391, CORVO_PROGRAM_DATA_T5391 + 33000));
  EXPECT_EQ(script.payloads()[1],
            Bytes(CORVO_PROGRAM3_DATA_T5391, CORVO_PROGRAM3_DATA_T5391 + 1160));
  EXPECT_EQ(script.payloads()[2],
            Bytes(CORVO_PROGRAM2_DATA_T5391, CORVO_PROGRAM2_DATA_T5391 + 648));
}

TEST(Init30516_T5391, MakesAllTenAttemptsAfterOneThatFailed) {
  Script script;
  answer_corrupted_once(script);
  for (int attempt = 2; attempt <= 10; ++attempt) answer_t5391_once(script);
  script.fail(Call::fopen, 1, forever, ENOENT);
  EXPECT_EQ(Init30516_T5391(), 1);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n" +
                                     printed_attempt(t5391, Verdict::corrupted) + "sleep 1\n" +
                                     repeated(9, printed_attempt(t5391) + "sleep 1\n") +
                                     start_program() + i2c_link + iris_file_missing +
                                     "fopen /bin/DC_S_Cali_T5391.dat r -> ENOENT\n"
                                     "out \"Load default DC Calibration\\n\"\n" +
                                     last_iris_commands());
  EXPECT_EQ(GetLensType(), 9);
}

TEST(Init30516_T5391, NeverTouchesThePt5111) {
  Script script;
  answer_corrupted(script);
  EXPECT_EQ(Init30516_T5391(), 1);
  const std::string text = script.transcript();
  EXPECT_EQ(text.find("pt5111"), std::string::npos);
  EXPECT_EQ(text.find("2F 02"), std::string::npos);
  EXPECT_EQ(text.find("usleep 200000"), std::string::npos);
}

}  // namespace
