#include "tools/kelvo-sim/registers.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "tools/common/failure.h"
#include "wire/lens_program.h"
#include "wire/motor_channels.h"

namespace kelvo::tools {
namespace {

using sim::camera::Camera;
using sim::camera::HeadAxis;
using sim::camera::Violation;

struct Name {
  std::string_view name;
  std::uint8_t number;
};

// The motor block's registers have their names here: those of a channel are members of one row.
constexpr std::array motor_block_names{
    Name{"focus_control", wire::focus_channel.control},
    Name{"focus_mode", wire::focus_channel.mode},
    Name{"focus_count_low", wire::focus_channel.count_low},
    Name{"focus_count_high", wire::focus_channel.count_high},
    Name{"focus_period", wire::focus_channel.period},
    Name{"focus_current", wire::focus_channel.current},
    Name{"focus_counter", wire::focus_channel.counter},
    Name{"focus_status", wire::focus_channel.status},
    Name{"zoom_control", wire::zoom_channel.control},
    Name{"zoom_mode", wire::zoom_channel.mode},
    Name{"zoom_count_low", wire::zoom_channel.count_low},
    Name{"zoom_count_high", wire::zoom_channel.count_high},
    Name{"zoom_period", wire::zoom_channel.period},
    Name{"zoom_current", wire::zoom_channel.current},
    Name{"zoom_counter", wire::zoom_channel.counter},
    Name{"zoom_status", wire::zoom_channel.status},
    Name{"enable", wire::motor_block_enable.reg},
    Name{"clock", wire::motor_block_clock.reg},
    Name{"commit", wire::motor_block_commit.reg},
    Name{"interrupter_supply", wire::interrupter_supply},
    Name{"filter_coil", wire::filter_coil},
    Name{"filter_direction", wire::filter_direction},
};

/// What is behind a name now: the names of the program that runs, or of the head that is fitted.
using FindName = std::optional<std::uint8_t> (*)(const Camera& camera, std::string_view name);

template <typename Table>
std::optional<std::uint8_t> find_code(const Table& table, const Camera& camera,
                                      std::string_view name) {
  for (const wire::LensCode& row : table) {
    const auto module = camera.lens().module();
    if (row.name == name && module && knows(row.programs, *module)) return row.code;
  }
  return {};
}

std::optional<std::uint8_t> find_command(const Camera& camera, std::string_view name) {
  return find_code(wire::command::table, camera, name);
}

std::optional<std::uint8_t> find_query(const Camera& camera, std::string_view name) {
  return find_code(wire::query::table, camera, name);
}

std::optional<std::uint8_t> find_register(const Camera& /*camera*/, std::string_view name) {
  const auto* const found = std::ranges::find(motor_block_names, name, &Name::name);
  return found != motor_block_names.end() ? std::optional(found->number) : std::nullopt;
}

std::optional<std::uint8_t> find_nothing(const Camera& /*camera*/, std::string_view /*name*/) {
  return {};
}

std::optional<std::uint8_t> find_head(const Camera& camera, std::string_view name) {
  for (const wire::ControllerRegister& row : sim::camera::registers_of(camera.head().family())) {
    if (row.name == name) return row.number;
  }
  return {};
}

HeadAxis axis_of(std::string_view device) {
  return device == "tilt" ? HeadAxis::tilt : HeadAxis::pan;
}

/// A register and, for some queries, what they ask about.
struct Address {
  std::string_view device;
  std::uint8_t number = 0;
  std::uint8_t argument = 0;
};

template <typename T>
std::optional<std::uint64_t> widened(std::optional<T> value) {
  return value ? std::optional<std::uint64_t>(*value) : std::nullopt;
}

std::optional<std::uint64_t> peek_command(const Camera& camera, const Address& address) {
  return widened(camera.peek_command(address.number));
}
std::optional<std::uint64_t> peek_query(const Camera& camera, const Address& address) {
  return widened(camera.peek_query(address.number, address.argument));
}
std::optional<std::uint64_t> peek_register(const Camera& camera, const Address& address) {
  return widened(camera.peek_register(address.number));
}
std::optional<std::uint64_t> peek_pt5111(const Camera& camera, const Address& address) {
  return widened(camera.peek_pt5111(address.number));
}
std::optional<std::uint64_t> peek_head(const Camera& camera, const Address& address) {
  return widened(camera.peek_head(axis_of(address.device), address.number));
}

std::optional<Violation> poke_command(Camera& camera, const Address& address, std::uint64_t value) {
  return camera.poke_command(address.number, static_cast<std::uint32_t>(value));
}
std::optional<Violation> poke_register(Camera& camera, const Address& address,
                                       std::uint64_t value) {
  return camera.poke_register(address.number, static_cast<std::uint16_t>(value));
}
std::optional<Violation> poke_pt5111(Camera& camera, const Address& address, std::uint64_t value) {
  return camera.poke_pt5111(address.number, static_cast<std::uint16_t>(value));
}

/// Bytes behind the register byte.
std::size_t width_of(const Camera& camera, std::uint8_t reg) {
  for (const wire::ControllerRegister& row : sim::camera::registers_of(camera.head().family())) {
    if (row.number == reg) return row.width;
  }
  return 0;
}

std::optional<Violation> poke_head(Camera& camera, const Address& address, std::uint64_t value) {
  std::vector<std::uint8_t> data(width_of(camera, address.number));
  for (std::size_t i = 0; i < data.size(); ++i) {
    data[i] = static_cast<std::uint8_t>(value >> (8 * (data.size() - 1 - i)));
  }
  return camera.poke_head(axis_of(address.device), address.number, data);
}

constexpr std::uint64_t most_in(std::size_t bytes) { return (std::uint64_t{1} << (8 * bytes)) - 1; }

struct DeviceRow {
  std::string_view device;
  std::string_view what;  // for messages
  std::size_t bytes;      // of a value; 0: the register says
  FindName find;
  std::optional<std::uint64_t> (*peek)(const Camera& camera, const Address& address);
  std::optional<Violation> (*poke)(Camera& camera, const Address& address, std::uint64_t value);
};

constexpr std::array devices{
    DeviceRow{"command", "command of the program", 4, find_command, peek_command, poke_command},
    DeviceRow{"query", "query of the program", 4, find_query, peek_query, nullptr},
    DeviceRow{"register", "register of the motor block", 2, find_register, peek_register,
              poke_register},
    DeviceRow{"pt5111", "register of the PT5111", 2, find_nothing, peek_pt5111, poke_pt5111},
    DeviceRow{"pan", "register of the pan controller", 0, find_head, peek_head, poke_head},
    DeviceRow{"tilt", "register of the tilt controller", 0, find_head, peek_head, poke_head},
};

constexpr char no_power[] = "the power is off: switch it on";

const DeviceRow& row_of(const Place& place) {
  return *std::ranges::find(devices, std::string_view(place.device), &DeviceRow::device);
}

Failure refusal(const Place& place, const std::string& why) {
  return {ExitCode::refused, place.device + " " + place.reg + ": " + why};
}

/// The name or number, and behind a colon what a query asks about.
Address address_of(const Camera& camera, const Place& place) {
  constexpr std::uint64_t most = 255;
  const std::size_t colon = place.reg.find(':');
  const std::string_view name = std::string_view(place.reg).substr(0, colon);
  const DeviceRow& row = row_of(place);
  Address address{row.device};
  const auto number = parse_number(name, most);
  const auto found = number ? static_cast<std::uint8_t>(*number) : row.find(camera, name);
  if (!found) {
    const bool no_program = row.bytes == 4 && !camera.lens().module();
    throw refusal(place, no_program
                             ? "no program runs: boot the lens controller first"
                             : "there is no " + std::string(row.what) +
                                   " of this name now: take a number from 0 to 255, or a name of "
                                   "docs/wire.md");
  }
  address.number = *found;
  if (colon == std::string::npos) return address;
  const auto argument = parse_number(std::string_view(place.reg).substr(colon + 1), most);
  if (!argument) throw refusal(place, "a number from 0 to 255 must follow the colon");
  address.argument = static_cast<std::uint8_t>(*argument);
  return address;
}

}  // namespace

bool is_device(std::string_view device) {
  return std::ranges::find(devices, device, &DeviceRow::device) != devices.end();
}

std::uint64_t peek(const Camera& camera, const Place& place) {
  const DeviceRow& row = row_of(place);
  if (const auto value = row.peek(camera, address_of(camera, place))) return *value;
  const char* const why = !camera.powered() ? no_power
                          : !camera.lens().module() && row.bytes != 0
                              ? "no program runs: boot the lens controller first"
                              : nullptr;
  throw refusal(place, why != nullptr ? why
                                      : "there is no such " + std::string(row.what) +
                                            ": docs/wire.md has those that there are");
}

void poke(Camera& camera, const Place& place, std::uint64_t value) {
  const DeviceRow& row = row_of(place);
  if (row.poke == nullptr) throw refusal(place, "a query is only answered: poke a command");
  if (!camera.powered()) throw refusal(place, no_power);
  const Address address = address_of(camera, place);
  const std::size_t bytes = row.bytes != 0 ? row.bytes : width_of(camera, address.number);
  if (value > most_in(bytes)) {
    throw refusal(place, std::to_string(value) + " is more than its " + std::to_string(bytes) +
                             " bytes hold: take a number up to " + std::to_string(most_in(bytes)));
  }
  if (const auto objection = row.poke(camera, address, value)) {
    throw refusal(place, objection->reason.data() + std::string(": correct the command line"));
  }
}

}  // namespace kelvo::tools
