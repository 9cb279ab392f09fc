// What a program is told that asks for a path of the camera instead of opening it, and what it cannot do there.
#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <limits.h>
#include <stdio.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/uio.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <ostream>
#include <string>
#include <vector>

#include "sim/fault/parse.h"
#include "sim/host/installed_camera.h"

extern "C" {
// What programs call that were built for an older C library.
int __xstat(int version, const char* path, struct stat* result) noexcept;
int __xstat64(int version, const char* path, struct stat64* result) noexcept;
int __lxstat(int version, const char* path, struct stat* result) noexcept;
int __lxstat64(int version, const char* path, struct stat64* result) noexcept;
int __fxstatat(int version, int folder, const char* path, struct stat* result, int flags) noexcept;
int __fxstatat64(int version, int folder, const char* path, struct stat64* result,
                 int flags) noexcept;
}

namespace {

using kelvo::test::InstalledCamera;

constexpr char lens[] = "/dev/spi_renesas";
constexpr char record[] = "/bin/DC_S_Cali_T5391.dat";

struct stat status;
struct stat64 status64;
struct statx more;

struct statfs file_system;
struct statfs64 file_system64;
struct statvfs volume;
struct statvfs64 volume64;
const int watch = inotify_init();

struct Look {
  const char* name;
  int (*look)(const char* path);
};
void PrintTo(const Look& look, std::ostream* stream) { *stream << look.name; }

const Look every_look[] = {
    {"access", [](const char* path) { return access(path, F_OK); }},
    {"eaccess", [](const char* path) { return eaccess(path, F_OK); }},
    {"euidaccess", [](const char* path) { return euidaccess(path, F_OK); }},
    {"faccessat", [](const char* path) { return faccessat(-1, path, R_OK, 0); }},
    {"stat", [](const char* path) { return stat(path, &status); }},
    {"stat64", [](const char* path) { return stat64(path, &status64); }},
    {"lstat", [](const char* path) { return lstat(path, &status); }},
    {"lstat64", [](const char* path) { return lstat64(path, &status64); }},
    {"fstatat", [](const char* path) { return fstatat(-1, path, &status, 0); }},
    {"fstatat64", [](const char* path) { return fstatat64(-1, path, &status64, 0); }},
    {"statx", [](const char* path) { return statx(-1, path, 0, STATX_TYPE, &more); }},
    {"xstat", [](const char* path) { return __xstat(1, path, &status); }},
    {"xstat64", [](const char* path) { return __xstat64(1, path, &status64); }},
    {"lxstat", [](const char* path) { return __lxstat(1, path, &status); }},
    {"lxstat64", [](const char* path) { return __lxstat64(1, path, &status64); }},
    {"fxstatat", [](const char* path) { return __fxstatat(1, -1, path, &status, 0); }},
    {"fxstatat64", [](const char* path) { return __fxstatat64(1, -1, path, &status64, 0); }},
    {"statfs", [](const char* path) { return statfs(path, &file_system); }},
    {"statfs64", [](const char* path) { return statfs64(path, &file_system64); }},
    {"statvfs", [](const char* path) { return statvfs(path, &volume); }},
    {"statvfs64", [](const char* path) { return statvfs64(path, &volume64); }},
    {"pathconf", [](const char* path) { return pathconf(path, _PC_NAME_MAX) > 0 ? 0 : -1; }},
    {"listxattr", [](const char* path) { return listxattr(path, nullptr, 0) >= 0 ? 0 : -1; }},
    {"llistxattr", [](const char* path) { return llistxattr(path, nullptr, 0) >= 0 ? 0 : -1; }},
    {"inotify_add_watch",
     [](const char* path) { return inotify_add_watch(watch, path, IN_OPEN) >= 0 ? 0 : -1; }},
};

class LookAtAPath : public testing::TestWithParam<Look> {
 protected:
  /// 0, or the error number.
  static int error_at(const char* path) {
    errno = 0;
    return GetParam().look(path) == 0 ? 0 : errno;
  }

  std::uint32_t add(const char* text) {
    const kelvo::sim::fault::ParsedFault parsed = kelvo::sim::fault::parse(text);
    EXPECT_EQ(parsed.error, "");
    return camera.host().add(parsed.fault).value_or(0);
  }

