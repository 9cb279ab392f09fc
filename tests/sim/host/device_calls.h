// What a program does to the camera's devices, by the system calls.
#ifndef KELVO_TESTS_SIM_HOST_DEVICE_CALLS_H
#define KELVO_TESTS_SIM_HOST_DEVICE_CALLS_H

#include <cstdint>
#include <vector>

namespace kelvo::test {

/// A full-duplex transfer on a descriptor: 0, or a negative error number.
int transfer(int descriptor, const std::uint8_t* transmit, std::uint8_t* receive,
             std::uint32_t length);

/// A device that is open while it lives.
class OpenDevice {
 public:
  explicit OpenDevice(const char* path);
  ~OpenDevice();
  OpenDevice(const OpenDevice&) = delete;
  OpenDevice& operator=(const OpenDevice&) = delete;

  int descriptor() const { return descriptor_; }
  /// A full-duplex transfer: 0, or a negative error number.
  int transfer(std::vector<std::uint8_t> bytes) const;
  /// A register and its data to a slave: 1, or a negative error number.
  int write(int slave, std::vector<std::uint8_t> bytes) const;
  /// Bytes from a register of a slave: 2, or a negative error number.
  int read(int slave, std::uint8_t reg, std::size_t length) const;

 private:
  int descriptor_;
};

}  // namespace kelvo::test

#endif
