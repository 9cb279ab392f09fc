// The register maps of the head as its controllers hold to them.
#ifndef KELVO_SIM_HEAD_HEAD_REGISTERS_H
#define KELVO_SIM_HEAD_HEAD_REGISTERS_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "wire/pan_tilt.h"
#include "wire/pan_tilt_registers.h"

namespace kelvo::sim::camera {

using wire::HeadFamily;

enum class HeadAxis : std::uint8_t { pan, tilt };

constexpr const char* name_of(HeadFamily family) {
  return family == HeadFamily::vetra ? "Vetra" : "Tasmere";
}
constexpr const char* name_of(HeadAxis axis) { return axis == HeadAxis::pan ? "pan" : "tilt"; }

constexpr std::span<const wire::ControllerRegister> registers_of(HeadFamily family) {
  if (family == HeadFamily::vetra) return wire::vetra::registers;
  return wire::tasmere::registers;
}

/// What was written to each register of a controller, in the order of its map.
class RegisterFile {
 public:
  explicit RegisterFile(HeadFamily family) : family_(family) {}

  /// The map's row; null when the controller has no such register.
  const wire::ControllerRegister* find(std::uint8_t number) const;
  /// 0 until it is written.
  std::uint32_t value(std::uint8_t number) const { return values_[index(number)]; }
  void set(std::uint8_t number, std::uint32_t value) { values_[index(number)] = value; }

 private:
  static constexpr std::size_t most_registers =
      std::max(wire::vetra::registers.size(), wire::tasmere::registers.size());

  std::size_t index(std::uint8_t number) const;

  HeadFamily family_;
  std::array<std::uint32_t, most_registers> values_{};
};

/// How one register is read.
struct Reading {
  HeadFamily family;
  std::uint8_t number;
  std::uint8_t source;  // the register whose written value it gives
  bool four_bytes;      // four bytes may be asked for too, and zeros follow the value
};

// clang-format off
inline constexpr std::array readings{
  Reading{HeadFamily::vetra,   wire::vetra::set_position_gains, wire::vetra::set_position_gains, true},
  Reading{HeadFamily::vetra,   wire::vetra::set_speed_gains,    wire::vetra::set_speed_gains,    true},
  Reading{HeadFamily::vetra,   wire::vetra::set_current,        wire::vetra::set_current,        true},
  Reading{HeadFamily::vetra,   wire::vetra::set_acceleration,   wire::vetra::set_acceleration,   true},
  Reading{HeadFamily::vetra,   wire::vetra::set_deceleration,   wire::vetra::set_deceleration,   true},
  Reading{HeadFamily::vetra,   wire::vetra::limit_enable,       wire::vetra::set_limit_enable,   false},
  Reading{HeadFamily::vetra,   wire::vetra::limits,             wire::vetra::set_limits,         false},
  Reading{HeadFamily::tasmere, wire::tasmere::travel_mode,      wire::tasmere::set_travel_mode,  false},
  Reading{HeadFamily::tasmere, wire::tasmere::limit_start,      wire::tasmere::set_limit_start,  true},
  Reading{HeadFamily::tasmere, wire::tasmere::limit_length,     wire::tasmere::set_limit_length, true},
  Reading{HeadFamily::tasmere, wire::tasmere::use_hall,         wire::tasmere::set_use_hall,     false},
};
// clang-format on

/// The row of a register that gives back what was written; null for every other register.
constexpr const Reading* find_reading(HeadFamily family, std::uint8_t number) {
  for (const Reading& reading : readings) {
    if (reading.family == family && reading.number == number) return &reading;
  }
  return nullptr;
}

/// What a controller has in its flash when it comes: as a camera's set-up leaves it, for the settings
/// that the models act on.
struct FactorySetting {
  HeadFamily family;
  HeadAxis axis;
  std::uint8_t number;
  std::uint32_t value;
};

// clang-format off
inline constexpr std::array factory_settings{
  FactorySetting{HeadFamily::tasmere, HeadAxis::pan,  wire::tasmere::set_use_hall,          1},
  FactorySetting{HeadFamily::tasmere, HeadAxis::pan,  wire::tasmere::set_travel_mode,       1},
  FactorySetting{HeadFamily::tasmere, HeadAxis::pan,  wire::tasmere::set_limit_length, 65'535},
  FactorySetting{HeadFamily::tasmere, HeadAxis::tilt, wire::tasmere::set_limit_length, 20'025},
};
// clang-format on

}  // namespace kelvo::sim::camera

#endif
