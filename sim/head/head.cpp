#include "sim/head/head.h"

#include <algorithm>
#include <cerrno>

#include "sim/common/wire_time.h"

namespace kelvo::sim::camera {
namespace {

bool is_write(std::span<const BusMessage> messages) {
  return messages.size() == 1 && !messages[0].reads;
}

/// One register byte out, and bytes in behind a repeated start.
bool is_read(std::span<const BusMessage> messages) {
  return messages.size() == 2 && !messages[0].reads && messages[0].bytes.size() == 1 &&
         messages[1].reads && messages[0].slave == messages[1].slave;
}

bool is_of_the_head(const BusMessage& message) {
  return message.slave == wire::pan_slave || message.slave == wire::tilt_slave;
}

auto first_stranger(std::span<const BusMessage> messages) {
  return std::find_if_not(messages.begin(), messages.end(), is_of_the_head);
}

}  // namespace

Head::Head(HeadFamily family, const Variety& variety)
    : family_(family),
      pan_(family, HeadAxis::pan, variety),
      tilt_(family, HeadAxis::tilt, variety) {}

void Head::lose_power(Time now) {
  for (HeadController* const controller : {&pan_, &tilt_}) controller->lose_power(now);
}

void Head::power_up(Time now) {
  for (HeadController* const controller : {&pan_, &tilt_}) controller->restart(now);
  ready_.reset();
}

Time wire_time(std::span<const BusMessage> messages) {
  const auto stranger = first_stranger(messages);
  Time time = i2c_stop;
  for (auto message = messages.begin(); message != stranger; ++message) {
    time += i2c_message(message->bytes.size());
  }
  return stranger == messages.end() ? time : time + i2c_message(0);
}

int Head::transfer(Time now, std::span<const BusMessage> messages, Violations& violations) {
  for (const BusMessage& message : messages) {
    if (message.reads) std::fill(message.bytes.begin(), message.bytes.end(), std::uint8_t{0});
  }
  const BusMessage& first = messages[0];
  const auto sent = first.reads ? std::span<const std::uint8_t>{} : first.bytes;
  const auto stranger = first_stranger(messages);
  if (stranger != messages.end()) {
    violations.record(now, Unit::i2c_bus, sent, "there is no slave %u", stranger->slave);
    return -ENXIO;
  }
  const bool pans = first.slave == wire::pan_slave;
  Exchange exchange{now, pans ? Unit::pan_controller : Unit::tilt_controller, sent, violations};
  ++transfers_;
  judge_pause(exchange, now - wire_time(messages));
  serve(exchange, pans ? pan_ : tilt_, messages);
  return static_cast<int>(messages.size());
}

void Head::restart(std::uint16_t slave, Time now) {
  if (slave == wire::pan_slave) pan_.restart(now);
  if (slave == wire::tilt_slave) tilt_.restart(now);
}

void Head::serve(Exchange& exchange, HeadController& controller,
                 std::span<const BusMessage> messages) {
  if (is_write(messages)) return controller.write(exchange);
  if (!is_read(messages)) {
    return exchange.violation("neither a write nor a read of a register with one byte");
  }
  const std::span<std::uint8_t> received = messages[1].bytes;
  controller.read(exchange, received.size());
  std::copy_n(exchange.reply.begin(), std::min(exchange.reply.size(), received.size()),
              received.begin());
  const bool tells_family = exchange.sent[0] == wire::vetra::family;
  if (family_ == HeadFamily::vetra && tells_family) ready_ = exchange.now + vetra_pause;
}

/// Until it has read the family, a program cannot know that it owes a pause, so none is due for what it
/// sends up to then, and for that read itself.
void Head::judge_pause(Exchange& exchange, Time begun) {
  if (!ready_) return;
  if (begun < *ready_) {
    const Time since = begun - (*ready_ - vetra_pause);
    exchange.violation("%lld us after the last transfer to the head, must be at least 2000",
                       static_cast<long long>(since.count() / 1000));
  }
  ready_ = exchange.now + vetra_pause;
}

}  // namespace kelvo::sim::camera
