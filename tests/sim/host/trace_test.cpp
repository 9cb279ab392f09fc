// What the camera behind the seam puts into the trace of a shared one.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "sim/host/device_calls.h"
#include "sim/host/installed_camera.h"

namespace {

using kelvo::sim::Removal;
using kelvo::sim::SharedCamera;
using kelvo::sim::trace::Act;
using kelvo::sim::trace::Event;
using kelvo::sim::trace::Reader;
using kelvo::sim::trace::Wire;
using kelvo::test::InstalledCamera;
using kelvo::test::transfer;

class HostTrace : public testing::Test {
 protected:
  HostTrace() { setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1); }
  ~HostTrace() override { SharedCamera::remove(name(), Removal::even_in_use); }

  static std::string name() { return "trace-" + std::to_string(getpid_of_test); }
  static std::string settings() { return "name=" + name() + " clock=sleep"; }

  static std::vector<Event> events() {
    const auto camera = SharedCamera::open(name(), kelvo::sim::Role::observer).camera;
    Reader reader(camera->trace());
    std::vector<Event> all;
    for (Event event{}; reader.next(event);) all.push_back(event);
    return all;
  }

 private:
  static inline const pid_t getpid_of_test = getpid();
  kelvo::test::TestFolder folder_;
};

TEST_F(HostTrace, IsEmptyWhileNobodyDoesAnything) {
  const InstalledCamera camera(settings());
  EXPECT_TRUE(events().empty());
}

TEST_F(HostTrace, HasOpenAndClose) {
  const InstalledCamera camera(settings());
  close(open("/dev/spi_pt5111", O_RDWR));
  const std::vector<Event> all = events();
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all[0].act, Act::open);
  EXPECT_EQ(all[0].wire, Wire::pt5111);
  EXPECT_EQ(all[0].result, 0);
  EXPECT_EQ(all[0].process, 1u);
  EXPECT_EQ(all[0].pid, getpid());
  EXPECT_EQ(all[1].act, Act::close);
}

TEST_F(HostTrace, HasATransferWithItsBytesAndItsTime) {
  const InstalledCamera camera(settings());
  const int lens = open("/dev/spi_renesas", O_RDWR);
  usleep(1500);
  std::uint8_t bytes[5] = {0xF5, 0x04, 0x00, 0x00, 0xA0};
  EXPECT_EQ(transfer(lens, bytes, bytes, 5), 0);
  const Event event = events().at(1);
  EXPECT_EQ(event.time, 1'500'000);
  EXPECT_EQ(event.wire, Wire::lens);
  EXPECT_EQ(event.act, Act::transfer);
  EXPECT_EQ(event.sent_length, 5u);
  EXPECT_EQ(event.sent[0], 0xF5);
  EXPECT_EQ(event.sent[4], 0xA0);
  EXPECT_EQ(event.received_length, 5u);
  EXPECT_EQ(event.received[0], 0x00);
  EXPECT_EQ(event.module, 0);
  EXPECT_EQ(event.family, 2);
  EXPECT_EQ(event.violations, 1) << "the bus lock is not taken";
  close(lens);
}

TEST_F(HostTrace, HasWhatFailsToo) {
  const InstalledCamera camera(settings());
  const int lens = open("/dev/spi_renesas", O_RDWR);
  std::uint8_t bytes[7] = {1, 2, 3, 4, 5, 6, 7};
  EXPECT_EQ(transfer(lens, nullptr, bytes, 7), -EFAULT);
  const int head = open("/dev/i2c-2", O_RDWR);
  EXPECT_EQ(transfer(head, bytes, bytes, 7), -ENOTTY);
  const std::vector<Event> all = events();
  EXPECT_EQ(all.at(1).result, -EFAULT);
  EXPECT_EQ(all.at(1).sent_length, 7u);
  EXPECT_EQ(all.at(1).received_length, 7u);
  EXPECT_EQ(all.at(1).received[0], 0);
  EXPECT_EQ(all.at(3).result, -ENOTTY);
  EXPECT_EQ(all.at(3).wire, Wire::head);
  close(lens);
  close(head);
}

TEST_F(HostTrace, HasBothMessagesOfARead) {
  const InstalledCamera camera(settings());
  const int head = open("/dev/i2c-2", O_RDWR);
  std::uint8_t reg = 4;
  std::uint8_t position[2] = {};
  i2c_msg messages[] = {{40, 0, 1, &reg}, {40, I2C_M_RD, 2, position}};
  i2c_rdwr_ioctl_data request{messages, 2};
  EXPECT_EQ(ioctl(head, I2C_RDWR, &request), 2);
  const Event event = events().at(1);
  EXPECT_EQ(event.wire, Wire::head);
  EXPECT_EQ(event.slave, 40);
  EXPECT_EQ(event.messages, 2);
  EXPECT_EQ(event.result, 2);
  EXPECT_EQ(event.sent_length, 1u);
  EXPECT_EQ(event.sent[0], 4);
  EXPECT_EQ(event.received_length, 2u);
  EXPECT_EQ(event.received[0], 0x80);
  close(head);
}

TEST_F(HostTrace, HasTheSpeedAndTheResetLine) {
  const InstalledCamera camera(settings());
  const int lens = open("/dev/spi_renesas", O_RDWR);
  std::uint32_t hertz = 1'000'000;
  EXPECT_EQ(ioctl(lens, 0xc0045202UL, &hertz), 0);
  EXPECT_EQ(system("echo 33 > /sys/class/gpio/export"), 0);
  EXPECT_EQ(system("echo 33 > /sys/class/gpio/export"), 256);
  const std::vector<Event> all = events();
  EXPECT_EQ(all.at(1).act, Act::speed);
  EXPECT_EQ(all.at(1).sent_length, 4u);
  EXPECT_EQ(all.at(2).wire, Wire::reset_line);
  EXPECT_EQ(all.at(2).act, Act::shell);
  EXPECT_EQ(all.at(2).sent_length, 32u);
  EXPECT_EQ(all.at(2).sent[0], 'e');
  EXPECT_EQ(all.at(3).result, 256);
  close(lens);
}

TEST_F(HostTrace, MarksWhatIsAgainstTheProtocol) {
  const InstalledCamera camera(settings());
  const int lens = open("/dev/spi_renesas", O_RDWR);
  const std::uint8_t unknown[5] = {0x12, 0, 0, 0, 0xA0};
  std::uint8_t received[5];
  EXPECT_EQ(transfer(lens, unknown, received, 5), 0);
  EXPECT_EQ(transfer(lens, unknown, received, 5), 0);
  const std::vector<Event> all = events();
  EXPECT_EQ(all.at(0).violations, 0);
  EXPECT_GE(all.at(1).violations, 1);
  EXPECT_EQ(all.at(1).violation, 0u);
  EXPECT_EQ(all.at(2).violation, all.at(1).violations);
  close(lens);
}

TEST_F(HostTrace, NumbersProcessesInTheOrderInWhichTheyBegin) {
  const InstalledCamera camera(settings());
  const pid_t child = fork();
  if (child == 0) {
    close(open("/dev/i2c-2", O_RDWR));
    _exit(0);
  }
  ASSERT_EQ(waitpid(child, nullptr, 0), child);
  close(open("/dev/i2c-2", O_RDWR));
  const std::vector<Event> all = events();
  ASSERT_EQ(all.size(), 4u);
  EXPECT_EQ(all[0].process, 1u);
  EXPECT_EQ(all[0].pid, child);
  EXPECT_EQ(all[2].process, 2u);
  EXPECT_EQ(all[2].pid, getpid());
}

}  // namespace
