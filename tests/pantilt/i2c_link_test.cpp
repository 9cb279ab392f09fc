#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

constexpr std::uint8_t message[4] = {0x12, 0x34, 0x56, 0x78};

TEST(I2cLink, IsDescriptorZeroAtLoad) {
  Script script;
  EXPECT_EQ(hndl, 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(I2cLink, IsOpenedOnDemand) {
  Script script;
  EXPECT_EQ(Init_I2C(), 0);
  EXPECT_GT(hndl, 0);
  EXPECT_EQ(script.transcript(), "open /dev/i2c-2\n");
}

TEST(I2cLink, ComplainsOnStandardOutputWhenItCannotBeOpened) {
  Script script;
  script.fail(Call::open, 1, 1, ENOENT);
  EXPECT_EQ(Init_I2C(), -1);
  EXPECT_EQ(hndl, -1);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/i2c-2 -> ENOENT
out "open /dev/i2c-2 error\n"
)");
}

TEST(I2cLink, CarriesNothingAfterAFailedOpen) {
  Script script;
  script.fail(Call::open, 1, 1, ENOENT);
  Init_I2C();
  script.transcript();
  std::uint8_t buffer[2] = {0xAA, 0xAA};
  EXPECT_EQ(SendI2C(40, 0x05, message, 3), -1);
  EXPECT_EQ(ReadI2C(40, 0x32, buffer, 2), -1);
  EXPECT_EQ(ReadI2C_M(40, 0x32, message, 2, buffer, 2), -1);
  EXPECT_EQ(script.transcript(), "");
  EXPECT_EQ(buffer[0], 0xAA);
  EXPECT_EQ(buffer[1], 0xAA);
}

TEST(I2cLink, OpensAgainWithoutClosingWhatItHad) {
  Script script;
  EXPECT_EQ(Init_I2C(), 0);
  const int32_t first = hndl;
  EXPECT_EQ(Init_I2C(), 0);
  EXPECT_NE(hndl, first);
  EXPECT_EQ(script.transcript(), "open /dev/i2c-2\nopen /dev/i2c-2\n");
}

TEST(I2cLink, IsLostWhenASecondOpenFails) {
  Script script;
  Init_I2C();
  script.transcript();
  script.fail(Call::open, 1, 1, EMFILE);
  EXPECT_EQ(Init_I2C(), -1);
  EXPECT_EQ(hndl, -1);
  EXPECT_EQ(SendI2C(40, 0x05, message, 3), -1);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/i2c-2 -> EMFILE
out "open /dev/i2c-2 error\n"
)");
}

TEST(I2cLink, CanBeOpenedAfterAFailure) {
  Script script;
  script.fail(Call::open, 1, 1, ENOENT);
  EXPECT_EQ(Init_I2C(), -1);
  EXPECT_EQ(Init_I2C(), 0);
  script.transcript();
  EXPECT_EQ(SendI2C(40, 0x05, message, 3), 1);
  EXPECT_EQ(script.transcript(), "i2c 40: w 05 12 34\n");
}

TEST(I2cLink, IsReleasedOnce) {
  Script script;
  Init_I2C();
  EXPECT_EQ(Release_I2C(), 0);
  EXPECT_EQ(hndl, -1);
  EXPECT_EQ(Release_I2C(), 0);
  EXPECT_EQ(hndl, -1);
  EXPECT_EQ(script.transcript(), "open /dev/i2c-2\nclose /dev/i2c-2\n");
}

TEST(I2cLink, CountsAsReleasedAfterAFailedClose) {
  Script script;
  Init_I2C();
  script.fail(Call::close, 1, 1, EIO);
  EXPECT_EQ(Release_I2C(), 0);
  EXPECT_EQ(hndl, -1);
  EXPECT_EQ(script.transcript(), "open /dev/i2c-2\nclose /dev/i2c-2 -> EIO\n");
}

TEST(I2cLink, NeverClosesDescriptorZero) {
  const int null_device = open("/dev/null", O_RDWR);
  ASSERT_GE(null_device, 0);
  ASSERT_EQ(dup2(null_device, 0), 0);
  Script script;
  EXPECT_EQ(Release_I2C(), 0);
  EXPECT_EQ(hndl, -1);
  EXPECT_GE(fcntl(0, F_GETFD), 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(I2cLink, CarriesNothingAfterARelease) {
  Script script;
  Init_I2C();
  Release_I2C();
  script.transcript();
  std::uint8_t buffer[2] = {0xAA, 0xAA};
  EXPECT_EQ(SendI2C(40, 0x05, message, 3), -1);
  EXPECT_EQ(ReadI2C(40, 0x32, buffer, 2), -1);
  EXPECT_EQ(ReadI2C_M(40, 0x32, message, 2, buffer, 2), -1);
  EXPECT_EQ(script.transcript(), "");
  EXPECT_EQ(script.count(Call::i2c), 0);
  EXPECT_EQ(buffer[0], 0xAA);
  EXPECT_EQ(buffer[1], 0xAA);
}

TEST(I2cLink, TreatsAnyNegativeDescriptorAsNotOpen) {
  Script script;
  hndl = -7;
  std::uint8_t buffer[2] = {0xAA, 0xAA};
  EXPECT_EQ(SendI2C(40, 0x05, message, 3), -1);
  EXPECT_EQ(ReadI2C(40, 0x32, buffer, 2), -1);
  EXPECT_EQ(ReadI2C_M(40, 0x32, message, 2, buffer, 2), -1);
  EXPECT_EQ(Release_I2C(), 0);
  EXPECT_EQ(hndl, -1);
  EXPECT_EQ(script.transcript(), "");
}

TEST(I2cLink, UsesDescriptorZeroBeforeItWasOpened) {
  Script script;
  std::uint8_t buffer[2] = {0xAA, 0xAA};
  EXPECT_EQ(SendI2C(40, 0x05, message, 3), -1);
  EXPECT_EQ(ReadI2C(41, 0x32, buffer, 2), -1);
  EXPECT_EQ(buffer[0], 0);
  EXPECT_EQ(buffer[1], 0);
  EXPECT_EQ(ReadI2C_M(41, 0x32, message, 2, buffer, 2), -1);
  EXPECT_EQ(hndl, 0);
  EXPECT_EQ(script.transcript(),
            R"(fd 0: i2c 40: w 05 12 34 -> ENOTTY
fd 0: i2c 41: w 32 r 2 -> ENOTTY
fd 0: i2c 41: w 32 12 r 2 -> ENOTTY
)");
}

TEST(I2cLink, IsNotAffectedByALensDeviceOrItsLatch) {
  Script script;
  Init_I2C();
  SetLensType(7);
  script.fail(Call::transfer, 1, forever, EIO);
  SendCommand(1, 0, 0, 0, 0);
  CloseSPI();
  script.transcript();
  EXPECT_EQ(SendI2C(40, 0x05, message, 3), 1);
  EXPECT_EQ(script.transcript(), "i2c 40: w 05 12 34\n");
}

}  // namespace
