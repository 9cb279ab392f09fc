#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

constexpr std::uint8_t data[4] = {0x12, 0x34, 0x56, 0x78};

void open_link(Script& script) {
  Init_I2C();
  script.transcript();
}

TEST(I2cSend, CountsTheRegisterByteInItsLength) {
  Script script;
  open_link(script);
  EXPECT_EQ(SendI2C(40, 0x05, data, 3), 1);
  EXPECT_EQ(SendI2C(41, 0xF0, data, 5), 1);
  EXPECT_EQ(SendI2C(40, 0x00, data, 2), 1);
  EXPECT_EQ(script.transcript(),
            R"(i2c 40: w 05 12 34
i2c 41: w F0 12 34 56 78
i2c 40: w 00 12
)");
}

TEST(I2cSend, OfLengthOneIsTheRegisterAlone) {
  Script script;
  open_link(script);
  EXPECT_EQ(SendI2C(40, 0x62, nullptr, 1), 1);
  EXPECT_EQ(SendI2C(40, 0x62, data, 1), 1);
  EXPECT_EQ(script.transcript(), "i2c 40: w 62\ni2c 40: w 62\n");
}

TEST(I2cSend, OfLengthZeroIsAnEmptyMessage) {
  Script script;
  open_link(script);
  EXPECT_EQ(SendI2C(41, 0x62, nullptr, 0), 1);
  EXPECT_EQ(SendI2C(41, 0x62, data, 0), 1);
  EXPECT_EQ(script.transcript(), "i2c 41: w\ni2c 41: w\n");
}

TEST(I2cSend, FillsItsBufferToTheLastByte) {
  Script script;
  open_link(script);
  const std::vector<std::uint8_t> zeros(255, 0);
  EXPECT_EQ(SendI2C(40, 0x62, zeros.data(), 256), 1);
  EXPECT_EQ(script.count(Call::i2c), 1);
}

TEST(I2cSend, GoesToAnySlaveAddress) {
  Script script;
  open_link(script);
  EXPECT_EQ(SendI2C(127, 0x62, nullptr, 1), 1);
  EXPECT_EQ(SendI2C(1023, 0x62, nullptr, 1), 1);
  EXPECT_EQ(script.transcript(), "i2c 127: w 62\ni2c 1023: w 62\n");
}

TEST(I2cSend, ReturnsItsFailureWithoutARetryOrAWord) {
  Script script;
  open_link(script);
  script.fail(Call::i2c, 1, 1, ENXIO);
  EXPECT_EQ(SendI2C(40, 0x05, data, 3), -1);
  EXPECT_EQ(script.transcript(), "i2c 40: w 05 12 34 -> ENXIO\n");
  EXPECT_EQ(SendI2C(40, 0x05, data, 3), 1);
  EXPECT_EQ(script.transcript(), "i2c 40: w 05 12 34\n");
}

TEST(I2cSend, ReturnsAnyResultUnchanged) {
  Script script;
  open_link(script);
  script.result(Call::i2c, 1, 0);
  script.result(Call::i2c, 2, 5);
  EXPECT_EQ(SendI2C(40, 0x05, data, 3), 0);
  EXPECT_EQ(SendI2C(40, 0x05, data, 3), 5);
  EXPECT_EQ(script.transcript(), "i2c 40: w 05 12 34 -> 0\ni2c 40: w 05 12 34 -> 5\n");
}

TEST(I2cSend, IsMinusOneWithoutMemory) {
  Script script;
  open_link(script);
  script.fail(Call::calloc, 1, 1, ENOMEM);
  EXPECT_EQ(SendI2C(40, 0x05, data, 3), -1);
  EXPECT_EQ(script.transcript(), "");
  EXPECT_EQ(SendI2C(40, 0x05, data, 3), 1);
  EXPECT_EQ(script.transcript(), "i2c 40: w 05 12 34\n");
}

