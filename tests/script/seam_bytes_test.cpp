// A simulated device gives and takes no bytes, by whatever call; other files do.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/sendfile.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <string>
#include <vector>

#include "script/device_host.h"
#include "script/installed_host.h"

extern "C" {
// What hardened programs call.
ssize_t __read_chk(int descriptor, void* buffer, size_t length, size_t room);
ssize_t __pread_chk(int descriptor, void* buffer, size_t length, off_t place, size_t room);
ssize_t __pread64_chk(int descriptor, void* buffer, size_t length, off64_t place, size_t room);
}

namespace {

using kelvo::test::DeviceHost;
using kelvo::test::Installed;
using kelvo::test::lens_device;
using Lines = std::vector<std::string>;

std::array<char, 4> bytes{'a', 'b', 'c', 'd'};
const iovec part{bytes.data(), bytes.size()};

/// A file of these bytes, to be copied from or to.
int file_of_bytes() {
  std::FILE* const file = std::tmpfile();
  if (file == nullptr) std::abort();
  const int descriptor = dup(fileno(file));
  std::fclose(file);
  if (pwrite(descriptor, "abcd", 4, 0) != 4) std::abort();
  return descriptor;
}

/// One end of a pipe that has these bytes.
int pipe_end(int which) {
  int ends[2] = {};
  if (pipe(ends) != 0 || write(ends[1], "abcd", 4) != 4) std::abort();
  return ends[which];
}

struct Moving {
  const char* name;
  const char* told;  // to the host, when it is refused
  ssize_t (*move)(int descriptor);
};
void PrintTo(const Moving& moving, std::ostream* stream) { *stream << moving.name; }

const Moving every_moving[] = {
    {"read", "read()", [](int d) { return read(d, bytes.data(), 4); }},
    {"read_chk", "read()", [](int d) { return __read_chk(d, bytes.data(), 4, 4); }},
    {"pread", "pread()", [](int d) { return pread(d, bytes.data(), 4, 0); }},
    {"pread64", "pread()", [](int d) { return pread64(d, bytes.data(), 4, 0); }},
    {"pread_chk", "pread()", [](int d) { return __pread_chk(d, bytes.data(), 4, 0, 4); }},
    {"pread64_chk", "pread()", [](int d) { return __pread64_chk(d, bytes.data(), 4, 0, 4); }},
    {"readv", "readv()", [](int d) { return readv(d, &part, 1); }},
    {"preadv", "preadv()", [](int d) { return preadv(d, &part, 1, 0); }},
    {"preadv64", "preadv()", [](int d) { return preadv64(d, &part, 1, 0); }},
    {"preadv2", "preadv2()", [](int d) { return preadv2(d, &part, 1, 0, 0); }},
    {"preadv64v2", "preadv2()", [](int d) { return preadv64v2(d, &part, 1, 0, 0); }},
    {"write", "write()", [](int d) { return write(d, bytes.data(), 4); }},
    {"pwrite", "pwrite()", [](int d) { return pwrite(d, bytes.data(), 4, 0); }},
    {"pwrite64", "pwrite()", [](int d) { return pwrite64(d, bytes.data(), 4, 0); }},
    {"writev", "writev()", [](int d) { return writev(d, &part, 1); }},
    {"pwritev", "pwritev()", [](int d) { return pwritev(d, &part, 1, 0); }},
    {"pwritev64", "pwritev()", [](int d) { return pwritev64(d, &part, 1, 0); }},
    {"pwritev2", "pwritev2()", [](int d) { return pwritev2(d, &part, 1, 0, 0); }},
    {"pwritev64v2", "pwritev2()", [](int d) { return pwritev64v2(d, &part, 1, 0, 0); }},
    {"sendfile_from", "sendfile()", [](int d) { return sendfile(file_of_bytes(), d, nullptr, 4); }},
    {"sendfile_to", "sendfile()", [](int d) { return sendfile(d, file_of_bytes(), nullptr, 4); }},
    {"sendfile64", "sendfile()", [](int d) { return sendfile64(d, file_of_bytes(), nullptr, 4); }},
    {"splice_from", "splice()",
     [](int d) { return splice(d, nullptr, pipe_end(1), nullptr, 4, 0); }},
    {"splice_to", "splice()", [](int d) { return splice(pipe_end(0), nullptr, d, nullptr, 4, 0); }},
    {"copy_file_range_from", "copy_file_range()",
     [](int d) { return copy_file_range(d, nullptr, file_of_bytes(), nullptr, 4, 0); }},
    {"copy_file_range_to", "copy_file_range()",
     [](int d) { return copy_file_range(file_of_bytes(), nullptr, d, nullptr, 4, 0); }},
};

class SeamMoving : public testing::TestWithParam<Moving> {
 protected:
  DeviceHost host;
  Installed installed{host};
};

TEST_P(SeamMoving, OfADeviceIsRefusedAndTold) {
  const int device = open(lens_device, O_RDWR);
  EXPECT_EQ(GetParam().move(device), -1);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(host.seen, (Lines{"open 1", std::string("refused ") + GetParam().told + " of 1"}));
}

TEST_P(SeamMoving, OfAnotherFileIsNot) {
  const int file = file_of_bytes();
  EXPECT_EQ(GetParam().move(file), 4) << errno;
  EXPECT_EQ(GetParam().move(-1), -1);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(host.seen, Lines());
}

INSTANTIATE_TEST_SUITE_P(Calls, SeamMoving, testing::ValuesIn(every_moving),
                         [](const auto& instance) { return std::string(instance.param.name); });

class SeamStream : public testing::TestWithParam<const char*> {
 protected:
  /// The error, and not the end of a file that has nothing in it.
  static void expect_no_bytes(std::FILE* stream) {
    ASSERT_NE(stream, nullptr);
    const bool reads = GetParam()[0] == 'r';
    if (reads) {
      EXPECT_EQ(std::fread(bytes.data(), 1, 4, stream), 0U);
    } else {
      std::fputs("abcd", stream);
      EXPECT_EQ(std::fflush(stream), EOF);
    }
    EXPECT_TRUE(std::ferror(stream));
    EXPECT_FALSE(std::feof(stream));
    std::fclose(stream);
  }

