#include "sim/wrapper/recording_host.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <vector>

namespace {

using kelvo::sim::Device;
using kelvo::sim::RecordingHost;
using kelvo::sim::trace::Act;
using kelvo::sim::trace::Event;
using kelvo::sim::trace::Reader;
using kelvo::sim::trace::Recording;
using kelvo::sim::trace::Wire;

class InstalledRecorder : public testing::Test {
 protected:
  InstalledRecorder() {
    if (pipe(pipe_) != 0) std::abort();
    kelvo::sim::install(&host_);
  }
  ~InstalledRecorder() override {
    kelvo::sim::install(nullptr);
    close(pipe_[0]);
    close(pipe_[1]);
  }

  RecordingHost& host() { return host_; }
  /// A descriptor whose driver knows none of the requests.
  int descriptor() const { return pipe_[0]; }

  std::vector<Event> events() const {
    Reader reader(recording_->ring());
    std::vector<Event> all;
    for (Event event{}; reader.next(event);) all.push_back(event);
    return all;
  }

 private:
  std::unique_ptr<Recording> recording_ = Recording::make().recording;
  RecordingHost host_{*recording_};
  int pipe_[2]{};
};

/// As the kernel has it, or the user-mode emulator.
bool is_unknown_request(int result) { return result == -ENOTTY || result == -ENOSYS; }

TEST_F(InstalledRecorder, PassesTheKernelsRefusalOnAndRecordsIt) {
  std::uint8_t sent[7] = {0x3E, 0, 0, 0, 1, 0x3F, 0};
  std::uint8_t received[7] = {9, 9, 9, 9, 9, 9, 9};
  i2c_msg message{40, 0, 1, sent};
  EXPECT_TRUE(is_unknown_request(
      host().transfer(Device::spi_renesas, descriptor(), sent, received).value_or(0)));
  EXPECT_TRUE(
      is_unknown_request(host().set_speed(Device::spi_renesas, descriptor(), 250000).value_or(0)));
  EXPECT_TRUE(
      is_unknown_request(host().i2c(Device::i2c_2, descriptor(), {&message, 1}).value_or(0)));
  EXPECT_EQ(received[0], 9);
  const std::vector<Event> all = events();
  ASSERT_EQ(all.size(), 3u);
  for (const Event& event : all) EXPECT_TRUE(is_unknown_request(event.result)) << event.result;
  EXPECT_EQ(all[0].wire, Wire::lens);
  EXPECT_EQ(all[0].act, Act::transfer);
  EXPECT_EQ(all[0].sent[0], 0x3E);
  EXPECT_EQ(all[0].sent_length, 7u);
  EXPECT_EQ(all[0].received_length, 7u);
  EXPECT_EQ(all[0].received[0], 0);
  EXPECT_EQ(all[1].act, Act::speed);
  EXPECT_EQ(all[2].wire, Wire::head);
  EXPECT_EQ(all[2].slave, 40);
}

TEST_F(InstalledRecorder, HasTheTimeOfTheSteadyClock) {
  const auto now = [] { return std::chrono::steady_clock::now().time_since_epoch().count(); };
  const std::int64_t before = now();
  host().set_speed(Device::spi_pt5111, descriptor(), 1);
  const Event event = events().at(0);
  EXPECT_GE(event.time, before);
  EXPECT_LE(event.time, now());
  EXPECT_EQ(event.wire, Wire::pt5111);
}

TEST_F(InstalledRecorder, MeetsNullBuffersAsTheKernelDoes) {
  EXPECT_LT(*host().transfer(Device::spi_renesas, descriptor(),
                             {static_cast<const std::uint8_t*>(nullptr), 7}, {}),
            0);
  EXPECT_EQ(events().at(0).sent_length, 7u);
}

TEST_F(InstalledRecorder, LeavesForeignDescriptorsAlone) {
  std::uint8_t byte = 0;
  EXPECT_EQ(host().transfer(Device::none, descriptor(), {&byte, 1}, {&byte, 1}), std::nullopt);
  EXPECT_EQ(host().set_speed(Device::none, descriptor(), 1), std::nullopt);
  EXPECT_EQ(host().i2c(Device::none, descriptor(), {}), std::nullopt);
  EXPECT_TRUE(events().empty());
}

TEST_F(InstalledRecorder, HasWhatBecameOfOpening) {
  errno = 0;
  const int device = open("/dev/spi_renesas", O_RDWR);
  const int error = device < 0 ? -errno : 0;
  EXPECT_EQ(device < 0, errno != 0);
  if (device >= 0) close(device);
  const Event event = events().at(0);
  EXPECT_EQ(event.act, Act::open);
  EXPECT_EQ(event.wire, Wire::lens);
  EXPECT_EQ(event.result, error);
}

TEST_F(InstalledRecorder, RecordsNoOtherFile) {
  const int file = open("/dev/null", O_RDWR);
  EXPECT_GE(file, 0);
  close(file);
  EXPECT_EQ(open("/no/such/file", O_RDWR), -1);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_TRUE(events().empty());
}

TEST_F(InstalledRecorder, HasShellCommandsThatTouchTheLineAlone) {
  EXPECT_EQ(WEXITSTATUS(system("exit 3 # /sys/class/gpio")), 3);
  EXPECT_EQ(system("true"), 0);
  const std::vector<Event> all = events();
  ASSERT_EQ(all.size(), 1u);
  EXPECT_EQ(all[0].act, Act::shell);
  EXPECT_EQ(WEXITSTATUS(all[0].result), 3);
}

}  // namespace
