#ifndef KELVO_TESTS_SCRIPT_DEVICE_HOST_H
#define KELVO_TESTS_SCRIPT_DEVICE_HOST_H

#include <sys/ioctl.h>

#include <string>
#include <vector>

#include "sim/seam/host.h"
#include "wire/spi_device.h"

namespace kelvo::test {

inline constexpr char lens_device[] = "/dev/spi_renesas";

/// Has the camera's devices and one calibration file, and writes down what reaches it.
class DeviceHost final : public sim::Host {
 public:
  sim::Answer open(sim::Device device) override { return note("open", device); }
  sim::Answer close(sim::Device device) override { return note("close", device); }
  sim::Answer transfer(sim::Device device, int /*descriptor*/,
                       std::span<const std::uint8_t> /*sent*/,
                       std::span<std::uint8_t> /*received*/) override {
    if (device == sim::Device::none) return {};
    return note("transfer", device);
  }
  void refused(sim::Device device, const char* what) override {
    note(std::string("refused ") + what + " of", device);
  }
  sim::Answer shell(const char* command) override {
    seen.emplace_back(command);
    return shell_status;
  }
  std::optional<sim::FileAnswer> file(const char* path, const char* mode) override {
    seen.push_back(std::string("file ") + path + " " + mode);
    return sim::FileAnswer{file_error, real_file};
  }
  std::optional<sim::FileAnswer> real_place(const char* path) override {
    const bool device = std::string(path).starts_with("/dev/");
    return sim::FileAnswer{file_error, device ? "/dev/null" : real_file};
  }
  void file_closed(const char* path) override { seen.push_back(std::string("closed ") + path); }
  int own_descriptor(int first) const override { return own >= first ? own : -1; }

  std::vector<std::string> seen;
  std::string real_file = "/dev/null";
  int file_error = 0;
  int shell_status = 0;
  int own = -1;

 private:
  int note(const std::string& what, sim::Device device) {
    seen.push_back(what + " " + std::to_string(static_cast<int>(device)));
    return 0;
  }
};

/// A transfer of one byte.
inline int send_byte(int descriptor) {
  std::uint8_t byte = 5;
  wire::SpiTransfer record{&byte, &byte, 1, 0};
  return ioctl(descriptor, wire::spi_transfer_request, &record);
}

}  // namespace kelvo::test

#endif
