// Which motor hangs on which output, module by module.
#ifndef KELVO_SIM_LENS_WIRING_H
#define KELVO_SIM_LENS_WIRING_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "wire/lens_module.h"

namespace kelvo::sim::camera {

using wire::LensModule;

enum class Output : std::uint8_t {
  zoom1_block,
  zoom3_block,
  focus_channel,
  zoom_channel,
  pt5111_a,
  pt5111_b
};
inline constexpr std::size_t outputs = 6;

constexpr std::size_t index(Output output) { return static_cast<std::size_t>(output); }

constexpr const char* name_of(LensModule module) {
  switch (module) {
    case LensModule::de015: return "DE015";
    case LensModule::df033: return "DF033";
    case LensModule::t5391: return "T5391";
  }
  return "";
}

/// A motor's position at each output, 0 where there is none.
using Positions = std::array<std::int32_t, outputs>;

inline constexpr int no_sensor = -1;

struct Wire {
  LensModule module;
  Output output;
  const char* motor;
  const char* count;                   // what one count is
  std::int32_t end_stop;               // counts from the middle of the travel
  int sensor;                          // number of the motor's photo-interrupter
  std::int32_t edge;                   // it is interrupted up to this position
  std::uint16_t offset;                // what its calibration finds, in counts
  bool counted = sensor != no_sensor;  // the lens controller has a counter for it
};

// The sensors that verify and have an offset are 0, the focus, and on DE015 1, zoom 2; zoom 1 has the last.
// clang-format off
inline constexpr std::array wiring{
  //                                                                         end stop     sensor    edge  offset
  Wire{LensModule::de015, Output::zoom1_block,   "zoom 1",        "steps",      2'000,         2,   -800,  6},
  Wire{LensModule::de015, Output::zoom_channel,  "zoom 2",        "1/8 steps", 16'000,         1, -5'600, 42},
  Wire{LensModule::de015, Output::focus_channel, "focus",         "1/8 steps", 16'000,         0, -4'000, 36},
  Wire{LensModule::de015, Output::pt5111_a,      "IR-cut filter", "steps",        200, no_sensor,      0,  0},
  Wire{LensModule::de015, Output::pt5111_b,      "P-iris",        "steps",        200, no_sensor,      0,  0},
  Wire{LensModule::df033, Output::pt5111_a,      "zoom 1",        "steps",      2'000,         3,   -900,  7},
  Wire{LensModule::df033, Output::zoom_channel,  "zoom 2",        "1/8 steps", 16'000,         1, -4'800, 51},
  Wire{LensModule::df033, Output::zoom3_block,   "zoom 3",        "steps",      2'000,         2,   -700,  5},
  Wire{LensModule::df033, Output::focus_channel, "focus",         "1/8 steps", 16'000,         0, -4'400, 29},
  Wire{LensModule::t5391, Output::zoom_channel,  "zoom 1",        "1/2 steps",  4'000,         1, -1'500, 11},
  Wire{LensModule::t5391, Output::focus_channel, "focus",         "steps",      2'000,         0,   -600,  9},
};
// clang-format on

/// Counts from the middle of the travel to either end stop; 0 where the module has no motor.
constexpr std::int32_t end_stop(LensModule module, Output output) {
  for (const Wire& wire : wiring) {
    if (wire.module == module && wire.output == output) return wire.end_stop;
  }
  return 0;
}

/// The motor whose photo-interrupter has this number, or null.
constexpr const Wire* find_sensor(LensModule module, int sensor) {
  for (const Wire& wire : wiring) {
    if (wire.module == module && wire.sensor == sensor && sensor != no_sensor) return &wire;
  }
  return nullptr;
}

}  // namespace kelvo::sim::camera

#endif
