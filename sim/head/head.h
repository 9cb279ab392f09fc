#ifndef KELVO_SIM_HEAD_HEAD_H
#define KELVO_SIM_HEAD_HEAD_H

#include <cstdint>
#include <optional>
#include <span>

#include "sim/common/violations.h"
#include "sim/head/head_controller.h"

namespace kelvo::sim::camera {

/// One message of a combined I2C request: bytes for a slave, or from it.
struct BusMessage {
  std::uint16_t slave;
  bool reads;
  std::span<std::uint8_t> bytes;
};

/// How long a request occupies the bus: up to the first address that nobody acknowledges.
Time wire_time(std::span<const BusMessage> messages);

/// The pan/tilt head: two motor controllers of one family on an I2C bus.
class Head {
 public:
  /// A Vetra controller needs so much time behind each transfer.
  static constexpr Time vetra_pause = std::chrono::milliseconds(2);

  explicit Head(HeadFamily family, const Variety& variety = {});

  /// A combined request that is over now: the number of its messages, or a negative error number when nobody
  /// acknowledges. A controller that does not understand a message acknowledges it all the same;
  /// what is read then is zeros.
  int transfer(Time now, std::span<const BusMessage> messages, Violations& violations);

  /// The power fails, and comes back: settings are lost that are not in flash.
  void lose_power(Time now);
  void power_up(Time now);
  HeadController& controller(HeadAxis axis) { return axis == HeadAxis::pan ? pan_ : tilt_; }
  /// The controller at this address restarts by itself.
  void restart(std::uint16_t slave, Time now);

  HeadFamily family() const { return family_; }
  const HeadController& pan() const { return pan_; }
  const HeadController& tilt() const { return tilt_; }
  /// Requests that a controller acknowledged.
  std::uint32_t transfers() const { return transfers_; }

 private:
  void serve(Exchange& exchange, HeadController& controller, std::span<const BusMessage> messages);
  void judge_pause(Exchange& exchange, Time begun);

  HeadFamily family_;
  HeadController pan_;
  HeadController tilt_;
  std::uint32_t transfers_ = 0;
  std::optional<Time> ready_;  // nothing: the family is not told yet
};

}  // namespace kelvo::sim::camera

#endif
