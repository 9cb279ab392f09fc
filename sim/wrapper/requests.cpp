#include "sim/wrapper/requests.h"

#include <cstring>

namespace kelvo::sim {
namespace {

using trace::Act;
using trace::Event;
using trace::Wire;

Event event_on(Wire wire, Act act) {
  Event event{};
  event.wire = wire;
  event.act = act;
  return event;
}

Event event_on(Device device, Act act) {
  if (device == Device::i2c_2) return event_on(Wire::head, act);
  return event_on(device == Device::spi_pt5111 ? Wire::pt5111 : Wire::lens, act);
}

bool reads(const i2c_msg& message) { return (message.flags & I2C_M_RD) != 0; }

}  // namespace

Event open_event(Device device) { return event_on(device, Act::open); }

Event close_event(Device device) { return event_on(device, Act::close); }

Event transfer_event(Device device, std::span<const std::uint8_t> sent) {
  Event event = event_on(device, Act::transfer);
  if (event.wire != Wire::head) add_sent(event, sent);
  return event;
}

Event speed_event(Device device, std::uint32_t hertz) {
  Event event = event_on(device, Act::speed);
  event.sent_length = sizeof hertz;
  std::memcpy(event.sent.data(), &hertz, sizeof hertz);
  return event;
}

Event i2c_event(Device device, std::span<const i2c_msg> messages) {
  Event event = event_on(device, Act::transfer);
  event.slave = messages.empty() ? 0 : messages.front().addr;
  event.messages = static_cast<std::uint16_t>(messages.size());
  for (const i2c_msg& message : messages) {
    if (event.wire == Wire::head && !reads(message)) add_sent(event, {message.buf, message.len});
  }
  return event;
}

Event shell_event(const char* command) {
  Event event = event_on(Wire::reset_line, Act::shell);
  add_sent(event, {reinterpret_cast<const std::uint8_t*>(command), std::strlen(command)});
  return event;
}

void note_received(Event& event, std::span<const std::uint8_t> received) {
  add_received(event, {event.result >= 0 ? received.data() : nullptr, received.size()});
}

void note_received(Event& event, std::span<const i2c_msg> messages) {
  for (const i2c_msg& message : messages) {
    if (reads(message))
      note_received(event, std::span<const std::uint8_t>{message.buf, message.len});
  }
}

}  // namespace kelvo::sim
