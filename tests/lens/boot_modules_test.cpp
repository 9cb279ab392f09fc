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

/// 0x1234, 0x2001, 0x3002, 0x4003, 0x5004, and a sine value that is never sent.
const Bytes record = {0x34, 0x12, 0, 0, 0x01, 0x20, 0, 0, 0x02, 0x30, 0, 0,
                      0x03, 0x40, 0, 0, 0x04, 0x50, 0, 0, 0x05, 0x60, 0, 0};

/// What the record makes the controller hear, and what it reads back.
std::string loaded_record() {
  return locked("21 00 00 12 34 67 00") + locked("51 00 00 20 01 72 00") +
         locked("53 00 00 30 02 85 00") + locked("57 00 00 40 03 9A 00") +
         locked("58 00 00 50 04 AC 00") + R"(spi_renesas: A1 00 00 00 01 A2 00 00 00 00 00 00
out "Pola 0xa1:01 02 12 34\n"
spi_renesas: D1 00 00 00 01 D2 00 00 00 00 00 00
out "hofs[0] 0xd1:03 04 20 01\n"
spi_renesas: D3 00 00 00 01 D4 00 00 00 00 00 00
out "hg 0xd3:05 06 30 02\n"
spi_renesas: C5 00 00 00 01 C6 00 00 00 00 00 00
out "xmin 0xc5:07 08 40 03\n"
spi_renesas: C6 00 00 00 01 C7 00 00 00 00 00 00
out "xmax 0xc6:09 0a 50 04\n"
spi_renesas: 98 00 00 00 01 99 00 00 00 00 00 00
out "sin 0x98:0b 0c 60 05\n"
)";
}

void answer_iris_queries(Script& script) {
  script.query_reply(0xA1, {0x01, 0x02, 0x12, 0x34});
  script.query_reply(0xD1, {0x03, 0x04, 0x20, 0x01});
  script.query_reply(0xD3, {0x05, 0x06, 0x30, 0x02});
  script.query_reply(0xC5, {0x07, 0x08, 0x40, 0x03});
  script.query_reply(0xC6, {0x09, 0x0A, 0x50, 0x04});
  script.query_reply(0x98, {0x0B, 0x0C, 0x60, 0x05});
}

std::string last_commands() {
  return locked("05 00 00 00 00 05 00") + locked("27 00 00 00 01 28 00");
}

/// The driver's set-up through the lens controller, with the filter switched on at its end.
std::string pt5111_words() {
  return locked("2F 02 E3 80 00 94 00") + locked("2F 02 C4 00 00 F5 00") +
         locked("2F 02 28 00 00 59 00") + locked("2F 02 2C 00 00 5D 00") +
         locked("2F 02 34 00 00 65 00") + locked("2F 02 74 00 00 A5 00") +
         locked("2F 02 C4 00 00 F5 00") + locked("2F 02 CF C0 00 C0 00") +
         locked("2F 02 3C 00 00 6D 00") + locked("2F 02 41 40 00 B2 00") +
         locked("2F 02 70 1F 00 C0 00") + locked("2F 02 CF C0 00 C0 00") +
         locked("2F 02 41 40 00 B2 00") + locked("2F 02 73 EF 00 93 00") +
         locked("2F 02 7E 00 00 AF 00") + "usleep 200000\n" + locked("2F 02 7C 00 00 AD 00");
}

const char* const iris_file_missing = "fopen /bin/DC_S_Cali.dat r -> ENOENT\n";
const char* const iris_file_read = "fopen /bin/DC_S_Cali.dat r\nfclose /bin/DC_S_Cali.dat\n";
const char* const i2c_link = "open /dev/i2c-2\nusleep 100000\n";

TEST(Init30516_DF033, BootsPrintsItsStepsAndInitialisesThePt5111Last) {
  Script script;
  answer_df033_once(script);
  script.fail(Call::fopen, 1, forever, ENOENT);
  EXPECT_EQ(Init30516_DF033(), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n" + printed_attempt(df033) +
                                     start_program() + i2c_link + iris_file_missing +
                                     last_commands() + pt5111_words());
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
  answer_iris_queries(script);
  script.file("/bin/DC_S_Cali.dat", record);
  EXPECT_EQ(Init30516_DF033(), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n" + printed_attempt(df033) +
                                     start_program() + i2c_link + iris_file_read + loaded_record() +
                                     last_commands() + pt5111_words());
  EXPECT_EQ(script.open_files(), 0);
}

TEST(Init30516_DF033, NeverUsesTheOtherModulesDefaultCalibration) {
  Script script;
  answer_df033_once(script);
  script.file("/bin/DC_S_Cali_T5391.dat", record);
  EXPECT_EQ(Init30516_DF033(), 0);
  EXPECT_EQ(script.transcript_without({"fopen"}), "open /dev/spi_renesas\n" +
                                                      printed_attempt(df033) + start_program() +
                                                      i2c_link + last_commands() + pt5111_words());
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
                iris_file_missing + last_commands() + pt5111_words());
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
                start_program() + i2c_link + iris_file_missing + last_commands() + pt5111_words());
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
                                     iris_file_missing + last_commands() + pt5111_words());
  EXPECT_EQ(GetLensType(), 8);
}

TEST(Init30516_T5391, BootsWithTheFactoryDefaultAndWithoutThePt5111) {
  Script script;
  answer_t5391_once(script);
  answer_iris_queries(script);
  script.file("/bin/DC_S_Cali_T5391.dat", record);
  script.fail(Call::fopen, 1, 1, ENOENT);
  EXPECT_EQ(Init30516_T5391(), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n" + printed_attempt(t5391) +
                                     start_program() + i2c_link + iris_file_missing +
                                     "fopen /bin/DC_S_Cali_T5391.dat r\n"
                                     "out \"Load default DC Calibration\\n\"\n"
                                     "fclose /bin/DC_S_Cali_T5391.dat\n" +
                                     loaded_record() + last_commands());
  EXPECT_EQ(GetLensType(), 9);
  EXPECT_EQ(script.open_files(), 0);
}

TEST(Init30516_T5391, PrefersItsOwnCalibrationToTheDefault) {
  Script script;
  answer_t5391_once(script);
  answer_iris_queries(script);
  script.file("/bin/DC_S_Cali.dat", record);
  script.file("/bin/DC_S_Cali_T5391.dat", Bytes(24, 0xEE));
  EXPECT_EQ(Init30516_T5391(), 0);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n" + printed_attempt(t5391) +
                                     start_program() + i2c_link + iris_file_read + loaded_record() +
                                     last_commands());
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
                                     last_commands());
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
                                     last_commands());
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
