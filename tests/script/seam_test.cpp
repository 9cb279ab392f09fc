// What does not belong to the camera goes to the real libc, whichever host stands in the kernel's place.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/ioctl.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "script/device_host.h"
#include "script/installed_host.h"
#include "script/script.h"
#include "sim/seam/host.h"
#include "sim/seam/real.h"
#include "wire/paths.h"
#include "wire/spi_device.h"

namespace {

using kelvo::sim::Answer;
using kelvo::sim::Device;
using kelvo::sim::Host;
using kelvo::sim::SleepCall;
using kelvo::test::Bytes;
using kelvo::test::Installed;
using kelvo::test::Script;
using kelvo::test::send_byte;

class TemporaryFile {
 public:
  TemporaryFile() {
    path_ = (std::filesystem::temp_directory_path() / "kelvo-seam-XXXXXX").string();
    kelvo::sim::real().close(mkstemp(path_.data()));
  }
  ~TemporaryFile() { std::filesystem::remove(path_); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  const char* path() const { return path_.c_str(); }

 private:
  std::string path_;
};

TEST(Seam, LetsOtherDescriptorsThrough) {
  const TemporaryFile file;
  Script script;
  const int descriptor = open(file.path(), O_RDWR);
  ASSERT_GE(descriptor, 0);
  EXPECT_EQ(write(descriptor, "abc", 3), 3);
  EXPECT_EQ(lseek(descriptor, 1, SEEK_SET), 1);
  int left = 0;
  EXPECT_EQ(ioctl(descriptor, FIONREAD, &left), 0);
  EXPECT_EQ(left, 2);
  EXPECT_EQ(close(descriptor), 0);
  EXPECT_EQ(close(descriptor), -1);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(script.transcript(), "");
}

TEST(Seam, LetsOtherRequestsOnACameraDeviceThrough) {
  Script script;
  const int lens = open("/dev/spi_renesas", O_RDWR);
  int left = 0;
  EXPECT_EQ(ioctl(lens, FIONREAD, &left), -1);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\n");
}

TEST(Seam, ForgetsADeviceThatWasClosed) {
  const TemporaryFile file;
  Script script;
  const int lens = open("/dev/spi_renesas", O_RDWR);
  EXPECT_EQ(close(lens), 0);
  const int other = open(file.path(), O_RDWR);
  ASSERT_EQ(other, lens) << "the lowest free number was expected";
  EXPECT_EQ(send_byte(other), -1);
  EXPECT_EQ(errno, ENOTTY);
  close(other);
  EXPECT_EQ(script.transcript(), "open /dev/spi_renesas\nclose /dev/spi_renesas\nfd " +
                                     std::to_string(other) + ": 05 -> ENOTTY\n");
}

TEST(Seam, KeepsTwoDescriptorsOfOneDeviceApart) {
  Script script;
  const int first = open("/dev/spi_renesas", O_RDWR);
  const int second = open("/dev/spi_renesas", O_RDWR);
  ASSERT_NE(first, second);
  close(first);
  EXPECT_EQ(send_byte(second), 0);
  close(second);
}

TEST(Seam, LetsOtherFilesThrough) {
  const TemporaryFile file;
  Script script;
  std::FILE* const output = std::fopen(file.path(), "w");
  ASSERT_NE(output, nullptr);
  std::fputs("abc", output);
  EXPECT_EQ(std::fclose(output), 0);
  EXPECT_EQ(std::filesystem::file_size(file.path()), 3U);
  EXPECT_EQ(std::fopen("/no/such/file", "r"), nullptr);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(script.transcript(), "");
}

TEST(Seam, LetsOtherShellCommandsThrough) {
  Script script;
  const int status = std::system("exit 3");
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 3);
  EXPECT_NE(std::system(nullptr), 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(Seam, LetsKeysOfOtherFilesThrough) {
  Script script;
  EXPECT_EQ(ftok("/", 1), kelvo::sim::real().ftok("/", 1));
  EXPECT_EQ(ftok("/no/such/file", 1), -1);
  EXPECT_EQ(script.transcript(), "");
}

TEST(Seam, LetsEverythingThroughToAHostThatAnswersNothing) {
  const TemporaryFile file;
  Host kernel;
  const Installed installed(kernel);
  EXPECT_EQ(usleep(0), 0);
  EXPECT_EQ(sleep(0), 0U);
  const timespec no_time = {0, 0};
  EXPECT_EQ(nanosleep(&no_time, nullptr), 0);
  EXPECT_EQ(clock_nanosleep(CLOCK_MONOTONIC, 0, &no_time, nullptr), 0);
  EXPECT_EQ(ftok(kelvo::wire::lock_key_path, 0),
            kelvo::sim::real().ftok(kelvo::wire::lock_key_path, 0));
  EXPECT_EQ(send_byte(-1), -1);
  // The user-mode emulator does not know the request and says so.
  EXPECT_TRUE(errno == EBADF || errno == ENOSYS) << errno;
  EXPECT_EQ(fsync(-1), -1);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(rename("/dev/null/nothing", "/dev/null/other"), -1);
  EXPECT_EQ(errno, ENOTDIR);
  EXPECT_EQ(open("/dev/spi_renesas/nothing", O_RDWR), -1);
  const int set = semget(IPC_PRIVATE, 1, 0600);
  ASSERT_GE(set, 0);
  EXPECT_EQ(semctl(set, 0, SETVAL, 2), 0);
  sembuf operation = {0, -1, 0};
  EXPECT_EQ(semop(set, &operation, 1), 0);
  EXPECT_EQ(semctl(set, 0, GETVAL), 1);
  EXPECT_EQ(semctl(set, 0, IPC_RMID), 0);
}

TEST(Seam, TurnsErrorNumbersIntoResultsOfLibc) {
  Script script;
  script.fail(kelvo::test::Call::open, 1, 1, ENXIO);
  EXPECT_EQ(open("/dev/i2c-2", O_RDWR), -1);
  EXPECT_EQ(errno, ENXIO);
  script.fail(kelvo::test::Call::close, 1, 1, EINTR);
  const int link = open("/dev/i2c-2", O_RDWR);
  EXPECT_EQ(close(link), -1);
  EXPECT_EQ(errno, EINTR);
  EXPECT_EQ(kelvo::sim::real().close(link), -1) << "the descriptor is gone all the same";
  script.fail(kelvo::test::Call::ftok, 1, 1, ENOENT);
  EXPECT_EQ(ftok(kelvo::wire::lock_key_path, 0), -1);
}

TEST(Seam, RefusesI2cRequestsBeyondTheKernelsBounds) {
  Script script;
  const int link = open("/dev/i2c-2", O_RDWR);
  std::vector<std::uint8_t> bytes(8193);
  std::vector<i2c_msg> messages(I2C_RDWR_IOCTL_MAX_MSGS + 1,
                                i2c_msg{40, I2C_M_RD, 1, bytes.data()});
  i2c_rdwr_ioctl_data request = {messages.data(), I2C_RDWR_IOCTL_MAX_MSGS + 1};
  EXPECT_EQ(ioctl(link, I2C_RDWR, &request), -1);
  EXPECT_EQ(errno, EINVAL);
  messages[0].len = 8193;
  request.nmsgs = 1;
  EXPECT_EQ(ioctl(link, I2C_RDWR, &request), -1);
  EXPECT_EQ(errno, EINVAL);
  messages[0].len = 8192;
  EXPECT_EQ(ioctl(link, I2C_RDWR, &request), 1);
  EXPECT_EQ(script.count(kelvo::test::Call::i2c), 1);
}

/// Writes down the sleeps and answers all of them alike.
class AnsweringHost final : public Host {
 public:
  Answer delay(SleepCall call, std::chrono::nanoseconds time) override {
    sleeps.emplace_back(call, time);
    return answer;
  }
  std::vector<std::pair<SleepCall, std::chrono::nanoseconds>> sleeps;
  int answer = 0;
};

TEST(Seam, CountsAnAbsoluteSleepFromNow) {
  AnsweringHost host;
  const Installed installed(host);
  timespec wake_up = {};
  clock_gettime(CLOCK_MONOTONIC, &wake_up);
  wake_up.tv_sec += 1000;
  clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &wake_up, nullptr);
  const timespec long_ago = {0, 0};
  clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &long_ago, nullptr);
  ASSERT_EQ(host.sleeps.size(), 2U);
  EXPECT_LE(host.sleeps[0].second, std::chrono::seconds(1000));
  EXPECT_GT(host.sleeps[0].second, std::chrono::seconds(900));
  EXPECT_EQ(host.sleeps[1].second, std::chrono::seconds(0));
}

TEST(Seam, TellsOfABrokenSleepAsEachCallDoes) {
  AnsweringHost host;
  const Installed installed(host);
  host.answer = -EINTR;
  const timespec time = {2, 3};
  EXPECT_EQ(usleep(4), -1);
  EXPECT_EQ(errno, EINTR);
  EXPECT_EQ(sleep(5), 5U);
  EXPECT_EQ(nanosleep(&time, nullptr), -1);
  EXPECT_EQ(clock_nanosleep(CLOCK_MONOTONIC, 0, &time, nullptr), EINTR);
}

}  // namespace
