#include "sim/host/device_calls.h"

#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace kelvo::test {
namespace {

struct TransferRecord {
  const std::uint8_t* transmit;
  std::uint8_t* receive;
  std::uint32_t length;
  std::uint32_t reserved;
};

int request(int descriptor, unsigned long number, void* argument) {
  const int result = ioctl(descriptor, number, argument);
  return result < 0 ? -errno : result;
}

}  // namespace

int transfer(int descriptor, const std::uint8_t* transmit, std::uint8_t* receive,
             std::uint32_t length) {
  TransferRecord record{transmit, receive, length, 0};
  return request(descriptor, 0xc0185201UL, &record);
}

OpenDevice::OpenDevice(const char* path) : descriptor_(open(path, O_RDWR)) {
  if (descriptor_ < 0) std::abort();
}

OpenDevice::~OpenDevice() { close(descriptor_); }

int OpenDevice::transfer(std::vector<std::uint8_t> bytes) const {
  std::vector<std::uint8_t> received(bytes.size());
  return test::transfer(descriptor_, bytes.data(), received.data(),
                        static_cast<std::uint32_t>(bytes.size()));
}

int OpenDevice::write(int slave, std::vector<std::uint8_t> bytes) const {
  i2c_msg message{static_cast<std::uint16_t>(slave), 0, static_cast<std::uint16_t>(bytes.size()),
                  bytes.data()};
  i2c_rdwr_ioctl_data data{&message, 1};
  return request(descriptor_, I2C_RDWR, &data);
}

int OpenDevice::read(int slave, std::uint8_t reg, std::size_t length) const {
  const auto address = static_cast<std::uint16_t>(slave);
  std::vector<std::uint8_t> received(length);
  i2c_msg messages[] = {{address, 0, 1, &reg},
                        {address, I2C_M_RD, static_cast<std::uint16_t>(length), received.data()}};
  i2c_rdwr_ioctl_data data{messages, 2};
  return request(descriptor_, I2C_RDWR, &data);
}

}  // namespace kelvo::test
