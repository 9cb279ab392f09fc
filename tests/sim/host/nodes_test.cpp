// What a program is told that makes, changes or asks about what lies at a path of the camera.
#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utime.h>

#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>

#include "sim/fault/parse.h"
#include "sim/host/installed_camera.h"

extern "C" {
// What programs call that were built for an older C library, or are hardened.
int __xmknod(int version, const char* path, mode_t mode, dev_t* device) noexcept;
int __xmknodat(int version, int folder, const char* path, mode_t mode, dev_t* device) noexcept;
ssize_t __readlink_chk(const char* path, char* buffer, size_t length, size_t room) noexcept;
ssize_t __readlinkat_chk(int folder, const char* path, char* buffer, size_t length,
                         size_t room) noexcept;
char* __realpath_chk(const char* path, char* buffer, size_t room) noexcept;
}

namespace {

namespace fs = std::filesystem;
using kelvo::test::InstalledCamera;
using kelvo::test::TestFolder;

constexpr char head[] = "/dev/i2c-2";
constexpr char iris_record[] = "/bin/DC_S_Cali_T5391.dat";
constexpr char no_record[] = "/bin/DC_S_Cali.dat";
constexpr char line[] = "/sys/class/gpio/gpio33/value";

struct NodeCall {
  const char* name;
  long (*call)(const char* path);
};
void PrintTo(const NodeCall& call, std::ostream* stream) { *stream << call.name; }
std::string name_of(const testing::TestParamInfo<NodeCall>& instance) {
  return instance.param.name;
}

/// With a folder of the machine's own beside the camera's paths.
class EveryNodeCall : public testing::TestWithParam<NodeCall> {
 protected:
  /// 0, or the error number.
  static int error_at(const char* path) {
    errno = 0;
    return GetParam().call(path) >= 0 ? 0 : errno;
  }
  static void make_file(const fs::path& path) { const std::ofstream empty(path); }
  void add(const char* text) {
    const kelvo::sim::fault::ParsedFault parsed = kelvo::sim::fault::parse(text);
    EXPECT_EQ(parsed.error, "");
    EXPECT_TRUE(camera.host().add(parsed.fault));
  }

