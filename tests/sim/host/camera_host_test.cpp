#include "sim/wrapper/camera_host.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/sem.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

#include "sim/host/device_calls.h"
#include "sim/host/installed_camera.h"

namespace {

using kelvo::sim::CameraHost;
using kelvo::sim::Device;
using kelvo::sim::Settings;
using kelvo::sim::SleepCall;
using kelvo::test::InstalledCamera;
using kelvo::test::transfer;
using namespace std::chrono_literals;

int i2c(int descriptor, i2c_msg* messages, unsigned count) {
  i2c_rdwr_ioctl_data request{messages, count};
  errno = 0;
  const int result = ioctl(descriptor, I2C_RDWR, &request);
  return result < 0 ? -errno : result;
}

/// A message for the pan controller.
int i2c(int descriptor, unsigned count) {
  std::uint8_t wake_up = 28;
  i2c_msg message{40, 0, 1, &wake_up};
  return i2c(descriptor, &message, count);
}

TEST(CameraHost, HasTheThreeDevices) {
  InstalledCamera camera;
  for (const char* const path : {"/dev/spi_renesas", "/dev/spi_pt5111", "/dev/i2c-2"}) {
    const int descriptor = open(path, O_RDWR);
    EXPECT_GE(descriptor, 0) << path;
    EXPECT_EQ(close(descriptor), 0);
  }
}

TEST(CameraHost, IsUsedOnceADeviceIsOpened) {
  InstalledCamera camera;
  EXPECT_FALSE(camera.host().used());
  const int descriptor = open("/dev/i2c-2", O_RDWR);
  EXPECT_TRUE(camera.host().used());
  close(descriptor);
}

TEST(CameraHost, IsUsedOnceTheResetLineIsTouched) {
  InstalledCamera camera;
  EXPECT_EQ(system("echo 33 > /sys/class/gpio/export"), 0);
  EXPECT_EQ(system("echo 33 > /sys/class/gpio/export"), 256);
  EXPECT_TRUE(camera.host().used());
}

TEST(CameraHost, LeadsEachTransferToItsDevice) {
  InstalledCamera camera;
  const int lens = open("/dev/spi_renesas", O_RDWR);
  const int pt5111 = open("/dev/spi_pt5111", O_RDWR);
  const std::uint8_t frame[5] = {0xF5, 0x04, 0x00, 0x00, 0xA0};
  const std::uint8_t word[2] = {0xD5, 0x78};
  std::uint8_t received[5] = {1, 1, 1, 1, 1};
  EXPECT_EQ(transfer(lens, frame, received, 5), 0);
  for (const std::uint8_t byte : received) EXPECT_EQ(byte, 0);
  EXPECT_EQ(transfer(pt5111, word, received, 2), 0);
  EXPECT_EQ(camera.state().boots().boot(1).frames[0], 1u);
  EXPECT_EQ(camera.state().pt5111().read(53), 0x178);
  close(lens);
  close(pt5111);
}

TEST(CameraHost, RefusesARequestThatIsNotTheDevices) {
  InstalledCamera camera;
  const int lens = open("/dev/spi_renesas", O_RDWR);
  const int pan_tilt = open("/dev/i2c-2", O_RDWR);
  std::uint8_t bytes[5] = {};
  std::uint32_t speed = 250000;
  EXPECT_EQ(transfer(pan_tilt, bytes, bytes, 5), -ENOTTY);
  EXPECT_EQ(i2c(lens, 1), -ENOTTY);
  errno = 0;
  EXPECT_EQ(ioctl(pan_tilt, 0xc0045202UL, &speed), -1);
  EXPECT_EQ(errno, ENOTTY);
  EXPECT_EQ(ioctl(lens, 0xc0045202UL, &speed), 0);
  EXPECT_EQ(camera.state().boots().total(), 0u);
  close(lens);
  close(pan_tilt);
}

TEST(CameraHost, HasTheHeadOnItsI2cBus) {
  InstalledCamera camera;
  const int pan_tilt = open("/dev/i2c-2", O_RDWR);
  EXPECT_EQ(i2c(pan_tilt, 1), 1);
  EXPECT_EQ(i2c(pan_tilt, 0), -EINVAL);
  std::uint8_t reg = 4;
  std::uint8_t position[2] = {};
  i2c_msg messages[] = {{40, 0, 1, &reg}, {40, I2C_M_RD, 2, position}};
  EXPECT_EQ(i2c(pan_tilt, messages, 2), 2);
  EXPECT_EQ(position[0], 0x80);
  messages[0].addr = messages[1].addr = 42;
  EXPECT_EQ(i2c(pan_tilt, messages, 2), -ENXIO);
  EXPECT_EQ(position[0], 0);
  close(pan_tilt);
}

TEST(CameraHost, HasTheHeadThatItsSettingsName) {
  using kelvo::wire::HeadFamily;
  EXPECT_EQ(InstalledCamera().state().head().family(), HeadFamily::tasmere);
  EXPECT_EQ(InstalledCamera("head=tasmere").state().head().family(), HeadFamily::tasmere);
  EXPECT_EQ(InstalledCamera("head=vetra").state().head().family(), HeadFamily::vetra);
}

TEST(CameraHost, RefusesMessagesThatTheAdapterDoesNotSend) {
  InstalledCamera camera;
  const int pan_tilt = open("/dev/i2c-2", O_RDWR);
  std::uint8_t byte = 28;
  i2c_msg ten_bit_address{40, I2C_M_TEN, 1, &byte};
  EXPECT_EQ(i2c(pan_tilt, &ten_bit_address, 1), -EOPNOTSUPP);
  i2c_msg no_buffer{40, 0, 1, nullptr};
  EXPECT_EQ(i2c(pan_tilt, &no_buffer, 1), -EFAULT);
  i2c_msg empty{40, 0, 0, nullptr};
  EXPECT_EQ(i2c(pan_tilt, &empty, 1), 1);
  EXPECT_EQ(camera.state().violations().total(), 0u);
  close(pan_tilt);
}

TEST(CameraHost, RefusesBuffersThatAreNull) {
  InstalledCamera camera;
  const int lens = open("/dev/spi_renesas", O_RDWR);
  std::uint8_t bytes[5] = {};
  EXPECT_EQ(transfer(lens, nullptr, bytes, 5), -EFAULT);
  EXPECT_EQ(transfer(lens, bytes, nullptr, 5), -EFAULT);
  EXPECT_EQ(camera.state().boots().total(), 0u);
  close(lens);
}

TEST(CameraHost, LeavesForeignDescriptorsToTheKernel) {
  CameraHost host{Settings{}};
  std::uint8_t bytes[5] = {};
  EXPECT_EQ(host.transfer(Device::none, -1, bytes, bytes), std::nullopt);
  EXPECT_EQ(host.set_speed(Device::none, -1, 250000), std::nullopt);
  EXPECT_EQ(host.i2c(Device::none, -1, {}), std::nullopt);
}

TEST(SleepClock, AdvancesByEverySleepAlike) {
  InstalledCamera camera;
  EXPECT_EQ(camera.now(), 0s);
  EXPECT_EQ(usleep(1500), 0);
  EXPECT_EQ(camera.now(), 1500us);
  EXPECT_EQ(sleep(3600), 0u);
  EXPECT_EQ(camera.now(), 3600s + 1500us);
  const timespec day{86400, 1};
  EXPECT_EQ(nanosleep(&day, nullptr), 0);
  EXPECT_EQ(camera.now(), 90000s + 1500us + 1ns);
  EXPECT_EQ(clock_nanosleep(CLOCK_MONOTONIC, 0, &day, nullptr), 0);
  EXPECT_EQ(camera.now(), 176400s + 1500us + 2ns);
}

TEST(SleepClock, StandsStillOtherwise) {
  InstalledCamera camera;
  EXPECT_EQ(system("echo 33 > /sys/class/gpio/export"), 0);
  const int lens = open("/dev/spi_renesas", O_RDWR);
  EXPECT_EQ(transfer(lens, nullptr, nullptr, 5), -EFAULT);
  EXPECT_EQ(ftok("/lib/libkelvo.so", 0), ftok("/lib/libkelvo.so", 0));
  EXPECT_EQ(camera.now(), 0s);
  close(lens);
}

TEST(RealClock, LeavesSleepingToTheKernel) {
  CameraHost host{Settings{}};
  EXPECT_EQ(host.delay(SleepCall::usleep, 1s), std::nullopt);
}

TEST(RealClock, RunsByItself) {
  CameraHost host{Settings{}};
  const auto first = host.camera().clock.now();
  auto later = first;
  while (later == first) later = host.camera().clock.now();
  EXPECT_GT(later, first);
}

TEST(BusKey, BelongsToTheCamerasFolder) {
  InstalledCamera camera;
  const key_t key = ftok("/lib/libkelvo.so", 0);
  EXPECT_GT(key, 0);
  EXPECT_EQ(ftok("/lib/libkelvo.so", 0), key);
  EXPECT_EQ(ftok(camera.host().files().folder().c_str(), 'k'), key);
}

TEST(BusKey, IsTheSameForEveryCameraOfAFolder) {
  const kelvo::test::TestFolder folder;
  const std::string settings = "clock=sleep files=" + folder.path().string();
  key_t key = 0;
  {
    InstalledCamera camera(settings);
    key = ftok("/lib/libkelvo.so", 0);
  }
  InstalledCamera camera(settings);
  EXPECT_EQ(ftok("/lib/libkelvo.so", 0), key);
}

TEST(BusKey, CannotBeHadWithoutTheFolder) {
  const kelvo::test::NoTemporaryFolder none;
  InstalledCamera camera;
  errno = 0;
  EXPECT_EQ(ftok("/lib/libkelvo.so", 0), -1);
  EXPECT_NE(errno, 0);
}

TEST(BusKey, LeadsToASemaphoreSetThatEndsWithTheCamera) {
  key_t key = 0;
  {
    InstalledCamera camera;
    key = ftok("/lib/libkelvo.so", 0);
    const int set = semget(key, 1, IPC_CREAT | 0666);
    ASSERT_GE(set, 0);
    EXPECT_EQ(semctl(set, 0, SETVAL, 0), 0);
    EXPECT_EQ(semget(key, 0, 0), set);
  }
  errno = 0;
  EXPECT_EQ(semget(key, 0, 0), -1);
  EXPECT_EQ(errno, ENOENT);
}

TEST(BusKey, OutlivesAForkedProcess) {
  InstalledCamera camera;
  const key_t key = ftok("/lib/libkelvo.so", 0);
  const int set = semget(key, 1, IPC_CREAT | 0666);
  ASSERT_GE(set, 0);
  const pid_t child = fork();
  if (child == 0) {
    const bool owned = camera.host().owned();
    camera.host().end();
    _exit(owned ? 1 : 0);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(camera.host().owned());
  EXPECT_EQ(semget(key, 0, 0), set);
  EXPECT_TRUE(std::filesystem::exists(camera.host().files().folder()));
}

}  // namespace