TEST(I2cRead, WritesTheRegisterAndReadsInOneRequest) {
  Script script;
  open_link(script);
  script.i2c_register(40, 0x32, {0x12, 0x34});
  script.i2c_register(41, 0x32, {0x56, 0x78});
  std::uint8_t buffer[4] = {0xAA, 0xAA, 0xAA, 0xAA};
  EXPECT_EQ(ReadI2C(40, 0x32, buffer + 1, 2), 0);
  EXPECT_EQ(Bytes(buffer, buffer + 4), (Bytes{0xAA, 0x12, 0x34, 0xAA}));
  EXPECT_EQ(ReadI2C(41, 0x32, buffer + 1, 1), 0);
  EXPECT_EQ(Bytes(buffer, buffer + 4), (Bytes{0xAA, 0x56, 0x34, 0xAA}));
  EXPECT_EQ(script.transcript(), "i2c 40: w 32 r 2\ni2c 41: w 32 r 1\n");
}

TEST(I2cRead, FillsTheCallersBufferWithZerosWhenTheSlaveDoesNotAnswer) {
  Script script;
  open_link(script);
  script.i2c_register(40, 0x32, {0x12, 0x34});
  script.fail(Call::i2c, 1, 1, ENXIO);
  std::uint8_t buffer[4] = {0xAA, 0xAA, 0xAA, 0xAA};
  EXPECT_EQ(ReadI2C(40, 0x32, buffer, 3), -1);
  EXPECT_EQ(Bytes(buffer, buffer + 4), (Bytes{0, 0, 0, 0xAA}));
  EXPECT_EQ(script.transcript(), "i2c 40: w 32 r 3 -> ENXIO\n");
}

TEST(I2cRead, TakesAnyPositiveCountForSuccess) {
  Script script;
  open_link(script);
  script.result(Call::i2c, 1, 1);
  script.result(Call::i2c, 2, 9);
  std::uint8_t buffer[2] = {};
  EXPECT_EQ(ReadI2C(40, 0x32, buffer, 2), 0);
  EXPECT_EQ(ReadI2C(40, 0x32, buffer, 2), 0);
  EXPECT_EQ(script.transcript(), "i2c 40: w 32 r 2 -> 1\ni2c 40: w 32 r 2 -> 9\n");
}

TEST(I2cRead, IsZeroForARequestThatCarriedNoMessage) {
  Script script;
  open_link(script);
  script.result(Call::i2c, 1, 0);
  std::uint8_t buffer[2] = {0xAA, 0xAA};
  EXPECT_EQ(ReadI2C(40, 0x32, buffer, 2), 0);
  EXPECT_EQ(Bytes(buffer, buffer + 2), (Bytes{0, 0}));
}

TEST(I2cRead, OfNothingStillAsks) {
  Script script;
  open_link(script);
  std::uint8_t buffer[1] = {0xAA};
  EXPECT_EQ(ReadI2C(40, 0x32, buffer, 0), 0);
  EXPECT_EQ(buffer[0], 0xAA);
  EXPECT_EQ(script.transcript(), "i2c 40: w 32 r 0\n");
}

TEST(I2cRead, OfANegativeLengthFailsAndCopiesNothing) {
  Script script;
  open_link(script);
  std::uint8_t buffer[2] = {0xAA, 0xAA};
  // In sixteen bits the length is 65535, which the driver refuses.
  EXPECT_EQ(ReadI2C(40, 0x32, buffer, -1), -1);
  EXPECT_EQ(Bytes(buffer, buffer + 2), (Bytes{0xAA, 0xAA}));
}

TEST(I2cRead, IsZeroAndLeavesTheBufferAloneWithoutMemory) {
  Script script;
  open_link(script);
  script.i2c_register(40, 0x32, {0x12, 0x34});
  script.fail(Call::calloc, 1, 1, ENOMEM);
  std::uint8_t buffer[2] = {0xAA, 0xAA};
  EXPECT_EQ(ReadI2C(40, 0x32, buffer, 2), 0);
  EXPECT_EQ(Bytes(buffer, buffer + 2), (Bytes{0xAA, 0xAA}));
  EXPECT_EQ(script.transcript(), "");
}

TEST(I2cRead, IsMinusOneOnAClosedLinkEvenWithoutMemory) {
  Script script;
  Release_I2C();
  script.fail(Call::calloc, 1, forever, ENOMEM);
  std::uint8_t buffer[2] = {0xAA, 0xAA};
  EXPECT_EQ(ReadI2C(40, 0x32, buffer, 2), -1);
  EXPECT_EQ(ReadI2C_M(40, 0x32, data, 2, buffer, 2), -1);
  EXPECT_EQ(Bytes(buffer, buffer + 2), (Bytes{0xAA, 0xAA}));
  EXPECT_EQ(script.transcript(), "");
}

