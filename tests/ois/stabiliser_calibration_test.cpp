#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

const Bytes stabiliser_calibration = {
    0x01, 0x00, 0, 0,  // polarity
    0x10, 0x02, 0, 0,  // Hall offset, X
    0x20, 0x03, 0, 0,  // Hall offset, Y
    0x30, 0x04, 0, 0,  // Hall gain, X
    0x40, 0x05, 0, 0,  // Hall gain, Y
    0x50, 0xF6, 0, 0,  // minimum, X
    0x60, 0xF7, 0, 0,  // minimum, Y
    0x70, 0x08, 0, 0,  // maximum, X
    0x80, 0x09, 0, 0,  // maximum, Y
    0x90, 0x0A, 0, 0,  // gyro zero, X
    0xBB, 0xBB, 0, 0,  // Hall noise, X
    0xBB, 0xBB, 0, 0,  // Hall noise, Y
    0xBB, 0xBB, 0, 0,  // gyro noise, X
    0xBB, 0xBB, 0, 0,  // gyro noise, Y
    0xA0, 0x0B, 0, 0,  // gyro zero, Y
};

TEST(StabiliserCalibration, IsSentFirstXThenYThenTheYGyroWithoutAReadBack) {
  Script script;
  script.file("/bin/OIS_S_Cali.dat", stabiliser_calibration);
  SetLensType(7);
  EXPECT_EQ(Load_QC(), 0);
  EXPECT_EQ(script.transcript(),
            R"(fopen /bin/OIS_S_Cali.dat r
fclose /bin/OIS_S_Cali.dat
open /dev/spi_renesas
lock
spi_renesas: 21 00 00 00 01 22 00
unlock
lock
spi_renesas: 51 00 00 02 10 63 00
unlock
lock
spi_renesas: 53 00 00 04 30 87 00
unlock
lock
spi_renesas: 57 00 00 F6 50 9D 00
unlock
lock
spi_renesas: 58 00 00 08 70 D0 00
unlock
lock
spi_renesas: 63 00 00 0A 90 FD 00
unlock
lock
spi_renesas: 52 00 00 03 20 75 00
unlock
lock
spi_renesas: 54 00 00 05 40 99 00
unlock
lock
spi_renesas: 59 00 00 F7 60 B0 00
unlock
lock
spi_renesas: 5A 00 00 09 80 E3 00
unlock
lock
spi_renesas: 65 00 00 0B A0 10 00
unlock
)");
  EXPECT_EQ(script.open_files(), 0);
  EXPECT_EQ(GetLensType(), 7);
}

TEST(StabiliserCalibration, NeverSendsTheNoiseFields) {
  Script script;
  Bytes record(60, 0);
  for (int offset = 40; offset < 56; ++offset) record[static_cast<std::size_t>(offset)] = 0xBB;
  script.file("/bin/OIS_S_Cali.dat", record);
  SetLensType(7);
  EXPECT_EQ(Load_QC(), 0);
  EXPECT_EQ(script.transcript_without({"fopen", "fclose", "open", "lock", "unlock"}),
            R"(spi_renesas: 21 00 00 00 00 21 00
spi_renesas: 51 00 00 00 00 51 00
spi_renesas: 53 00 00 00 00 53 00
spi_renesas: 57 00 00 00 00 57 00
spi_renesas: 58 00 00 00 00 58 00
spi_renesas: 63 00 00 00 00 63 00
spi_renesas: 52 00 00 00 00 52 00
spi_renesas: 54 00 00 00 00 54 00
spi_renesas: 59 00 00 00 00 59 00
spi_renesas: 5A 00 00 00 00 5A 00
spi_renesas: 65 00 00 00 00 65 00
)");
}

TEST(StabiliserCalibration, DoesNotLookAtTheVariant) {
  Script script;
  script.file("/bin/OIS_S_Cali.dat", stabiliser_calibration);
  for (const int32_t type : {8, 9, 5}) {
    SetLensType(type);
    EXPECT_EQ(Load_QC(), 0);
  }
  EXPECT_EQ(script.count(Call::transfer), 33);
  EXPECT_EQ(script.open_files(), 0);
}

TEST(StabiliserCalibration, IsMinusOneAndSendsNothingWithoutAFile) {
  Script script;
  script.fail(Call::fopen, 1, 1, ENOENT);
  SetLensType(7);
  EXPECT_EQ(Load_QC(), -1);
  EXPECT_EQ(script.transcript(), "fopen /bin/OIS_S_Cali.dat r -> ENOENT\n");
  EXPECT_EQ(fd, -1);
  EXPECT_EQ(GetLensType(), 7);
}

