// What `peek` and `poke` can reach, by number or by the names of the wire tables.
#ifndef KELVO_TOOLS_KELVO_SIM_REGISTERS_H
#define KELVO_TOOLS_KELVO_SIM_REGISTERS_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "sim/camera/camera.h"

namespace kelvo::tools {

/// A decimal number, or a hexadecimal one behind 0x, up to `most`; nothing for any other text.
std::optional<std::uint64_t> parse_number(std::string_view text, std::uint64_t most);
/// The same with a sign, as far as 32 bits reach.
std::optional<std::int32_t> parse_counts(std::string_view text);

/// A place in the camera: which register of which device, as somebody has typed it.
struct Place {
  std::string device;
  std::string reg;
};

/// The devices for messages.
inline constexpr std::string_view device_values = "command, query, register, pt5111, pan or tilt";
bool is_device(std::string_view device);

/// What is there now. Throws a Failure when there is no such thing, or none while nothing runs.
std::uint64_t peek(const sim::camera::Camera& camera, const Place& place);
/// Does what the wire would do. Throws a Failure when the camera refuses; then nothing has happened.
void poke(sim::camera::Camera& camera, const Place& place, std::uint64_t value);

}  // namespace kelvo::tools

#endif
