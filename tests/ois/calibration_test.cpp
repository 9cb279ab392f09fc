#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "kelvo.h"
#include "ois/iris_calibration.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::iris_calibration;
using kelvo::test::Script;

constexpr const char* own_file = "/bin/DC_S_Cali.dat";
constexpr const char* default_file = "/bin/DC_S_Cali_T5391.dat";

void iris_replies(Script& script) {
  script.query_reply(0xA1, {0x01, 0x02, 0x12, 0x34});
  script.query_reply(0xD1, {0x00, 0x00, 0x01, 0x02});
  script.query_reply(0xD3, {0x00, 0x00, 0xFF, 0xFE});
  script.query_reply(0xC5, {0x00, 0x00, 0x00, 0x50});
  script.query_reply(0xC6, {0x00, 0x00, 0x0F, 0xA0});
  script.query_reply(0x98, {0x0A, 0x0B, 0x0C, 0x0D});
}

// What follows the file in the transcript when the device is not open yet and nothing fails.
constexpr const char* iris_traffic =
    R"(open /dev/spi_renesas
lock
spi_renesas: 21 00 00 12 34 67 00
unlock
lock
spi_renesas: 51 00 00 01 02 54 00
unlock
lock
spi_renesas: 53 00 00 FF FE 50 00
unlock
lock
spi_renesas: 57 00 00 00 50 A7 00
unlock
lock
spi_renesas: 58 00 00 0F A0 07 00
unlock
spi_renesas: A1 00 00 00 01 A2 00 00 00 00 00 00
out "Pola 0xa1:01 02 12 34\n"
spi_renesas: D1 00 00 00 01 D2 00 00 00 00 00 00
out "hofs[0] 0xd1:00 00 01 02\n"
spi_renesas: D3 00 00 00 01 D4 00 00 00 00 00 00
out "hg 0xd3:00 00 ff fe\n"
spi_renesas: C5 00 00 00 01 C6 00 00 00 00 00 00
out "xmin 0xc5:00 00 00 50\n"
spi_renesas: C6 00 00 00 01 C7 00 00 00 00 00 00
out "xmax 0xc6:00 00 0f a0\n"
spi_renesas: 98 00 00 00 01 99 00 00 00 00 00 00
out "sin 0x98:0a 0b 0c 0d\n"
)";

TEST(IrisCalibration, IsSentThenReadBackInOrder) {
  for (const int32_t type : {8, 7, 9}) {
    Script script;
    script.file(own_file, iris_calibration);
    iris_replies(script);
    CloseSPI();
    SetLensType(type);
    script.transcript();
    Load_DC();
    EXPECT_EQ(script.transcript(),
              std::string("fopen /bin/DC_S_Cali.dat r\nfclose /bin/DC_S_Cali.dat\n") + iris_traffic)
        << "variant " << type;
    EXPECT_EQ(GetLensType(), type);
    EXPECT_EQ(script.open_files(), 0);
  }
}

TEST(IrisCalibration, SendsTheLowHalfOfAFieldHighByteFirst) {
  Script script;
  Bytes record = iris_calibration;
  record[2] = 0xCD;
  record[3] = 0xAB;
  script.file(own_file, record);
  SetLensType(8);
  Load_DC();
  EXPECT_NE(script.transcript().find("\nspi_renesas: 21 00 00 12 34 67 00\n"), std::string::npos);
}

TEST(IrisCalibration, NeverSendsTheSineValue) {
  Script script;
  Bytes record(24, 0);
  record[20] = 0x77;
  record[21] = 0x66;
  script.file(own_file, record);
  SetLensType(8);
  Load_DC();
  EXPECT_EQ(script.transcript_without({"open", "lock", "unlock", "fopen", "fclose"}),
            R"(spi_renesas: 21 00 00 00 00 21 00
spi_renesas: 51 00 00 00 00 51 00
spi_renesas: 53 00 00 00 00 53 00
spi_renesas: 57 00 00 00 00 57 00
spi_renesas: 58 00 00 00 00 58 00
spi_renesas: A1 00 00 00 01 A2 00 00 00 00 00 00
out "Pola 0xa1:00 00 00 00\n"
spi_renesas: D1 00 00 00 01 D2 00 00 00 00 00 00
out "hofs[0] 0xd1:00 00 00 00\n"
spi_renesas: D3 00 00 00 01 D4 00 00 00 00 00 00
out "hg 0xd3:00 00 00 00\n"
spi_renesas: C5 00 00 00 01 C6 00 00 00 00 00 00
out "xmin 0xc5:00 00 00 00\n"
spi_renesas: C6 00 00 00 01 C7 00 00 00 00 00 00
out "xmax 0xc6:00 00 00 00\n"
spi_renesas: 98 00 00 00 01 99 00 00 00 00 00 00
out "sin 0x98:00 00 00 00\n"
)");
}

TEST(IrisCalibration, IsQuietlyLeftOutWithoutAFileOnEveryVariantBut9) {
  for (const int32_t type : {7, 8, 5, 10}) {
    Script script;
    script.file(default_file, iris_calibration);
    script.fail(Call::fopen, 1, 1, ENOENT);
    SetLensType(type);
    Load_DC();
    EXPECT_EQ(script.transcript(), "fopen /bin/DC_S_Cali.dat r -> ENOENT\n") << "variant " << type;
    EXPECT_EQ(script.open_files(), 0);
  }
}

