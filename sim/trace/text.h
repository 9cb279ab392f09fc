// How numbers, bytes and names are written in a trace.
#ifndef KELVO_SIM_TRACE_TEXT_H
#define KELVO_SIM_TRACE_TEXT_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kelvo::sim::trace {

using Bytes = std::span<const std::uint8_t>;

/// `zoom1_enable` as `zoom1-enable`.
std::string dashed(std::string_view name);
/// Adds one more meaning, if it is not there yet.
void add_meaning(std::string& meanings, std::string_view name);
/// So many hexadecimal digits at least.
std::string hex(std::uint32_t number, int digits);
/// Two digits each; what is not kept of `length` bytes is counted.
std::string hex_bytes(Bytes kept, std::size_t length);
inline std::string hex_bytes(Bytes bytes) { return hex_bytes(bytes, bytes.size()); }
/// `3 bytes: 01 02 03`.
std::string counted_bytes(Bytes kept, std::size_t length);
/// All of the bytes as one number, the highest first.
std::uint32_t high_first(Bytes bytes);
/// Of those that are not empty, with blanks between them.
std::string joined(std::initializer_list<std::string_view> parts);

}  // namespace kelvo::sim::trace

#endif
