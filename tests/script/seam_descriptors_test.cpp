// A descriptor of a simulated device stays one however it is copied, and nothing but the driver's requests
// goes through it. What the host keeps open for itself no program can close.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/close_range.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "script/device_host.h"
#include "script/installed_host.h"
#include "sim/seam/real.h"

extern "C" ssize_t __read_chk(int descriptor, void* buffer, size_t length, size_t room);

namespace {

using kelvo::sim::real;
using kelvo::test::DeviceHost;
using kelvo::test::Installed;
using kelvo::test::lens_device;
using kelvo::test::send_byte;
using Lines = std::vector<std::string>;

constexpr char link[] = "/dev/i2c-2";

bool is_open(int descriptor) { return real().fcntl(descriptor, F_GETFD) >= 0; }

struct Copy {
  const char* name;
  std::function<int(int descriptor)> copy;
};
void PrintTo(const Copy& copy, std::ostream* stream) { *stream << copy.name; }

const Copy every_copy[] = {
    {"dup", [](int descriptor) { return dup(descriptor); }},
    {"dup2", [](int descriptor) { return dup2(descriptor, 77); }},
    {"dup3", [](int descriptor) { return dup3(descriptor, 77, O_CLOEXEC); }},
    {"fcntl", [](int descriptor) { return fcntl(descriptor, F_DUPFD, 70); }},
    {"fcntl64", [](int descriptor) { return fcntl64(descriptor, F_DUPFD_CLOEXEC, 70); }},
    // Nobody sees this one: as with a descriptor that comes from another process.
    {"unseen", [](int descriptor) { return static_cast<int>(syscall(SYS_dup, descriptor)); }},
};

class SeamCopy : public testing::TestWithParam<Copy> {};

TEST_P(SeamCopy, IsTheSameDevice) {
  DeviceHost host;
  const Installed installed(host);
  const int first = open(lens_device, O_RDWR);
  const int second = GetParam().copy(first);
  ASSERT_NE(second, first);
  EXPECT_EQ(send_byte(second), 0);
  EXPECT_EQ(close(first), 0);
  EXPECT_EQ(send_byte(second), 0);
  EXPECT_EQ(close(second), 0);
  EXPECT_EQ(send_byte(second), -1);
  EXPECT_EQ(host.seen, (Lines{"open 1", "transfer 1", "close 1", "transfer 1", "close 1"}));
}

INSTANTIATE_TEST_SUITE_P(Calls, SeamCopy, testing::ValuesIn(every_copy),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(SeamDescriptors, AreForgottenWhenAnotherFileTakesTheirPlace) {
  DeviceHost host;
  const Installed installed(host);
  const int device = open(lens_device, O_RDWR);
  const int other = open("/dev/null", O_RDWR);
  ASSERT_EQ(dup2(other, device), device);
  EXPECT_EQ(send_byte(device), -1);
  EXPECT_TRUE(errno == ENOTTY || errno == ENOSYS) << errno << ": the emulator's own answer";
  EXPECT_EQ(write(device, "a", 1), 1);
  EXPECT_EQ(dup2(other, other), other);
  EXPECT_EQ(dup2(-1, other), -1);
  EXPECT_EQ(host.seen, (Lines{"open 1", "close 1"}));
}

TEST(SeamDescriptors, AreForgottenWithTheStreamThatHasThem) {
  DeviceHost host;
  const Installed installed(host);
  const int device = open(link, O_RDWR);
  std::FILE* const stream = fdopen(device, "r+");
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(std::fclose(stream), 0);
  EXPECT_EQ(open("/dev/null", O_RDWR), device);
  EXPECT_EQ(write(device, "a", 1), 1);
  EXPECT_EQ(host.seen, (Lines{"open 3", "close 3"}));
}

TEST(SeamDescriptors, AreNeitherReadNorWritten) {
  DeviceHost host;
  const Installed installed(host);
  const int device = open(lens_device, O_RDWR);
  std::array<char, 4> buffer{};
  EXPECT_EQ(read(device, buffer.data(), buffer.size()), -1);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(write(device, buffer.data(), buffer.size()), -1);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(__read_chk(device, buffer.data(), 2, buffer.size()), -1);
  EXPECT_EQ(host.seen, (Lines{"open 1", "refused read() of 1", "refused write() of 1",
                              "refused read() of 1"}));
}

TEST(SeamDescriptors, ServeNoOtherRequests) {
  DeviceHost host;
  const Installed installed(host);
  const int device = open(lens_device, O_RDWR);
  int number = 0;
  EXPECT_EQ(ioctl(device, FIONREAD, &number), -1);
  EXPECT_EQ(errno, ENOTTY);
  EXPECT_EQ(host.seen, (Lines{"open 1", "refused an ioctl() that the driver does not know of 1"}));
}

TEST(SeamDescriptors, OfOtherFilesTakeNoRequestsOfTheCamera) {
  DeviceHost host;
  const Installed installed(host);
  const int other = open("/dev/null", O_RDWR);
  EXPECT_EQ(send_byte(other), -1);
  EXPECT_TRUE(errno == ENOTTY || errno == ENOSYS) << errno << ": the emulator's own answer";
  EXPECT_EQ(host.seen, Lines());
}

TEST(SeamDescriptors, AreThereInAForkedProcess) {
  DeviceHost host;
  const Installed installed(host);
  const int device = open(lens_device, O_RDWR);
  const pid_t child = fork();
  if (child == 0) _exit(send_byte(device) == 0 && host.seen.back() == "transfer 1" ? 0 : 1);
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

/// A descriptor that the host keeps for itself, with one of the program's on either side.
class SeamOwn : public testing::Test {
 protected:
  SeamOwn() {
    for (int& descriptor : descriptors) descriptor = real().open("/dev/null", O_RDWR);
    host.own = descriptors[1];
  }

  void check_only_own_is_left() {
    EXPECT_FALSE(is_open(descriptors[0]));
    EXPECT_TRUE(is_open(descriptors[1]));
    EXPECT_FALSE(is_open(descriptors[2]));
  }

  DeviceHost host;
  Installed installed{host};
  std::array<int, 3> descriptors{};
};

TEST_F(SeamOwn, IsNotClosed) {
  for (const int descriptor : descriptors) {
    errno = 0;
    const bool own = descriptor == host.own;
    EXPECT_EQ(close(descriptor), own ? -1 : 0);
    EXPECT_EQ(errno, own ? EBADF : 0);
  }
  check_only_own_is_left();
}

TEST_F(SeamOwn, IsLeftOutOfARange) {
  EXPECT_EQ(close_range(static_cast<unsigned>(descriptors[0]), ~0U, 0), 0);
  check_only_own_is_left();
}

TEST_F(SeamOwn, IsLeftOutAtTheEndsOfARange) {
  const auto own = static_cast<unsigned>(descriptors[1]);
  EXPECT_EQ(close_range(own, own, 0), 0);
  EXPECT_TRUE(is_open(descriptors[0]));
  EXPECT_EQ(close_range(own - 1, own, 0), 0);
  EXPECT_EQ(close_range(own, own + 1, 0), 0);
  check_only_own_is_left();
}

TEST_F(SeamOwn, IsLeftOutOfAllThatFollow) {
  closefrom(descriptors[0]);
  check_only_own_is_left();
}

TEST_F(SeamOwn, IsNotReplaced) {
  EXPECT_EQ(dup2(descriptors[0], descriptors[1]), -1);
  EXPECT_EQ(errno, EBUSY);
  EXPECT_EQ(dup3(descriptors[0], descriptors[1], O_CLOEXEC), -1);
  EXPECT_EQ(errno, EBUSY);
}

TEST_F(SeamOwn, ARangeMayBeMarkedAndAWrongOneIsLeftToTheKernel) {
  const auto first = static_cast<unsigned>(descriptors[0]);
  EXPECT_EQ(close_range(first, ~0U, CLOSE_RANGE_CLOEXEC), 0);
  for (const int descriptor : descriptors) EXPECT_EQ(fcntl(descriptor, F_GETFD), FD_CLOEXEC);
  EXPECT_EQ(close_range(first, first - 1, 0), -1);
  EXPECT_EQ(errno, EINVAL);
}

TEST(SeamDescriptors, ARangeTakesDevicesAlong) {
  DeviceHost host;
  const Installed installed(host);
  const int device = open(lens_device, O_RDWR);
  EXPECT_EQ(close_range(static_cast<unsigned>(device), static_cast<unsigned>(device), 0), 0);
  EXPECT_EQ(open("/dev/null", O_RDWR), device);
  EXPECT_EQ(write(device, "a", 1), 1);
  EXPECT_EQ(host.seen, (Lines{"open 1", "close 1"}));
}

}  // namespace
