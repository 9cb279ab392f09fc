#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kelvo/pantilt.h"
#include "pantilt/link/family.h"
#include "wire/pan_tilt.h"
#include "wire/paths.h"

std::int32_t hndl = 0;
std::int32_t giMotorType = static_cast<std::int32_t>(kelvo::wire::HeadFamily::unknown);

namespace {

using Buffer = std::array<std::uint8_t, 256>;

constexpr std::uint32_t vetra_pause_us = 2000;

/// The messages of one combined transfer, taken anew for each.
class Messages {
 public:
  Messages() : messages_(static_cast<i2c_msg*>(std::calloc(2, sizeof(i2c_msg)))) {}
  ~Messages() { std::free(messages_); }
  Messages(const Messages&) = delete;
  Messages& operator=(const Messages&) = delete;

  bool available() const { return messages_ != nullptr; }
  i2c_msg& operator[](std::size_t index) { return messages_[index]; }

  std::int32_t transfer(std::uint32_t count) {
    i2c_rdwr_ioctl_data request{messages_, count};
    return ioctl(hndl, I2C_RDWR, &request);
  }

 private:
  i2c_msg* messages_;
};

/// The register byte and the bytes behind it; a length counts both and can be 0 or less.
void fill(Buffer& buffer, std::uint8_t reg, const std::uint8_t* data, std::uint32_t length) {
  buffer[0] = reg;
  const auto behind = static_cast<std::int32_t>(length - 1U);
  if (behind > 0) std::memcpy(&buffer[1], data, static_cast<std::size_t>(behind));
}

/// The Vetra controller needs a gap between commands, after a failed one too.
void pace() {
  if (giMotorType == static_cast<std::int32_t>(kelvo::wire::HeadFamily::vetra)) {
    usleep(vetra_pause_us);
  }
}

}  // namespace

std::int32_t Init_I2C() {
  // A descriptor already held is not closed first (deliberate).
  hndl = open(kelvo::wire::pan_tilt_device, O_RDWR);
  if (hndl >= 0) return 0;
  std::printf("open %s error\n", kelvo::wire::pan_tilt_device);
  return -1;
}

std::int32_t Release_I2C() {
  if (hndl > 0) close(hndl);
  hndl = -1;
  return 0;
}

std::int32_t SendI2C(std::uint16_t slave, std::uint8_t reg, const std::uint8_t* data,
                     std::uint32_t length) {
  Buffer buffer{};
  if (hndl < 0) return -1;
  fill(buffer, reg, data, length);
  std::int32_t result = 0;
  {
    Messages messages;
    if (!messages.available()) return -1;
    messages[0] = {slave, 0, static_cast<std::uint16_t>(length), buffer.data()};
    result = messages.transfer(1);
  }
  pace();
  return result;
}

std::int32_t ReadI2C(std::uint16_t slave, std::uint8_t reg, std::uint8_t* buffer,
                     std::int32_t length) {
  return ReadI2C_M(slave, reg, nullptr, 1, buffer, length);
}

std::int32_t ReadI2C_M(std::uint16_t slave, std::uint8_t reg, const std::uint8_t* more,
                       std::uint32_t write_length, std::uint8_t* buffer, std::int32_t read_length) {
  Buffer written{};
  Buffer read{};
  if (hndl < 0) return -1;
  fill(written, reg, more, write_length);
  std::int32_t result = 0;
  {
    Messages messages;
    if (!messages.available()) return 0;  // the caller keeps its own zeros (deliberate)
    messages[0] = {slave, 0, static_cast<std::uint16_t>(write_length), written.data()};
    messages[1] = {slave, I2C_M_RD, static_cast<std::uint16_t>(read_length), read.data()};
    result = messages.transfer(2);
  }
  // Copied after a failure too: the caller then receives zeros.
  if (read_length > 0) std::memcpy(buffer, read.data(), static_cast<std::size_t>(read_length));
  pace();
  return result > 0 ? 0 : result;
}