TEST(IrisCalibration, TakesTheDefaultFileOnVariant9) {
  Script script;
  script.file(default_file, iris_calibration);
  script.fail(Call::fopen, 1, 1, ENOENT);
  iris_replies(script);
  SetLensType(9);
  Load_DC();
  EXPECT_EQ(script.transcript(), std::string("fopen /bin/DC_S_Cali.dat r -> ENOENT\n"
                                             "fopen /bin/DC_S_Cali_T5391.dat r\n"
                                             "out \"Load default DC Calibration\\n\"\n"
                                             "fclose /bin/DC_S_Cali_T5391.dat\n") +
                                     iris_traffic);
  EXPECT_EQ(script.open_files(), 0);
}

TEST(IrisCalibration, PrefersItsOwnFileToTheDefaultOnVariant9) {
  Script script;
  script.file(own_file, iris_calibration);
  script.file(default_file, Bytes(24, 0x11));
  iris_replies(script);
  SetLensType(9);
  Load_DC();
  EXPECT_EQ(script.transcript(),
            std::string("fopen /bin/DC_S_Cali.dat r\nfclose /bin/DC_S_Cali.dat\n") + iris_traffic);
}

TEST(IrisCalibration, AnnouncesEvenADefaultFileThatIsMissing) {
  Script script;
  script.fail(Call::fopen, 1, forever, ENOENT);
  SetLensType(9);
  Load_DC();
  EXPECT_EQ(script.transcript(),
            R"(fopen /bin/DC_S_Cali.dat r -> ENOENT
fopen /bin/DC_S_Cali_T5391.dat r -> ENOENT
out "Load default DC Calibration\n"
)");
  EXPECT_EQ(GetLensType(), 9);
}

TEST(IrisCalibration, TakesWhatAShortFileHolds) {
  Script script;
  script.file(own_file, {0x34, 0x12, 0, 0, 0x02, 0x01});
  SetLensType(8);
  Load_DC();
  EXPECT_EQ(script.transcript_without({"out", "lock", "unlock"}),
            R"(fopen /bin/DC_S_Cali.dat r
fclose /bin/DC_S_Cali.dat
open /dev/spi_renesas
spi_renesas: 21 00 00 12 34 67 00
spi_renesas: 51 00 00 01 02 54 00
spi_renesas: 53 00 00 00 00 53 00
spi_renesas: 57 00 00 00 00 57 00
spi_renesas: 58 00 00 00 00 58 00
spi_renesas: A1 00 00 00 01 A2 00 00 00 00 00 00
spi_renesas: D1 00 00 00 01 D2 00 00 00 00 00 00
spi_renesas: D3 00 00 00 01 D4 00 00 00 00 00 00
spi_renesas: C5 00 00 00 01 C6 00 00 00 00 00 00
spi_renesas: C6 00 00 00 01 C7 00 00 00 00 00 00
spi_renesas: 98 00 00 00 01 99 00 00 00 00 00 00
)");
}

TEST(IrisCalibration, IgnoresWhatFollowsTheRecord) {
  Script script;
  Bytes longer = iris_calibration;
  longer.insert(longer.end(), 100, 0x99);
  script.file(own_file, longer);
  iris_replies(script);
  SetLensType(8);
  Load_DC();
  EXPECT_EQ(script.transcript(),
            std::string("fopen /bin/DC_S_Cali.dat r\nfclose /bin/DC_S_Cali.dat\n") + iris_traffic);
}

TEST(IrisCalibration, SendsZerosForAFileThatCannotBeRead) {
  Script script;
  script.unreadable_file(own_file);
  SetLensType(9);
  Load_DC();
  const std::string transcript = script.transcript_without({"out", "lock", "unlock"});
  EXPECT_EQ(transcript.substr(0, transcript.find("spi_renesas: A1")),
            R"(fopen /bin/DC_S_Cali.dat r
fclose /bin/DC_S_Cali.dat
open /dev/spi_renesas
spi_renesas: 21 00 00 00 00 21 00
spi_renesas: 51 00 00 00 00 51 00
spi_renesas: 53 00 00 00 00 53 00
spi_renesas: 57 00 00 00 00 57 00
spi_renesas: 58 00 00 00 00 58 00
)");
  EXPECT_EQ(script.open_files(), 0);
}

TEST(IrisCalibration, ReachesNothingWhileTheLatchIsSet) {
  Script script;
  script.file(own_file, iris_calibration);
  iris_replies(script);
  Load_DC();
  EXPECT_EQ(script.transcript(),
            R"(fopen /bin/DC_S_Cali.dat r
fclose /bin/DC_S_Cali.dat
open /dev/spi_renesas
lock
unlock
lock
unlock
lock
unlock
lock
unlock
lock
unlock
out "Pola 0xa1:00 00 00 00\n"
out "hofs[0] 0xd1:00 00 00 00\n"
out "hg 0xd3:00 00 00 00\n"
out "xmin 0xc5:00 00 00 00\n"
out "xmax 0xc6:00 00 00 00\n"
out "sin 0x98:00 00 00 00\n"
)");
  EXPECT_EQ(GetLensType(), -1);
}

TEST(IrisCalibration, GoesOnAfterACommandThatNeededItsRetry) {
  Script script;
  script.file(own_file, iris_calibration);
  SetLensType(8);
  script.fail(Call::transfer, 2, 1, EIO);
  Load_DC();
  EXPECT_EQ(script.count(Call::transfer), 12);
  EXPECT_EQ(GetLensType(), 8);
}

}  // namespace