  DeviceHost host;
  Installed installed{host};
};

TEST_P(SeamStream, OfADeviceFails) { expect_no_bytes(std::fopen(lens_device, GetParam())); }

TEST_P(SeamStream, OfAnOpenDeviceFails) {
  expect_no_bytes(fdopen(open(lens_device, O_RDWR), GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Modes, SeamStream, testing::Values("r", "r+", "w", "w+", "a"),
                         [](const auto& instance) {
                           const std::string mode = instance.param;
                           return mode.size() == 1 ? mode : mode.substr(0, 1) + "_both";
                         });

/// Without the table: as in a program that was started with it, or by a call that nobody sees.
class SeamPlaceholder : public testing::Test {
 protected:
  DeviceHost host;
  Installed installed{host};
};

TEST_F(SeamPlaceholder, GivesAndTakesNoBytesByItself) {
  const int device = open(lens_device, O_RDWR);
  EXPECT_EQ(syscall(SYS_read, device, bytes.data(), 4), -1);
  EXPECT_EQ(syscall(SYS_write, device, bytes.data(), 4), -1);
  const auto unseen = static_cast<int>(syscall(SYS_dup, device));
  EXPECT_EQ(read(unseen, bytes.data(), 4), -1);
  EXPECT_EQ(write(unseen, bytes.data(), 4), -1);
  EXPECT_EQ(host.seen, Lines{"open 1"});
}

TEST_F(SeamPlaceholder, GivesNoBytesFromAnywhere) {
  // The user-mode emulator does not know this access; there a device is empty from its beginning.
  const int requests_alone = open("/dev/null", O_ACCMODE);
  const bool emulated = (fcntl(requests_alone, F_GETFL) & O_ACCMODE) != O_ACCMODE;
  const int device = open(lens_device, O_RDWR);
  EXPECT_EQ(syscall(SYS_read, device, bytes.data(), 4), -1);
  EXPECT_EQ(errno, emulated ? EINVAL : EBADF);
  EXPECT_EQ(syscall(SYS_pread64, device, bytes.data(), 4, 0), emulated ? 0 : -1);
  std::FILE* const stream = fdopen(device, "r");
  if (!emulated) std::rewind(stream);
  EXPECT_EQ(std::fgetc(stream), EOF);
  EXPECT_TRUE(std::ferror(stream));
}

TEST_F(SeamPlaceholder, HasTheLowestNumberAndTheAccessOfADevice) {
  const int lowest = dup(0);
  close(lowest);
  for (const int close_on_exec : {0, O_CLOEXEC}) {
    const int device = open(lens_device, O_RDWR | close_on_exec);
    EXPECT_EQ(device, lowest);
    EXPECT_EQ(fcntl(device, F_GETFL) & O_ACCMODE, O_RDWR);
    EXPECT_EQ(fcntl(device, F_GETFD), close_on_exec != 0 ? FD_CLOEXEC : 0);
    close(device);
  }
  const int next = dup(0);
  EXPECT_EQ(next, lowest) << "nothing is left open";
}

}  // namespace
