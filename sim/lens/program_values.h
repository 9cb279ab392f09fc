// The values that commands bring to the lens controller's program, and those that it has of its own.
#ifndef KELVO_SIM_LENS_PROGRAM_VALUES_H
#define KELVO_SIM_LENS_PROGRAM_VALUES_H

#include <array>
#include <cstdint>
#include <optional>

#include "wire/lens_module.h"
#include "wire/lens_program.h"

namespace kelvo::sim::camera {

/// The last value of each command: its four argument bytes, the first one on top.
using CommandValues = std::array<std::uint32_t, wire::first_query>;

constexpr std::uint16_t low_word(std::uint32_t value) { return static_cast<std::uint16_t>(value); }

/// What a program sets by itself until somebody else does.
CommandValues own_values();

/// What a calibration run finds: a unit in good order, and unlike the program's own values.
void store_measured(wire::LensModule module, CommandValues& values);

/// The value of a setting that a calibration run finds; 0 where it finds none.
std::uint16_t measured(wire::LensModule module, std::uint8_t command);

/// The answer to a query that reads a setting back, or a measured noise; nothing for any other query.
std::optional<std::uint32_t> read_back(std::uint8_t query, const CommandValues& values);

}  // namespace kelvo::sim::camera

#endif
