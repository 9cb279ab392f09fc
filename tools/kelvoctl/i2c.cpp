// Registers of the head's controllers by their numbers.
#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "kelvo.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/hexadecimal.h"
#include "tools/kelvoctl/common/numbers.h"
#include "tools/kelvoctl/common/options.h"
#include "tools/kelvoctl/head/head_axis.h"
#include "wire/pan_tilt_registers.h"
#include "wire/paths.h"

namespace kelvo::ctl {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr Range slave_range{0, 127};
constexpr Range length_range{0, 256};
constexpr Range width_range{1, 4};
constexpr std::size_t longest_message = 256;  // register byte included
constexpr std::size_t longest_value = 4;

struct ReadOptions {
  std::string slave;
  std::int64_t number = 0;
  std::int64_t length = 1;
  std::vector<std::string> more;
};

struct WriteOptions {
  std::string slave;
  std::int64_t number = 0;
  std::int64_t width = 1;
  std::vector<std::string> values;
};

/// A register whose write nobody shall make by mistake.
struct Caution {
  int family;
  std::uint8_t number;
  const char* effect;
};

constexpr std::array cautions{
    Caution{vetra, wire::vetra::reset, "restarts the controller"},
    Caution{tasmere, wire::tasmere::reset, "restarts the controller"},
    Caution{tasmere, wire::tasmere::save, "writes the controller's flash"},
};

const HeadAxis* axis_of(std::uint16_t slave) {
  const auto* const axis = std::ranges::find(head_axes, slave, &HeadAxis::slave);
  return axis == head_axes.end() ? nullptr : axis;
}

std::uint16_t slave_of(const std::string& text) {
  for (const HeadAxis& axis : head_axes) {
    if (text == axis.name) return axis.slave;
  }
  const std::optional<std::int64_t> number = parse_number(text);
  if (number && *number >= slave_range.low && *number <= slave_range.high) {
    return static_cast<std::uint16_t>(*number);
  }
  throw Failure(ExitCode::wrong_arguments,
                "\"" + text + "\" is no slave: write pan, tilt or 0 to 127");
}

/// As it was given: a name or a number.
Json shown_slave(const std::string& text) {
  return std::ranges::find(head_axes, text, &HeadAxis::name) != head_axes.end()
             ? Json(text)
             : Json(slave_of(text));
}

/// Numbers of `width` bytes, the high ones first.
Bytes packed(const std::vector<std::string>& values, std::int64_t width) {
  const std::int64_t most = (std::int64_t{1} << 8 * width) - 1;
  Bytes bytes;
  for (const std::string& value : values) {
    const std::optional<std::int64_t> number = parse_number(value);
    if (!number || *number < 0 || *number > most) {
      throw Failure(ExitCode::wrong_arguments,
                    "\"" + value + "\" is no number from 0 to " + std::to_string(most));
    }
    for (std::int64_t left = width - 1; left >= 0; --left) {
      bytes.push_back(static_cast<std::uint8_t>(*number >> 8 * left));
    }
  }
  if (bytes.size() < longest_message) return bytes;
  throw Failure(ExitCode::wrong_arguments, std::to_string(bytes.size()) + " bytes: a message has " +
                                               std::to_string(longest_message - 1) + " at most");
}

void check_result(std::int32_t result, std::uint16_t slave) {
  if (result >= 0) return;
  throw Failure(ExitCode::link_failed, std::string(wire::pan_tilt_device) + ": slave " +
                                           std::to_string(slave) + " does not answer");
}

std::int32_t read_bytes(std::uint16_t slave, const ReadOptions& options, const Bytes& more,
                        Bytes& bytes) {
  const auto number = static_cast<std::uint8_t>(options.number);
  const auto length = static_cast<std::int32_t>(bytes.size());
  if (more.empty()) return ReadI2C(slave, number, bytes.data(), length);
  return ReadI2C_M(slave, number, more.data(), static_cast<std::uint32_t>(more.size() + 1),
                   bytes.data(), length);
}

Json read_registers(Session& session, const ReadOptions& options) {
  const std::uint16_t slave = slave_of(options.slave);
  const Bytes more = packed(options.more, 1);
  session.find_head();
  Bytes bytes(static_cast<std::size_t>(options.length));
  check_result(session.call([&] { return read_bytes(slave, options, more, bytes); }), slave);
  std::uint32_t value = 0;
  for (const std::uint8_t byte : bytes) value = value << 8 | byte;
  const bool is_number = !bytes.empty() && bytes.size() <= longest_value;
  return {{"slave", shown_slave(options.slave)},
          {"register", options.number},
          {"bytes", hexadecimal_bytes(bytes)},
          {"value", is_number ? Json(value) : Json()}};
}

/// Of a family that is not known each of the two asks.
void ask_before(const Session& session, const HeadAxis& axis, std::optional<int> family,
                std::int64_t number) {
  for (const Caution& caution : cautions) {
    if (caution.family != family.value_or(caution.family) || caution.number != number) continue;
    session.confirm("Register " + std::to_string(number) + " of " + axis.name + " " +
                    caution.effect + ". Go on?");
  }
}

Json write(Session& session, const WriteOptions& options) {
  const std::uint16_t slave = slave_of(options.slave);
  const Bytes bytes = packed(options.values, options.width);
  const std::optional<int> family = session.find_head();
  const HeadAxis* const axis = axis_of(slave);
  if (axis != nullptr) ask_before(session, *axis, family, options.number);
  check_result(session.call([&] {
    return SendI2C(slave, static_cast<std::uint8_t>(options.number), bytes.data(),
                   static_cast<std::uint32_t>(bytes.size() + 1));
  }),
               slave);
  if (axis != nullptr) forget_settings(*axis);
  return {{"slave", shown_slave(options.slave)},
          {"register", options.number},
          {"bytes", hexadecimal_bytes(bytes)}};
}

void add_place(CLI::App& command, std::string& slave, std::int64_t& number) {
  require(add_text(command, "SLAVE", slave, "pan, tilt or 0 to 127", "pan|tilt"));
  require(add_number(command, "REGISTER", number, byte_range, "Register, 0 to 255", ""));
}

}  // namespace

void add_i2c(CommandTable& table) {
  CLI::App& group = CommandTable::add_group(table.root(), "i2c",
                                            "Registers of the head's controllers, by number");
  auto [read_command, wanted] =
      table.add<ReadOptions>(group, "read", "Reads a register", read_registers);
  add_place(read_command, wanted.slave, wanted.number);
  add_number(read_command, "BYTES", wanted.length, length_range, "How many; without it 1", "");
  add_list(read_command, "--more", wanted.more,
           "A further byte of the register's index, once for each", "BYTE");
  auto [write_command, given] = table.add<WriteOptions>(group, "write", "Writes a register", write);
  add_place(write_command, given.slave, given.number);
  add_list(write_command, "NUMBER", given.values, "What to write; nothing is the register alone");
  add_number(write_command, "--width", given.width, width_range,
             "Bytes of each number, 1 to 4, high byte first; without it 1");
}

}  // namespace kelvo::ctl