  TestFolder folder;
  const std::string elsewhere = folder.path() / "other";
  InstalledCamera camera;
};

dev_t no_device = 0;
const timeval times[2] = {{1, 0}, {1, 0}};
const timespec exact_times[2] = {{1, 0}, {1, 0}};
const utimbuf plain_times = {1, 1};
constexpr char target[] = "/proc/self/status";

const NodeCall every_making[] = {
    {"mkdir", [](const char* path) -> long { return mkdir(path, 0700); }},
    {"mkdirat", [](const char* path) -> long { return mkdirat(-1, path, 0700); }},
    {"mkfifo", [](const char* path) -> long { return mkfifo(path, 0600); }},
    {"mkfifoat", [](const char* path) -> long { return mkfifoat(-1, path, 0600); }},
    {"mknod", [](const char* path) -> long { return mknod(path, S_IFREG, 0); }},
    {"mknodat", [](const char* path) -> long { return mknodat(-1, path, S_IFREG, 0); }},
    {"xmknod", [](const char* path) -> long { return __xmknod(0, path, S_IFREG, &no_device); }},
    {"xmknodat",
     [](const char* path) -> long { return __xmknodat(0, -1, path, S_IFREG, &no_device); }},
    {"symlink", [](const char* path) -> long { return symlink(target, path); }},
    {"symlinkat", [](const char* path) -> long { return symlinkat(target, -1, path); }},
    {"link",
     [](const char* path) -> long {
       const std::string from = fs::path(path).parent_path() / "from";
       return link(fs::exists(from) ? from.c_str() : target, path);
     }},
    {"linkat",
     [](const char* path) -> long {
       const std::string from = fs::path(path).parent_path() / "from";
       return linkat(-1, fs::exists(from) ? from.c_str() : target, -1, path, 0);
     }},
};

class Making : public EveryNodeCall {};

TEST_P(Making, FindsWhatTheCameraHas) {
  EXPECT_EQ(error_at(head), EEXIST);
  EXPECT_EQ(error_at(iris_record), EEXIST);
}

TEST_P(Making, IsRefusedWhereTheCameraHasNothing) {
  EXPECT_EQ(error_at(no_record), EPERM);
  add("i2c missing");
  EXPECT_EQ(error_at(head), EPERM);
  EXPECT_EQ(access(no_record, F_OK), -1);
}

TEST_P(Making, IsRefusedOnTheLine) { EXPECT_EQ(error_at(line), EACCES); }

TEST_P(Making, IsRefusedWithoutPower) {
  camera.host().power_off();
  EXPECT_EQ(error_at(iris_record), EIO);
}

TEST_P(Making, HappensElsewhere) {
  make_file(folder.path() / "from");
  EXPECT_EQ(error_at(elsewhere.c_str()), 0);
  EXPECT_TRUE(fs::exists(elsewhere));
  EXPECT_EQ(error_at(elsewhere.c_str()), EEXIST);
}

INSTANTIATE_TEST_SUITE_P(Calls, Making, testing::ValuesIn(every_making), name_of);

const NodeCall every_change[] = {
    {"chmod", [](const char* path) -> long { return chmod(path, 0600); }},
    {"lchmod", [](const char* path) -> long { return lchmod(path, 0600); }},
    {"fchmodat", [](const char* path) -> long { return fchmodat(-1, path, 0600, 0); }},
    {"chown", [](const char* path) -> long { return chown(path, geteuid(), getegid()); }},
    {"lchown", [](const char* path) -> long { return lchown(path, geteuid(), getegid()); }},
    {"fchownat",
     [](const char* path) -> long { return fchownat(-1, path, geteuid(), getegid(), 0); }},
    {"utime", [](const char* path) -> long { return utime(path, &plain_times); }},
    {"utimes", [](const char* path) -> long { return utimes(path, times); }},
    {"lutimes", [](const char* path) -> long { return lutimes(path, times); }},
    {"futimesat", [](const char* path) -> long { return futimesat(AT_FDCWD, path, times); }},
    {"utimensat", [](const char* path) -> long { return utimensat(-1, path, exact_times, 0); }},
};

class Change : public EveryNodeCall {};

TEST_P(Change, OfADeviceIsRefused) {
  EXPECT_EQ(error_at(head), EPERM);
  EXPECT_EQ(error_at(line), EACCES);
  add("i2c missing");
  EXPECT_EQ(error_at(head), ENOENT);
}

TEST_P(Change, OfAFileHappens) {
  struct stat after = {};
  EXPECT_EQ(error_at(iris_record), 0);
  ASSERT_EQ(stat(iris_record, &after), 0);
  const bool of_times = std::string(GetParam().name).find("utime") != std::string::npos;
  EXPECT_EQ(after.st_mtim.tv_sec == 1, of_times);
  EXPECT_EQ(error_at(no_record), ENOENT);
}

TEST_P(Change, HappensElsewhere) {
  make_file(elsewhere);
  EXPECT_EQ(error_at(elsewhere.c_str()), 0);
  EXPECT_EQ(error_at((elsewhere + "/below").c_str()), ENOTDIR);
}

INSTANTIATE_TEST_SUITE_P(Calls, Change, testing::ValuesIn(every_change), name_of);

TEST(Node, KeepsTheModeThatItIsGiven) {
  InstalledCamera camera;
  struct stat status = {};
  for (const mode_t mode : {0400U, 0640U}) {
    EXPECT_EQ(chmod(iris_record, mode), 0);
    ASSERT_EQ(stat(iris_record, &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, mode);
  }
}

TEST(Node, IsNoFolder) {
  InstalledCamera camera;
  EXPECT_EQ(rmdir(head), -1);
  EXPECT_EQ(errno, EPERM);
  EXPECT_EQ(rmdir(iris_record), -1);
  EXPECT_EQ(errno, ENOTDIR);
}

char buffer[PATH_MAX];

const NodeCall every_reading[] = {
    {"readlink", [](const char* path) -> long { return readlink(path, buffer, 64); }},
    {"readlinkat", [](const char* path) -> long { return readlinkat(-1, path, buffer, 64); }},
    {"readlink_chk", [](const char* path) -> long { return __readlink_chk(path, buffer, 64, 64); }},
    {"readlinkat_chk",
     [](const char* path) -> long { return __readlinkat_chk(-1, path, buffer, 64, 64); }},
};

class LinkReading : public EveryNodeCall {};

TEST_P(LinkReading, FindsNoLinkInTheCamera) {
  EXPECT_EQ(error_at(head), EINVAL);
  EXPECT_EQ(error_at(iris_record), EINVAL);
  EXPECT_EQ(error_at(no_record), ENOENT);
  EXPECT_EQ(error_at(line), EACCES);
}

TEST_P(LinkReading, FindsOneElsewhere) {
  fs::create_symlink("there", elsewhere);
  EXPECT_EQ(GetParam().call(elsewhere.c_str()), 5);
}

INSTANTIATE_TEST_SUITE_P(Calls, LinkReading, testing::ValuesIn(every_reading), name_of);

long length_of(const char* resolved) {
  return resolved != nullptr ? static_cast<long>(std::string(resolved).size()) : -1;
}
long length_of_own(char* resolved) {
  const long length = length_of(resolved);
  free(resolved);
  return length;
}

const NodeCall every_resolution[] = {
    {"realpath", [](const char* path) { return length_of(realpath(path, buffer)); }},
    {"realpath_of_its_own",
     [](const char* path) { return length_of_own(realpath(path, nullptr)); }},
    {"realpath_chk",
     [](const char* path) { return length_of(__realpath_chk(path, buffer, PATH_MAX)); }},
    {"canonicalize_file_name",
     [](const char* path) { return length_of_own(canonicalize_file_name(path)); }},
};

class Resolution : public EveryNodeCall {};

TEST_P(Resolution, FindsWhatTheCameraHas) {
  EXPECT_EQ(GetParam().call("/dev/../dev/./i2c-2"), 10);
  EXPECT_EQ(GetParam().call(iris_record), 24);
  EXPECT_EQ(GetParam().call("/proc/self/.."), 5);
}

TEST_P(Resolution, DoesNotFindWhatItHasNot) {
  EXPECT_EQ(error_at(no_record), ENOENT);
  EXPECT_EQ(error_at(line), EACCES);
  EXPECT_EQ(error_at(elsewhere.c_str()), ENOENT);
  add("i2c missing");
  EXPECT_EQ(error_at(head), ENOENT);
}

INSTANTIATE_TEST_SUITE_P(Calls, Resolution, testing::ValuesIn(every_resolution), name_of);

TEST(Node, HasNoSecondName) {
  const TestFolder folder;
  const InstalledCamera camera;
  const std::string other = folder.path() / "other";
  for (const char* const path : {head, iris_record}) {
    EXPECT_EQ(link(path, other.c_str()), -1);
    EXPECT_EQ(errno, EPERM) << path;
    EXPECT_EQ(linkat(-1, path, -1, other.c_str(), 0), -1);
    EXPECT_EQ(errno, EPERM) << path;
    EXPECT_EQ(symlink(path, other.c_str()), -1);
    EXPECT_EQ(errno, EPERM) << path;
    EXPECT_EQ(symlinkat(path, -1, other.c_str()), -1);
    EXPECT_EQ(errno, EPERM) << path;
  }
  EXPECT_FALSE(fs::exists(fs::symlink_status(other)));
  EXPECT_EQ(chdir("/dev"), 0);
  EXPECT_EQ(symlink("i2c-2", other.c_str()), 0) << "leads to what lies beside it";
}

TEST(Node, HasNoAttributesThatAreNotItsOwn) {
  InstalledCamera camera;
  EXPECT_EQ(setxattr(head, "user.kelvo", "1", 1, 0), -1);
  EXPECT_EQ(errno, EPERM);
  EXPECT_EQ(lsetxattr(head, "user.kelvo", "1", 1, 0), -1);
  EXPECT_EQ(errno, EPERM);
  EXPECT_EQ(removexattr(head, "user.kelvo"), -1);
  EXPECT_EQ(errno, EPERM);
  EXPECT_EQ(lremovexattr(head, "user.kelvo"), -1);
  EXPECT_EQ(errno, EPERM);
  for (const char* const path : {head, iris_record}) {
    EXPECT_EQ(getxattr(path, "user.kelvo", buffer, 64), -1);
    EXPECT_TRUE(errno == ENODATA || errno == EPERM || errno == ENOTSUP) << errno;
    EXPECT_EQ(lgetxattr(path, "user.kelvo", buffer, 64), -1);
    EXPECT_TRUE(errno == ENODATA || errno == EPERM || errno == ENOTSUP) << errno;
  }
}

}  // namespace