TEST(StabiliserCalibration, TakesWhatAShortFileHolds) {
  Script script;
  script.file("/bin/OIS_S_Cali.dat",
              Bytes(stabiliser_calibration.begin(), stabiliser_calibration.begin() + 13));
  SetLensType(7);
  EXPECT_EQ(Load_QC(), 0);
  EXPECT_EQ(script.transcript_without({"fopen", "fclose", "open", "lock", "unlock"}),
            R"(spi_renesas: 21 00 00 00 01 22 00
spi_renesas: 51 00 00 02 10 63 00
spi_renesas: 53 00 00 00 30 83 00
spi_renesas: 57 00 00 00 00 57 00
spi_renesas: 58 00 00 00 00 58 00
spi_renesas: 63 00 00 00 00 63 00
spi_renesas: 52 00 00 03 20 75 00
spi_renesas: 54 00 00 00 00 54 00
spi_renesas: 59 00 00 00 00 59 00
spi_renesas: 5A 00 00 00 00 5A 00
spi_renesas: 65 00 00 00 00 65 00
)");
}

TEST(StabiliserCalibration, SendsZerosForAFileThatCannotBeRead) {
  Script script;
  script.unreadable_file("/bin/OIS_S_Cali.dat");
  SetLensType(7);
  EXPECT_EQ(Load_QC(), 0);
  EXPECT_EQ(script.transcript_without({"lock", "unlock"}),
            R"(fopen /bin/OIS_S_Cali.dat r
fclose /bin/OIS_S_Cali.dat
open /dev/spi_renesas
spi_renesas: 21 00 00 00 00 21 00
spi_renesas: 51 00 00 00 00 51 00
spi_renesas: 53 00 00 00 00 53 00
spi_renesas: 57 00 00 00 00 57 00
spi_renesas: 58 00 00 00 00 58 00
spi_renesas: 63 00 00 00 00 63 00
spi_renesas: 52 00 00 00 00 52 00
spi_renesas: 54 00 00 00 00 54 00
spi_renesas: 59 00 00 00 00 59 00
spi_renesas: 5A 00 00 00 00 5A 00
spi_renesas: 65 00 00 00 00 65 00
)");
}

TEST(StabiliserCalibration, ReachesNothingWhileTheLatchIsSetAndStillReturnsZero) {
  Script script;
  script.file("/bin/OIS_S_Cali.dat", stabiliser_calibration);
  EXPECT_EQ(Load_QC(), 0);
  EXPECT_EQ(script.transcript_without({"lock", "unlock"}),
            R"(fopen /bin/OIS_S_Cali.dat r
fclose /bin/OIS_S_Cali.dat
open /dev/spi_renesas
)");
  EXPECT_EQ(script.count(Call::ftok), 22);
  EXPECT_EQ(GetLensType(), -1);
}

TEST(StabiliserCalibration, GoesOnAfterACommandThatNeededItsRetry) {
  Script script;
  script.file("/bin/OIS_S_Cali.dat", stabiliser_calibration);
  SetLensType(7);
  script.fail(Call::transfer, 11, 1, EIO);
  EXPECT_EQ(Load_QC(), 0);
  EXPECT_EQ(script.count(Call::transfer), 12);
  EXPECT_EQ(GetLensType(), 7);
}

TEST(StabiliserCalibration, StopsSendingAfterACommandThatFailedTwiceAndStillReturnsZero) {
  Script script;
  script.file("/bin/OIS_S_Cali.dat", stabiliser_calibration);
  SetLensType(7);
  script.fail(Call::transfer, 3, forever, EIO);
  EXPECT_EQ(Load_QC(), 0);
  EXPECT_EQ(script.transcript_without({"fopen", "fclose", "open", "lock", "unlock"}),
            R"(spi_renesas: 21 00 00 00 01 22 00
spi_renesas: 51 00 00 02 10 63 00
spi_renesas: 53 00 00 04 30 87 00 -> EIO
spi_renesas: 53 00 00 04 30 87 00 -> EIO
out "SendCommand Error -1\n"
)");
  EXPECT_EQ(GetLensType(), -1);
}

TEST(StabiliserCalibration, LatchesWithoutADevice) {
  Script script;
  script.file("/bin/OIS_S_Cali.dat", stabiliser_calibration);
  SetLensType(7);
  script.fail(Call::open, 1, forever, ENOENT);
  EXPECT_EQ(Load_QC(), 0);
  EXPECT_EQ(script.transcript_without({"fopen", "fclose", "open", "err", "lock", "unlock"}),
            R"(fd -1: 21 00 00 00 01 22 00 -> EBADF
fd -1: 21 00 00 00 01 22 00 -> EBADF
out "SendCommand Error -1\n"
)");
  EXPECT_EQ(GetLensType(), -1);
}

}  // namespace
