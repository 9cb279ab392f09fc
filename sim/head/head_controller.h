#ifndef KELVO_SIM_HEAD_HEAD_CONTROLLER_H
#define KELVO_SIM_HEAD_HEAD_CONTROLLER_H

#include <cstddef>
#include <cstdint>
#include <optional>

#include "sim/common/exchange.h"
#include "sim/common/variety.h"
#include "sim/head/axis.h"
#include "sim/head/head_registers.h"

namespace kelvo::sim::camera {

/// One motor controller of the head, of either family: its registers and its axis.
///
/// A Vetra controller counts against the common scale, so its direction 1 is the one in which the
/// common position grows. Gains, currents and limit steps are kept and change nothing.
class HeadController {
 public:
  HeadController(HeadFamily family, HeadAxis axis, const Variety& variety = {});

  /// A message: a register and its data, or nothing at all.
  void write(Exchange& exchange);
  /// So many bytes from the register that was sent.
  void read(Exchange& exchange, std::size_t length) const;

  /// The power fails: the axis stands still where it is, and what is not in flash is lost.
  void lose_power(Time now);
  /// The controller starts anew, with what it has in flash. The axis stands still where it is.
  void restart(Time now);

  /// Somebody turns the axis by so many counts.
  void push(Time now, std::int32_t counts) { axis_.push(now, counts); }
  /// What a register holds, one that can only be written too; nothing where there is none.
  std::optional<std::uint32_t> peek(std::uint8_t number, Time now) const;

  const Axis& axis() const { return axis_; }
  bool asleep() const { return asleep_; }
  /// The position on the scale that both families share.
  std::uint32_t common_position(Time now) const;

 private:
  void obey_vetra(Time now, std::uint8_t number, std::span<const std::uint8_t> data);
  void obey_tasmere(Time now, std::uint8_t number, std::span<const std::uint8_t> data);
  void wake_up(Exchange& exchange);
  void apply_limits(Time now);
  void apply_ramp();
  double ramp(std::uint8_t number) const;
  std::optional<Arc> vetra_limits() const;
  std::optional<Arc> tasmere_limits() const;

  const wire::ControllerRegister* find(std::uint8_t number) const;
  std::uint32_t value_of(std::uint8_t number, Time now) const;
  std::uint32_t vetra_value(std::uint8_t number, Time now) const;
  std::uint32_t tasmere_value(std::uint8_t number, Time now) const;
  std::uint32_t temperature(Time now) const;

  HeadFamily family_;
  HeadAxis which_;
  Axis axis_;
  RegisterFile settings_;
  RegisterFile saved_;  // come back with a restart
  bool asleep_ = false;
  Variety variety_;
};

}  // namespace kelvo::sim::camera

#endif
