// Faults of the camera's files, as the library meets them.
#include <errno.h>
#include <gtest/gtest.h>
#include <kelvo.h>
#include <stdio.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "sim/fault/parse.h"
#include "sim/host/installed_camera.h"

namespace {

namespace fs = std::filesystem;
using kelvo::test::InstalledCamera;
using kelvo::test::TestFolder;

class FileFault : public testing::Test {
 protected:
  std::uint32_t add(const char* text) {
    const kelvo::sim::fault::ParsedFault parsed = kelvo::sim::fault::parse(text);
    EXPECT_EQ(parsed.error, "");
    return camera.host().add(parsed.fault).value_or(0);
  }

  /// Opens a file and closes it again: 0, or why it cannot be opened.
  static int open_error(const char* path, const char* mode) {
    errno = 0;
    FILE* const file = fopen(path, mode);
    if (file == nullptr) return errno;
    fclose(file);
    return 0;
  }

  std::uintmax_t size(const char* path) const { return fs::file_size(folder.path() / path); }

  TestFolder folder;
  InstalledCamera camera{"clock=sleep files=" + folder.path().string()};
};

constexpr char bin[] = "/bin/OIS_S_Cali.dat";

TEST_F(FileFault, MakesARecordUnreadable) {
  SetLensType(7);
  ASSERT_EQ(OIS_Quality_Check(), 0);
  ASSERT_EQ(Load_QC(), 0);
  const std::uint32_t fault = add("file path=OIS_S_Cali.dat unreadable");
  EXPECT_EQ(Load_QC(), -1);
  EXPECT_EQ(open_error(bin, "rb"), EACCES);
  EXPECT_EQ(open_error("/bin/DC_S_Cali_T5391.dat", "rb"), 0) << "another file";
  EXPECT_EQ(open_error(bin, "ab"), 0) << "it can be written";
  EXPECT_TRUE(camera.host().remove_fault(fault));
  EXPECT_EQ(Load_QC(), 0);
}

TEST_F(FileFault, MakesARecordMissing) {
  add("file path=/bin/DC_S_Cali_T5391.dat missing nth=2");
  EXPECT_EQ(open_error("/bin/DC_S_Cali_T5391.dat", "rb"), 0);
  EXPECT_EQ(open_error("/bin/DC_S_Cali_T5391.dat", "rb"), ENOENT);
  EXPECT_EQ(open_error("/bin/DC_S_Cali_T5391.dat", "rb"), 0);
}

TEST_F(FileFault, HasTheErrorThatItNames) {
  const std::uint32_t fault = add("file direction=sent error=EROFS");
  EXPECT_EQ(open_error(bin, "wb"), EROFS);
  EXPECT_EQ(open_error(bin, "rb"), ENOENT) << "nobody has written it";
  EXPECT_TRUE(camera.host().remove_fault(fault));
  EXPECT_EQ(open_error(bin, "wb"), 0);
}

TEST_F(FileFault, FillsTheStorage) {
  add("file path=/bin/OIS_S_Cali.dat full");
  FILE* const file = fopen(bin, "wb");
  ASSERT_NE(file, nullptr);
  EXPECT_GE(fputs("record", file), 0) << "it is in the stream's buffer";
  errno = 0;
  EXPECT_EQ(fflush(file), EOF);
  EXPECT_EQ(errno, ENOSPC);
  fclose(file);
}

TEST_F(FileFault, LeavesAnEmptyRecordOnAFullStorage) {
  SetLensType(7);
  ASSERT_EQ(OIS_Quality_Check(), 0);
  ASSERT_EQ(size("bin/OIS_S_Cali.dat"), 60u);
  const std::uint32_t fault = add("file path=/bin/OIS_S_Cali.dat full");
  EXPECT_EQ(OIS_Quality_Check(), 0) << "the library does not look";
  EXPECT_EQ(size("bin/OIS_S_Cali.dat"), 0u);
  EXPECT_EQ(size("mnt/nand/OIS_S_Cali.dat"), 60u);
  EXPECT_TRUE(camera.host().remove_fault(fault));
  EXPECT_EQ(OIS_Quality_Check(), 0);
  EXPECT_EQ(size("bin/OIS_S_Cali.dat"), 60u);
}

TEST_F(FileFault, OfAFullStorageDoesNotMakeAFileThatIsOnlyOpened) {
  add("file full");
  EXPECT_EQ(open_error(bin, "r+b"), ENOENT);
  EXPECT_FALSE(fs::exists(folder.path() / "bin/OIS_S_Cali.dat"));
}

TEST_F(FileFault, LeavesOtherFilesAlone) {
  add("file error=EIO");
  EXPECT_EQ(open_error("/dev/null", "rb"), 0);
  EXPECT_EQ(open_error((folder.path() / "OIS_S_Cali.dat").c_str(), "wb"), 0);
  EXPECT_EQ(open_error(bin, "rb"), EIO);
}

}  // namespace
