#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "ois/iris_calibration.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::iris_calibration;
using kelvo::test::Script;

TEST(IrisRange, ComesFromTheFileAndSendsNothing) {
  for (const int32_t type : {7, 8, 5}) {
    Script script;
    script.file("/bin/DC_S_Cali.dat", iris_calibration);
    SetLensType(type);
    std::uint32_t max = 0xFFFFFFFF;
    std::uint32_t min = 0xFFFFFFFF;
    EXPECT_EQ(Get_DC_Range(&max, &min), 0);
    EXPECT_EQ(max, 0x0FA0U);
    EXPECT_EQ(min, 0x0050U);
    EXPECT_EQ(script.transcript(), "fopen /bin/DC_S_Cali.dat r\nfclose /bin/DC_S_Cali.dat\n");
    EXPECT_EQ(script.open_files(), 0) << "variant " << type;
  }
}

TEST(IrisRange, DoesNotNeedTheController) {
  Script script;
  script.file("/bin/DC_S_Cali.dat", iris_calibration);
  std::uint32_t max = 0;
  std::uint32_t min = 0;
  EXPECT_EQ(Get_DC_Range(&max, &min), 0);
  EXPECT_EQ(max, 0x0FA0U);
  EXPECT_EQ(min, 0x0050U);
  EXPECT_EQ(GetLensType(), -1);
  EXPECT_EQ(fd, -1);
}

TEST(IrisRange, LeavesOneFileOpenPerCallOnVariant9) {
  Script script;
  script.file("/bin/DC_S_Cali.dat", iris_calibration);
  SetLensType(9);
  std::uint32_t max = 0;
  std::uint32_t min = 0;
  EXPECT_EQ(Get_DC_Range(&max, &min), 0);
  EXPECT_EQ(max, 0x0FA0U);
  EXPECT_EQ(min, 0x0050U);
  EXPECT_EQ(script.open_files(), 1);
  EXPECT_EQ(Get_DC_Range(&max, &min), 0);
  EXPECT_EQ(script.open_files(), 2);
  EXPECT_EQ(script.transcript(), "fopen /bin/DC_S_Cali.dat r\nfopen /bin/DC_S_Cali.dat r\n");
}

TEST(IrisRange, IsMinusOneAndLeavesBothAloneWithoutAFile) {
  for (const int32_t type : {7, 8, 9, 5}) {
    Script script;
    script.file("/bin/DC_S_Cali_T5391.dat", iris_calibration);
    script.fail(Call::fopen, 1, 1, ENOENT);
    SetLensType(type);
    std::uint32_t max = 0x11111111;
    std::uint32_t min = 0x22222222;
    EXPECT_EQ(Get_DC_Range(&max, &min), -1);
    EXPECT_EQ(max, 0x11111111U);
    EXPECT_EQ(min, 0x22222222U);
    EXPECT_EQ(script.transcript(), "fopen /bin/DC_S_Cali.dat r -> ENOENT\n") << "variant " << type;
    EXPECT_EQ(script.open_files(), 0);
    EXPECT_EQ(GetLensType(), type);
  }
}

TEST(IrisRange, TakesWhatAShortFileHolds) {
  Script script;
  script.file("/bin/DC_S_Cali.dat", Bytes(iris_calibration.begin(), iris_calibration.begin() + 16));
  std::uint32_t max = 0xFFFFFFFF;
  std::uint32_t min = 0xFFFFFFFF;
  EXPECT_EQ(Get_DC_Range(&max, &min), 0);
  EXPECT_EQ(max, 0U);
  EXPECT_EQ(min, 0x0050U);
}

TEST(IrisRange, IsZeroForAFileThatCannotBeRead) {
  Script script;
  script.unreadable_file("/bin/DC_S_Cali.dat");
  std::uint32_t max = 0xFFFFFFFF;
  std::uint32_t min = 0xFFFFFFFF;
  EXPECT_EQ(Get_DC_Range(&max, &min), 0);
  EXPECT_EQ(max, 0U);
  EXPECT_EQ(min, 0U);
  EXPECT_EQ(script.transcript(), "fopen /bin/DC_S_Cali.dat r\nfclose /bin/DC_S_Cali.dat\n");
}

}  // namespace