  InstalledCamera camera;
};

TEST_P(LookAtAPath, FindsWhatIsThere) {
  EXPECT_EQ(error_at(lens), 0);
  EXPECT_EQ(error_at(record), 0);
  EXPECT_EQ(error_at("/bin/DC_S_Cali.dat"), ENOENT) << "nobody has written it";
}

TEST_P(LookAtAPath, FindsNoDeviceThatIsMissing) {
  const std::uint32_t fault = add("spi missing");
  EXPECT_EQ(error_at(lens), ENOENT);
  EXPECT_EQ(open(lens, O_RDWR), -1);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(error_at("/dev/spi_pt5111"), 0) << "another device";
  EXPECT_EQ(error_at("/dev/i2c-2"), 0) << "another device";
  EXPECT_TRUE(camera.host().remove_fault(fault));
  EXPECT_EQ(error_at(lens), 0);
  const int device = open(lens, O_RDWR);
  EXPECT_GE(device, 0);
  close(device);
}

TEST_P(LookAtAPath, FindsNoFileThatIsMissing) {
  const std::uint32_t fault = add("file path=DC_S_Cali_T5391.dat missing");
  EXPECT_EQ(error_at(record), ENOENT);
  EXPECT_TRUE(camera.host().remove_fault(fault));
  EXPECT_EQ(error_at(record), 0);
}

TEST_P(LookAtAPath, FindsWhatAnyOtherFaultIsOf) {
  add("spi error=EIO frame=open");
  add("i2c nak");
  add("file unreadable");
  EXPECT_EQ(error_at(lens), 0);
  EXPECT_EQ(error_at("/dev/i2c-2"), 0);
  EXPECT_EQ(error_at(record), 0);
}

TEST_P(LookAtAPath, IsNotCountedAsAnOpening) {
  add("spi missing nth=2");
  for (int i = 0; i < 3; ++i) EXPECT_EQ(error_at(lens), 0);
  close(open(lens, O_RDWR));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(error_at(lens), ENOENT) << "the next opening would fail";
  EXPECT_EQ(camera.host().faults().listed()[0].matches, 1U);
  EXPECT_EQ(open(lens, O_RDWR), -1);
  EXPECT_EQ(error_at(lens), 0);
}

INSTANTIATE_TEST_SUITE_P(Calls, LookAtAPath, testing::ValuesIn(every_look),
                         [](const auto& instance) { return std::string(instance.param.name); });

template <typename Call>
int error_number_of(Call call) {
  errno = 0;
  return call() == 0 ? 0 : errno;
}

/// As somebody who may not do it to the machine's own nodes either, and is told so in another way.
class Nobody {
 public:
  Nobody() { EXPECT_EQ(seteuid(geteuid() == 0 ? 65534 : geteuid()), 0); }
  ~Nobody() { EXPECT_EQ(seteuid(getuid()), 0); }
  Nobody(const Nobody&) = delete;
  Nobody& operator=(const Nobody&) = delete;
};

TEST(DeviceNode, CannotBeRemovedRenamedOrChanged) {
  InstalledCamera camera;
  const Nobody nobody;
  EXPECT_EQ(error_number_of([] { return unlink(lens); }), EPERM);
  EXPECT_EQ(error_number_of([] { return unlinkat(-1, lens, 0); }), EPERM);
  EXPECT_EQ(error_number_of([] { return remove(lens); }), EPERM);
  EXPECT_EQ(error_number_of([] { return truncate(lens, 0); }), EPERM);
  EXPECT_EQ(error_number_of([] { return rename(lens, "/tmp/kelvo-no-such"); }), EPERM);
  EXPECT_EQ(error_number_of([] { return rename("/tmp/kelvo-no-such", lens); }), EPERM);
  EXPECT_EQ(error_number_of([] { return access(lens, R_OK | W_OK); }), 0);
}

TEST(DeviceNode, TakesNoBytesByAnyCall) {
  InstalledCamera camera;
  const int device = open(lens, O_RDWR);
  char bytes[] = "bytes";
  const iovec vector{bytes, 5};
  EXPECT_EQ(writev(device, &vector, 1), -1);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(pread(device, bytes, 5, 0), -1);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(ftruncate(device, 5), -1);
  const std::vector<std::string> violations = camera.violations();
  ASSERT_EQ(violations.size(), 2U);
  EXPECT_TRUE(violations[0].ends_with("writev() is refused: the driver does not serve it"));
  EXPECT_TRUE(violations[1].ends_with("pread() is refused: the driver does not serve it"));
  FILE* const stream = fdopen(device, "w");
  ASSERT_NE(stream, nullptr);
  fputs(bytes, stream);
  EXPECT_EQ(fflush(stream), EOF);
  fclose(stream);
}

TEST(ResetLine, IsNotReachedByItsFiles) {
  InstalledCamera camera;
  for (const char* const path : {"/sys/class/gpio/export", "/sys/class/gpio/gpio33/direction",
                                 "/sys/class/gpio/gpio33/value"}) {
    EXPECT_EQ(error_number_of([path] { return access(path, F_OK); }), EACCES) << path;
    EXPECT_EQ(open(path, O_WRONLY), -1) << path;
    EXPECT_EQ(errno, EACCES) << path;
  }
  EXPECT_EQ(camera.state().violations().total(), 3U);
}

TEST(CalibrationFile, IsRenamedByEveryCall) {
  InstalledCamera camera;
  static constexpr char copy[] = "/bin/DC_S_Cali.dat";
  EXPECT_EQ(error_number_of([] { return renameat(-1, record, -1, copy); }), 0);
  EXPECT_EQ(access(record, F_OK), -1);
  EXPECT_EQ(error_number_of([] { return renameat2(-1, copy, -1, record, RENAME_NOREPLACE); }), 0);
  EXPECT_EQ(access(copy, F_OK), -1);
  EXPECT_EQ(access(record, F_OK), 0);
}

}  // namespace
