#ifndef KELVO_SIM_LENS_SENSORS_H
#define KELVO_SIM_LENS_SENSORS_H

#include <array>
#include <cstdint>
#include <optional>

#include "sim/common/exchange.h"
#include "sim/common/variety.h"
#include "sim/lens/motor_states.h"

namespace kelvo::sim::camera {

/// What the sensors see, and what they are supplied from.
struct SensorView {
  LensModule module;
  Time now;
  const MotorStates& motors;
  std::uint16_t supply;  // the register of the photo-interrupters' supply
  bool pt5111_supply;    // of the one at the PT5111
  std::uint16_t warmth;  // of the heater, as the converter sees it
  const Variety& variety;
};

/// The photo-interrupters and the analogue converter, which share commands and a query.
///
/// The query for a level means the converter's channel from the command that starts a conversion on. On
/// DE015, where it also reads photo-interrupters, it means these again from the next write to the register
/// of their supply. An interrupter sees nothing without its supply: on DE015 that register, for one at the
/// PT5111 the chip's own; the others of DF033 and those of T5391 are always supplied.
class Sensors {
 public:
  static constexpr std::size_t most = 4;

  /// A command that asks for a service.
  void obey(Exchange& exchange, LensModule module);
  void supply_written() { converted_at_.reset(); }

  /// What a photo-interrupter does; nothing where there is none.
  struct Interrupter {
    bool supplied;
    bool interrupted;
    bool calibrated;
    std::uint16_t offset;
  };
  std::optional<Interrupter> interrupter(int sensor, const SensorView& view) const;
  /// What a channel of the converter gives when it is asked.
  static constexpr std::uint8_t converter_channels = 4;
  static std::uint16_t converted(std::uint8_t channel, const SensorView& view);

  /// The answer to a query about sensors; nothing for any other query.
  std::optional<std::uint32_t> answer(std::uint8_t query, std::uint8_t argument,
                                      const SensorView& view) const;

 private:
  bool calibrated(int sensor, Time now) const;
  std::uint16_t level(std::uint8_t argument, const SensorView& view) const;
  std::uint16_t offset(const Wire* wire, Time now) const;
  std::uint16_t offset_of(Output output, const SensorView& view) const;

  std::array<std::optional<Time>, most> calibrated_at_{};
  std::optional<Time> converted_at_;
};

}  // namespace kelvo::sim::camera

#endif
