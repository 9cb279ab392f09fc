// Whatever a program calls and however it spells the path, the camera's devices and files are the host's.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "script/device_host.h"
#include "script/installed_host.h"

extern "C" {
// What hardened programs call.
int __open_2(const char* path, int flags);
int __open64_2(const char* path, int flags);
int __openat_2(int folder, const char* path, int flags);
int __openat64_2(int folder, const char* path, int flags);
}

namespace {

using kelvo::test::DeviceHost;
using kelvo::test::Installed;
using kelvo::test::lens_device;
using Lines = std::vector<std::string>;
namespace fs = std::filesystem;

constexpr char record[] = "/bin/DC_S_Cali.dat";

struct Opening {
  const char* name;
  std::function<int(const char* path)> open;
};
void PrintTo(const Opening& opening, std::ostream* stream) { *stream << opening.name; }

int opened(std::FILE* stream) { return stream != nullptr ? fileno(stream) : -1; }

const Opening every_opening[] = {
    {"open", [](const char* path) { return open(path, O_RDWR); }},
    {"open64", [](const char* path) { return open64(path, O_RDWR); }},
    {"openat", [](const char* path) { return openat(-1, path, O_RDWR); }},
    {"openat64", [](const char* path) { return openat64(AT_FDCWD, path, O_RDWR); }},
    {"open_2", [](const char* path) { return __open_2(path, O_RDWR); }},
    {"open64_2", [](const char* path) { return __open64_2(path, O_RDWR); }},
    {"openat_2", [](const char* path) { return __openat_2(-1, path, O_RDWR); }},
    {"openat64_2", [](const char* path) { return __openat64_2(-1, path, O_RDWR); }},
    {"creat", [](const char* path) { return creat(path, 0600); }},
    {"creat64", [](const char* path) { return creat64(path, 0600); }},
    {"fopen", [](const char* path) { return opened(std::fopen(path, "r+")); }},
    {"fopen64", [](const char* path) { return opened(fopen64(path, "we")); }},
};

class SeamOpening : public testing::TestWithParam<Opening> {};

TEST_P(SeamOpening, OfADeviceReachesTheHost) {
  DeviceHost host;
  const Installed installed(host);
  const int device = GetParam().open(lens_device);
  ASSERT_GE(device, 0);
  EXPECT_EQ(kelvo::test::send_byte(device), 0);
  EXPECT_EQ(host.seen, (Lines{"open 1", "transfer 1"}));
}

TEST_P(SeamOpening, OfACalibrationFileReachesTheHost) {
  DeviceHost host;
  const Installed installed(host);
  EXPECT_GE(GetParam().open(record), 0);
  ASSERT_EQ(host.seen.size(), 1U);
  EXPECT_EQ(host.seen[0].substr(0, 23), "file /bin/DC_S_Cali.dat");
  host.file_error = -EIO;
  EXPECT_EQ(GetParam().open(record), -1);
  EXPECT_EQ(errno, EIO);
}

TEST_P(SeamOpening, OfAnotherFileDoesNot) {
  DeviceHost host;
  const Installed installed(host);
  EXPECT_GE(GetParam().open("/dev/null"), 0);
  EXPECT_EQ(GetParam().open("/no/such/spi_renesas"), -1);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(host.seen, Lines());
}

INSTANTIATE_TEST_SUITE_P(Calls, SeamOpening, testing::ValuesIn(every_opening),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(SeamPaths, AreTheSameInOtherSpellings) {
  DeviceHost host;
  const Installed installed(host);
  for (const char* const path : {"/dev/../dev/spi_renesas", "//dev/./spi_renesas"}) {
    EXPECT_GE(open(path, O_RDWR), 0) << path;
  }
  const int folder = open("/dev", O_RDONLY | O_DIRECTORY);
  EXPECT_GE(openat(folder, "spi_renesas", O_RDWR), 0);
  EXPECT_GE(openat(folder, "./spi_renesas", O_RDWR), 0);
  ASSERT_EQ(chdir("/dev"), 0);
  EXPECT_GE(open("spi_renesas", O_RDWR), 0);
  EXPECT_EQ(host.seen.size(), 5U);
  EXPECT_EQ(open("spi_renesas/", O_RDWR), -1);
  EXPECT_EQ(host.seen.size(), 5U);
}

TEST(SeamPaths, OfADeviceThatTheHostHasCanBeAskedAbout) {
  struct stat status = {};
  struct stat64 status64 = {};
  EXPECT_EQ(access(lens_device, R_OK), -1) << "this machine has a lens controller";
  DeviceHost host;
  const Installed installed(host);
  EXPECT_EQ(access(lens_device, R_OK | W_OK), 0);
  EXPECT_EQ(eaccess(lens_device, R_OK), 0);
  EXPECT_EQ(euidaccess(lens_device, R_OK), 0);
  EXPECT_EQ(faccessat(AT_FDCWD, lens_device, R_OK, 0), 0);
  EXPECT_EQ(stat(lens_device, &status), 0);
  EXPECT_TRUE(S_ISCHR(status.st_mode));
  EXPECT_EQ(stat64(lens_device, &status64), 0);
  EXPECT_EQ(lstat(lens_device, &status), 0);
  EXPECT_EQ(lstat64(lens_device, &status64), 0);
  EXPECT_EQ(fstatat(-1, lens_device, &status, 0), 0);
  EXPECT_EQ(fstatat64(-1, lens_device, &status64, 0), 0);
  struct statx more = {};
  EXPECT_EQ(statx(-1, lens_device, 0, STATX_TYPE, &more), 0);
  host.file_error = -ENOENT;
  EXPECT_EQ(access(lens_device, R_OK), -1);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(access("/dev", R_OK), 0);
}

/// A folder with the file that stands for a calibration record.
class SeamFile : public testing::Test {
 protected:
  SeamFile() {
    std::string pattern = (fs::temp_directory_path() / "kelvo-paths-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) std::abort();
    folder = pattern;
    host.real_file = folder / "record";
    std::ofstream(host.real_file) << "abc";
  }
  ~SeamFile() override { fs::remove_all(folder); }

  fs::path folder;
  DeviceHost host;
  Installed installed{host};
};

TEST_F(SeamFile, IsOpenedWithTheModeOfItsFlags) {
  struct {
    int flags;
    const char* mode;
  } const rows[] = {{O_RDONLY, "r"},           {O_RDWR, "r+"},
                    {O_WRONLY, "r+"},          {O_WRONLY | O_APPEND, "a"},
                    {O_RDWR | O_APPEND, "a+"}, {O_WRONLY | O_CREAT | O_TRUNC, "w"},
                    {O_RDWR | O_TRUNC, "w+"}};
  for (const auto& row : rows) {
    EXPECT_GE(open(record, row.flags, 0600), 0);
    EXPECT_EQ(host.seen.back(), std::string("file /bin/DC_S_Cali.dat ") + row.mode);
  }
}

TEST_F(SeamFile, IsTheOneThatIsAskedAboutShortenedMovedAndRemoved) {
  struct stat status = {};
  EXPECT_EQ(stat(record, &status), 0);
  EXPECT_EQ(status.st_size, 3);
  EXPECT_EQ(truncate(record, 2), 0);
  EXPECT_EQ(truncate64(record, 1), 0);
  EXPECT_EQ(fs::file_size(host.real_file), 1U);
  const std::string elsewhere = folder / "elsewhere";
  EXPECT_EQ(rename(record, elsewhere.c_str()), 0);
  EXPECT_FALSE(fs::exists(host.real_file));
  EXPECT_EQ(rename(elsewhere.c_str(), record), 0);
  EXPECT_EQ(unlink(record), 0);
  EXPECT_EQ(unlinkat(-1, record, 0), -1);
  EXPECT_EQ(std::remove(record), -1);
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(SeamFile, IsReadByAStreamThatLedElsewhere) {
  std::FILE* stream = std::fopen("/dev/null", "r");
  stream = std::freopen(record, "r", stream);
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(std::fgetc(stream), 'a');
  stream = freopen64("/dev/null", "r", stream);
  ASSERT_NE(stream, nullptr);
  std::fclose(stream);
  EXPECT_EQ(host.seen, (Lines{"file /bin/DC_S_Cali.dat r", "closed /bin/DC_S_Cali.dat"}));
}

TEST_F(SeamFile, ThatCannotBeOpenedEndsTheStream) {
  host.file_error = -EACCES;
  EXPECT_EQ(std::freopen(record, "r", std::fopen("/dev/null", "r")), nullptr);
  EXPECT_EQ(errno, EACCES);
  EXPECT_EQ(std::freopen(lens_device, "r", std::fopen("/dev/null", "r")), nullptr);
  EXPECT_EQ(errno, EOPNOTSUPP);
}

TEST(SeamCommands, OnTheLinesReachTheHostByAPipeToo) {
  DeviceHost host;
  const Installed installed(host);
  host.shell_status = 3 << 8;
  std::FILE* const pipe = popen("echo 1 > /sys/class/gpio/gpio33/value", "r");
  ASSERT_NE(pipe, nullptr);
  EXPECT_EQ(pclose(pipe), 3 << 8);
  EXPECT_EQ(host.seen, Lines{"echo 1 > /sys/class/gpio/gpio33/value"});
  std::FILE* const other = popen("exit 4", "r");
  EXPECT_EQ(pclose(other), 4 << 8);
  host.shell_status = -EIO;
  EXPECT_EQ(popen("echo 1 > /sys/class/gpio/gpio33/value", "r"), nullptr);
  EXPECT_EQ(errno, EIO);
}

}  // namespace