TEST(I2cReadMulti, WritesSeveralBytesBeforeItReads) {
  Script script;
  open_link(script);
  script.i2c_register(40, 0x32, {0x0A, 0x0B, 0x0C, 0x0D});
  std::uint8_t buffer[5] = {0xAA, 0xAA, 0xAA, 0xAA, 0xAA};
  EXPECT_EQ(ReadI2C_M(40, 0x32, data, 3, buffer, 4), 0);
  EXPECT_EQ(Bytes(buffer, buffer + 5), (Bytes{0x0A, 0x0B, 0x0C, 0x0D, 0xAA}));
  EXPECT_EQ(script.transcript(), "i2c 40: w 32 12 34 r 4\n");
}

TEST(I2cReadMulti, CountsTheRegisterByteInItsWriteLength) {
  Script script;
  open_link(script);
  std::uint8_t buffer[2] = {};
  EXPECT_EQ(ReadI2C_M(41, 0x32, nullptr, 1, buffer, 2), 0);
  EXPECT_EQ(ReadI2C_M(41, 0x32, nullptr, 0, buffer, 2), 0);
  EXPECT_EQ(script.transcript(), "i2c 41: w 32 r 2\ni2c 41: w r 2\n");
}

TEST(I2cReadMulti, FillsTheCallersBufferWithZerosWhenTheSlaveDoesNotAnswer) {
  Script script;
  open_link(script);
  script.fail(Call::i2c, 1, forever, ENXIO);
  std::uint8_t buffer[3] = {0xAA, 0xAA, 0xAA};
  EXPECT_EQ(ReadI2C_M(40, 0x32, data, 2, buffer, 2), -1);
  EXPECT_EQ(Bytes(buffer, buffer + 3), (Bytes{0, 0, 0xAA}));
  EXPECT_EQ(script.transcript(), "i2c 40: w 32 12 r 2 -> ENXIO\n");
}

TEST(I2cReadMulti, IsZeroForARequestThatCarriedNoMessage) {
  Script script;
  open_link(script);
  script.result(Call::i2c, 1, 0);
  std::uint8_t buffer[2] = {0xAA, 0xAA};
  EXPECT_EQ(ReadI2C_M(40, 0x32, data, 2, buffer, 2), 0);
  EXPECT_EQ(Bytes(buffer, buffer + 2), (Bytes{0, 0}));
}

TEST(I2cReadMulti, OfANegativeLengthFailsAndCopiesNothing) {
  Script script;
  open_link(script);
  std::uint8_t buffer[2] = {0xAA, 0xAA};
  EXPECT_EQ(ReadI2C_M(40, 0x32, data, 2, buffer, -1), -1);
  EXPECT_EQ(Bytes(buffer, buffer + 2), (Bytes{0xAA, 0xAA}));
}

TEST(I2cReadMulti, IsZeroAndLeavesTheBufferAloneWithoutMemory) {
  Script script;
  open_link(script);
  script.fail(Call::calloc, 1, 1, ENOMEM);
  std::uint8_t buffer[2] = {0xAA, 0xAA};
  EXPECT_EQ(ReadI2C_M(40, 0x32, data, 2, buffer, 2), 0);
  EXPECT_EQ(Bytes(buffer, buffer + 2), (Bytes{0xAA, 0xAA}));
  EXPECT_EQ(script.transcript(), "");
}

TEST(I2cPause, IsNotTakenBeforeTheFamilyIsDetected) {
  Script script;
  open_link(script);
  script.fail(Call::i2c, 4, forever, ENXIO);
  std::uint8_t buffer[2] = {};
  for (int round = 0; round < 2; ++round) {
    SendI2C(40, 0x05, data, 3);
    ReadI2C(40, 0x32, buffer, 2);
    ReadI2C_M(40, 0x32, data, 2, buffer, 2);
  }
  EXPECT_EQ(script.count(Call::i2c), 6);
  EXPECT_EQ(script.count(Call::usleep), 0);
  EXPECT_EQ(script.count(Call::sleep), 0);
}

}  // namespace
