// The names and numbers that the text of a fault may have.
#ifndef KELVO_SIM_FAULT_NAMES_H
#define KELVO_SIM_FAULT_NAMES_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "sim/fault/fault.h"

namespace kelvo::sim::fault {

/// Decimal, or hexadecimal behind 0x.
std::optional<std::uint64_t> number_of(std::string_view text, std::uint64_t greatest);
/// EIO or 5.
std::optional<int> error_of(std::string_view text);

// By name, with - or _ in it, or by number.
std::optional<std::uint8_t> command_of(std::string_view text);
std::optional<std::uint8_t> query_of(std::string_view text);
std::optional<std::uint16_t> slave_of(std::string_view text);
/// Only the head's registers have names.
std::optional<Register> register_of(Port port, std::string_view text);

std::optional<Port> port_of(std::string_view text);
const char* name_of(Port port);
/// All ports, for messages.
std::string all_ports();

std::optional<Frame> frame_of(Port port, std::string_view text);
/// All frames of a port, and their names for messages.
Frames frames_of(Port port);
std::string frame_names(Port port);

/// The camera's files with this path, or with this last part of it; a bit each.
std::uint8_t files_called(std::string_view path);

}  // namespace kelvo::sim::fault

#endif
