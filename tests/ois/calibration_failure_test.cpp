#include <gtest/gtest.h>

#include "kelvo.h"
#include "ois/iris_calibration.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::iris_calibration;
using kelvo::test::Script;

TEST(IrisCalibration, StopsSendingAfterACommandThatFailedTwice) {
  Script script;
  script.file("/bin/DC_S_Cali.dat", iris_calibration);
  SetLensType(8);
  script.fail(Call::transfer, 2, 2, EIO);
  Load_DC();
  EXPECT_EQ(script.transcript(),
            R"(fopen /bin/DC_S_Cali.dat r
fclose /bin/DC_S_Cali.dat
open /dev/spi_renesas
lock
spi_renesas: 21 00 00 12 34 67 00
unlock
lock
spi_renesas: 51 00 00 01 02 54 00 -> EIO
spi_renesas: 51 00 00 01 02 54 00 -> EIO
out "SendCommand Error -1\n"
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

TEST(IrisCalibration, StopsReadingBackAfterAFailedQuery) {
  Script script;
  script.file("/bin/DC_S_Cali.dat", iris_calibration);
  script.query_reply(0xA1, {1, 2, 3, 4});
  script.query_reply(0xD3, {5, 6, 7, 8});
  SetLensType(8);
  script.fail(Call::transfer, 7, 1, EIO);
  Load_DC();
  // The failed query overwrites the reply with the zeros that it received.
  EXPECT_EQ(script.transcript_without({"fopen", "fclose", "open", "lock", "unlock"}),
            R"(spi_renesas: 21 00 00 12 34 67 00
spi_renesas: 51 00 00 01 02 54 00
spi_renesas: 53 00 00 FF FE 50 00
spi_renesas: 57 00 00 00 50 A7 00
spi_renesas: 58 00 00 0F A0 07 00
spi_renesas: A1 00 00 00 01 A2 00 00 00 00 00 00
out "Pola 0xa1:01 02 03 04\n"
spi_renesas: D1 00 00 00 01 D2 00 00 00 00 00 00 -> EIO
out "hofs[0] 0xd1:00 00 00 00\n"
out "hg 0xd3:00 00 00 00\n"
out "xmin 0xc5:00 00 00 00\n"
out "xmax 0xc6:00 00 00 00\n"
out "sin 0x98:00 00 00 00\n"
)");
  EXPECT_EQ(GetLensType(), -1);
}

TEST(IrisCalibration, LatchesWithoutADevice) {
  Script script;
  script.file("/bin/DC_S_Cali.dat", iris_calibration);
  SetLensType(8);
  script.fail(Call::open, 1, forever, ENOENT);
  Load_DC();
  EXPECT_EQ(script.transcript_without({"open", "err", "lock", "unlock"}),
            R"(fopen /bin/DC_S_Cali.dat r
fclose /bin/DC_S_Cali.dat
fd -1: 21 00 00 12 34 67 00 -> EBADF
fd -1: 21 00 00 12 34 67 00 -> EBADF
out "SendCommand Error -1\n"
out "Pola 0xa1:00 00 00 00\n"
out "hofs[0] 0xd1:00 00 00 00\n"
out "hg 0xd3:00 00 00 00\n"
out "xmin 0xc5:00 00 00 00\n"
out "xmax 0xc6:00 00 00 00\n"
out "sin 0x98:00 00 00 00\n"
)");
  EXPECT_EQ(script.count(Call::open), 11);
  EXPECT_EQ(GetLensType(), -1);
}

}  // namespace
