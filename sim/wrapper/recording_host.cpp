#include "sim/wrapper/recording_host.h"

#include <linux/i2c-dev.h>

#include <cerrno>
#include <chrono>

#include "sim/seam/real.h"
#include "sim/wrapper/requests.h"
#include "wire/spi_device.h"

namespace kelvo::sim {
namespace {

std::int64_t now() {
  return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

template <typename Call, typename Note>
Answer RecordingHost::recorded(trace::Event event, Call call, Note note) {
  event.time = now();
  const int result = call();
  event.result = result == -1 ? -errno : result;
  note(event);
  recording_.record(event);
  return event.result;
}

void RecordingHost::opened(Device device, int error) {
  trace::Event event = open_event(device);
  event.time = now();
  event.result = error;
  recording_.record(event);
}

Answer RecordingHost::close(Device device) {
  trace::Event event = close_event(device);
  event.time = now();
  recording_.record(event);
  return {};
}

Answer RecordingHost::transfer(Device device, int descriptor, std::span<const std::uint8_t> sent,
                               std::span<std::uint8_t> received) {
  if (device == Device::none) return {};
  wire::SpiTransfer record{sent.data(), received.data(), static_cast<std::uint32_t>(sent.size()),
                           0};
  return recorded(
      transfer_event(device, sent),
      [&] { return real().ioctl(descriptor, wire::spi_transfer_request, &record); },
      [received](trace::Event& event) { note_received(event, received); });
}

Answer RecordingHost::set_speed(Device device, int descriptor, std::uint32_t hertz) {
  if (device == Device::none) return {};
  return recorded(
      speed_event(device, hertz),
      [&] { return real().ioctl(descriptor, wire::spi_speed_request, &hertz); }, nothing_more);
}

Answer RecordingHost::i2c(Device device, int descriptor, std::span<i2c_msg> messages) {
  if (device == Device::none) return {};
  i2c_rdwr_ioctl_data request{messages.data(), static_cast<std::uint32_t>(messages.size())};
  return recorded(
      i2c_event(device, messages), [&] { return real().ioctl(descriptor, I2C_RDWR, &request); },
      [messages](trace::Event& event) { note_received(event, messages); });
}

Answer RecordingHost::shell(const char* command) {
  return recorded(
      shell_event(command), [command] { return real().system(command); }, nothing_more);
}

}  // namespace kelvo::sim
