#include "sim/fault/names.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>

#include "wire/lens_program.h"
#include "wire/pan_tilt_registers.h"
#include "wire/paths.h"

namespace kelvo::sim::fault {
namespace {

struct PortName {
  Port port;
  const char* name;
};
constexpr PortName port_names[] = {
    {Port::spi, "spi"},   {Port::pt5111, "pt5111"}, {Port::i2c, "i2c"},
    {Port::gpio, "gpio"}, {Port::file, "file"},
};

struct FrameName {
  Port port;
  Frame frame;
  const char* name;
};
constexpr FrameName frame_names_table[] = {
    {Port::spi, Frame::open, "open"},
    {Port::spi, Frame::boot_command, "boot-command"},
    {Port::spi, Frame::checksum_read, "checksum-read"},
    {Port::spi, Frame::payload, "payload"},
    {Port::spi, Frame::command, "command"},
    {Port::spi, Frame::query, "query"},
    {Port::pt5111, Frame::open, "open"},
    {Port::pt5111, Frame::word, "word"},
    {Port::i2c, Frame::open, "open"},
    {Port::i2c, Frame::write, "write"},
    {Port::i2c, Frame::read, "read"},
    {Port::gpio, Frame::shell, "shell"},
    {Port::file, Frame::file_write, "write"},
    {Port::file, Frame::file_read, "read"},
};

constexpr const char* camera_files[] = {
    wire::iris_record_copies[0],       wire::iris_record_copies[1],
    wire::iris_record_copies[2],       wire::stabiliser_record_copies[0],
    wire::stabiliser_record_copies[1], wire::stabiliser_record_copies[2],
    wire::iris_default_record,
};
static_assert(std::size(camera_files) <= 8);

/// People write zoom1-enable for zoom1_enable.
bool same_name(std::string_view typed, std::string_view name) {
  return std::equal(typed.begin(), typed.end(), name.begin(), name.end(),
                    [](char a, char b) { return a == b || (a == '-' && b == '_'); });
}

template <typename Table>
std::optional<std::uint8_t> code_of(const Table& table, std::string_view text) {
  for (const wire::LensCode& row : table) {
    if (same_name(text, row.name)) return row.code;
  }
  if (const auto number = number_of(text, 255)) return static_cast<std::uint8_t>(*number);
  return {};
}

template <typename Table>
std::int16_t number_in(const Table& registers, std::string_view text) {
  for (const wire::ControllerRegister& row : registers) {
    if (same_name(text, row.name)) return row.number;
  }
  return -1;
}

}  // namespace

std::optional<std::uint64_t> number_of(std::string_view text, std::uint64_t greatest) {
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (hexadecimal) text.remove_prefix(2);
  std::uint64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, number, hexadecimal ? 16 : 10);
  if (error != std::errc{} || behind != end || number > greatest) return {};
  return number;
}

std::optional<int> error_of(std::string_view text) {
  constexpr int greatest_error = 133;
  for (int number = 1; number <= greatest_error; ++number) {
    const char* const name = strerrorname_np(number);
    if (name != nullptr && text == name) return number;
  }
  const auto number = number_of(text, greatest_error);
  if (!number || *number == 0) return {};
  return static_cast<int>(*number);
}

std::optional<std::uint8_t> command_of(std::string_view text) {
  return code_of(wire::command::table, text);
}

std::optional<std::uint8_t> query_of(std::string_view text) {
  return code_of(wire::query::table, text);
}

std::optional<std::uint16_t> slave_of(std::string_view text) {
  if (text == "pan") return wire::pan_slave;
  if (text == "tilt") return wire::tilt_slave;
  if (const auto number = number_of(text, 127)) return static_cast<std::uint16_t>(*number);
  return {};
}

std::optional<Register> register_of(Port port, std::string_view text) {
  constexpr std::uint64_t last_word_register = 63;
  if (const auto number = number_of(text, port == Port::pt5111 ? last_word_register : 255)) {
    const auto both = static_cast<std::int16_t>(*number);
    return Register{both, both};
  }
  if (port != Port::i2c) return {};
  const Register named{number_in(wire::vetra::registers, text),
                       number_in(wire::tasmere::registers, text)};
  if (named.vetra < 0 && named.tasmere < 0) return {};
  return named;
}

std::optional<Port> port_of(std::string_view text) {
  for (const PortName& row : port_names) {
    if (text == row.name) return row.port;
  }
  return {};
}

const char* name_of(Port port) {
  for (const PortName& row : port_names) {
    if (port == row.port) return row.name;
  }
  return "";
}

std::string all_ports() {
  std::string names;
  for (const PortName& row : port_names)
    names += (names.empty() ? "" : ", ") + std::string(row.name);
  return names;
}

std::optional<Frame> frame_of(Port port, std::string_view text) {
  for (const FrameName& row : frame_names_table) {
    if (row.port == port && text == row.name) return row.frame;
  }
  return {};
}

Frames frames_of(Port port) {
  unsigned frames = 0;
  for (const FrameName& row : frame_names_table) {
    if (row.port == port) frames |= bit(row.frame);
  }
  return static_cast<Frames>(frames);
}

std::string frame_names(Port port) {
  std::string names;
  for (const FrameName& row : frame_names_table) {
    if (row.port == port) names += (names.empty() ? "" : ", ") + std::string(row.name);
  }
  return names;
}

std::uint8_t files_called(std::string_view path) {
  unsigned files = 0;
  for (std::size_t i = 0; i < std::size(camera_files); ++i) {
    const std::string_view file = camera_files[i];
    if (path == file || path == file.substr(file.rfind('/') + 1)) files |= 1U << i;
  }
  return static_cast<std::uint8_t>(files);
}

}  // namespace kelvo::sim::fault
