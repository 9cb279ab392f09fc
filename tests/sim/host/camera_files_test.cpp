#include "sim/wrapper/camera_files.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iterator>

#include "sim/host/installed_camera.h"

namespace {

namespace fs = std::filesystem;
using kelvo::sim::CameraFiles;
using kelvo::test::InstalledCamera;
using kelvo::test::NoTemporaryFolder;
using kelvo::test::TestFolder;

std::string content(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::string with_files(const fs::path& folder) { return "clock=sleep files=" + folder.string(); }

TEST(CameraFiles, AreTheTwoRecordsWithTheirCopiesAndTheDefault) {
  for (const char* const path :
       {"/bin/DC_S_Cali.dat", "/mnt/nand/DC_S_Cali.dat", "/tmp/DC_S_Cali.dat",
        "/bin/OIS_S_Cali.dat", "/mnt/nand/OIS_S_Cali.dat", "/tmp/OIS_S_Cali.dat",
        "/bin/DC_S_Cali_T5391.dat"}) {
    EXPECT_TRUE(CameraFiles::claims(path)) << path;
  }
  EXPECT_TRUE(CameraFiles::claims("/bin/DC_S_Cali.dat.new")) << "it takes the record's place";
  for (const char* const path :
       {"/bin/sh", "/tmp/other", "DC_S_Cali.dat", "/tmp/DC_S_Cali_T5391.dat",
        "/mnt/nand/DC_S_Cali_T5391.dat", "/bin/sh.new", ".new", "new", ""}) {
    EXPECT_FALSE(CameraFiles::claims(path)) << path;
  }
}

TEST(CameraFiles, LieUnderTheSamePathsBelowTheFolder) {
  const TestFolder folder;
  CameraFiles files(folder.path());
  ASSERT_FALSE(files.prepare());
  EXPECT_EQ(files.real_path("/mnt/nand/DC_S_Cali.dat"),
            folder.path() / "mnt" / "nand" / "DC_S_Cali.dat");
  EXPECT_TRUE(fs::is_directory(folder.path() / "bin"));
  EXPECT_TRUE(fs::is_directory(folder.path() / "mnt" / "nand"));
  EXPECT_TRUE(fs::is_directory(folder.path() / "tmp"));
}

TEST(CameraFiles, HaveADefaultRecordOfSixSixteenBitValues) {
  const TestFolder folder;
  CameraFiles files(folder.path());
  ASSERT_FALSE(files.prepare());
  const std::string record = content(folder.path() / "bin" / "DC_S_Cali_T5391.dat");
  ASSERT_EQ(record.size(), 24u);
  for (std::size_t field = 0; field < 6; ++field) {
    EXPECT_NE(record.substr(field * 4, 2), std::string("\0\0", 2)) << field;
    EXPECT_EQ(record.substr(field * 4 + 2, 2), std::string("\0\0", 2)) << field;
  }
}

TEST(CameraFiles, KeepADefaultRecordThatIsThere) {
  const TestFolder folder;
  fs::create_directory(folder.path() / "bin");
  std::ofstream(folder.path() / "bin" / "DC_S_Cali_T5391.dat") << "mine";
  CameraFiles files(folder.path());
  ASSERT_FALSE(files.prepare());
  EXPECT_EQ(content(folder.path() / "bin" / "DC_S_Cali_T5391.dat"), "mine");
}

TEST(CameraFiles, AreMadeInAFolderThatIsMissing) {
  const TestFolder folder;
  CameraFiles files(folder.path() / "a" / "b");
  ASSERT_FALSE(files.prepare());
  EXPECT_TRUE(fs::exists(folder.path() / "a" / "b" / "bin" / "DC_S_Cali_T5391.dat"));
}

TEST(CameraFiles, StayInANamedFolder) {
  const TestFolder folder;
  CameraFiles files(folder.path());
  ASSERT_FALSE(files.prepare());
  files.remove();
  EXPECT_TRUE(fs::exists(folder.path() / "bin" / "DC_S_Cali_T5391.dat"));
}

TEST(CameraFiles, GoWithTheirPrivateFolder) {
  CameraFiles files("");
  ASSERT_FALSE(files.prepare());
  const fs::path folder = files.folder();
  EXPECT_TRUE(fs::exists(folder / "bin" / "DC_S_Cali_T5391.dat"));
  files.remove();
  EXPECT_FALSE(fs::exists(folder));
}

TEST(CameraFiles, HaveAPrivateFolderOfTheirOwn) {
  CameraFiles one("");
  CameraFiles other("");
  ASSERT_FALSE(one.prepare());
  ASSERT_FALSE(other.prepare());
  EXPECT_NE(one.folder(), other.folder());
  one.remove();
  other.remove();
}

TEST(CameraFiles, OutliveAForkedProcess) {
  CameraFiles files("");
  ASSERT_FALSE(files.prepare());
  const pid_t child = fork();
  if (child == 0) {
    files.remove();
    _exit(0);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(fs::exists(files.folder()));
  files.remove();
}

TEST(CameraFiles, CannotBeMadeWhereAFileIsInTheWay) {
  const TestFolder folder;
  std::ofstream(folder.path() / "bin") << "a file";
  CameraFiles files(folder.path());
  EXPECT_TRUE(files.prepare());
  EXPECT_TRUE(files.prepare()) << "it is tried again";
  fs::remove(folder.path() / "bin");
  EXPECT_FALSE(files.prepare());
}

TEST(CameraFiles, CannotBeMadeWithoutATemporaryFolder) {
  const NoTemporaryFolder none;
  CameraFiles files("");
  EXPECT_TRUE(files.prepare());
}

TEST(CameraFiles, AreWrittenAndReadUnderTheCamerasPaths) {
  const TestFolder folder;
  InstalledCamera camera(with_files(folder.path()));
  for (const char* const path :
       {"/bin/DC_S_Cali.dat", "/mnt/nand/DC_S_Cali.dat", "/tmp/DC_S_Cali.dat"}) {
    FILE* const out = fopen(path, "wb");
    ASSERT_NE(out, nullptr);
    fputs(path, out);
    EXPECT_EQ(fclose(out), 0);
    EXPECT_EQ(content(folder.path() / fs::path(path).relative_path()), path);
    FILE* const in = fopen(path, "rb");
    ASSERT_NE(in, nullptr);
    char text[64] = {};
    EXPECT_NE(fgets(text, sizeof text, in), nullptr);
    EXPECT_STREQ(text, path);
    EXPECT_EQ(fclose(in), 0);
  }
}

TEST(CameraFiles, TakeTheNameOfARecord) {
  const TestFolder folder;
  InstalledCamera camera(with_files(folder.path()));
  FILE* const out = fopen("/bin/OIS_S_Cali.dat.new", "wb");
  ASSERT_NE(out, nullptr);
  fputs("new", out);
  EXPECT_EQ(fclose(out), 0);
  EXPECT_FALSE(fs::exists(folder.path() / "bin" / "OIS_S_Cali.dat"));
  EXPECT_EQ(rename("/bin/OIS_S_Cali.dat.new", "/bin/OIS_S_Cali.dat"), 0);
  EXPECT_EQ(content(folder.path() / "bin" / "OIS_S_Cali.dat"), "new");
  EXPECT_FALSE(fs::exists(folder.path() / "bin" / "OIS_S_Cali.dat.new"));
}

TEST(CameraFiles, CannotTakeANameWhenThereIsNoSuchFile) {
  InstalledCamera camera;
  errno = 0;
  EXPECT_EQ(rename("/bin/OIS_S_Cali.dat.new", "/bin/OIS_S_Cali.dat"), -1);
  EXPECT_EQ(errno, ENOENT);
}

TEST(CameraFiles, LeaveTheNamesOfOtherFilesAlone) {
  const TestFolder folder;
  InstalledCamera camera;
  std::ofstream(folder.path() / "one") << "one";
  EXPECT_EQ(rename((folder.path() / "one").c_str(), (folder.path() / "other").c_str()), 0);
  EXPECT_EQ(content(folder.path() / "other"), "one");
}

TEST(CameraFiles, AreMissingUntilTheyAreWritten) {
  InstalledCamera camera;
  errno = 0;
  EXPECT_EQ(fopen("/bin/OIS_S_Cali.dat", "rb"), nullptr);
  EXPECT_EQ(errno, ENOENT);
}

TEST(CameraFiles, DoNotOpenWhenTheFolderCannotBeUsed) {
  const TestFolder folder;
  std::ofstream(folder.path() / "file") << "a file";
  InstalledCamera camera(with_files(folder.path() / "file"));
  errno = 0;
  EXPECT_EQ(fopen("/bin/DC_S_Cali_T5391.dat", "rb"), nullptr);
  EXPECT_EQ(errno, ENOTDIR);
}

TEST(CameraFiles, LeaveEveryOtherFileAlone) {
  const TestFolder folder;
  InstalledCamera camera;
  const std::string path = folder.path() / "other";
  FILE* const out = fopen(path.c_str(), "wb");
  ASSERT_NE(out, nullptr);
  fclose(out);
  EXPECT_TRUE(fs::exists(path));
}

}  // namespace
