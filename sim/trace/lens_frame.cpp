// What goes to the lens controller: the frames of its programs, and whatever is none of these.
#include <array>
#include <optional>

#include "sim/trace/frames.h"
#include "sim/trace/names.h"
#include "wire/boot_loader.h"
#include "wire/lens_program.h"

namespace kelvo::sim::trace {
namespace {

namespace command = wire::command;
namespace query = wire::query;
using wire::LensCode;

constexpr std::size_t argument_count = 4;
constexpr std::size_t checksum_place = 1 + argument_count;

/// What a code stands for in the program that runs; in any, where that is not known.
template <std::size_t rows>
std::string name_of(const std::array<LensCode, rows>& table, const Event& event) {
  const auto module = static_cast<wire::LensModule>(event.module);
  std::string names;
  for (const LensCode& row : table) {
    if (row.code != event.sent[0]) continue;
    if (event.module == 0 || knows(row.programs, module)) add_meaning(names, row.name);
  }
  return names.empty() ? "unknown" : names;
}

std::string register_text(std::uint8_t number) {
  return joined({std::to_string(number), motor_register(number)});
}

std::string register_write(Bytes arguments) {
  if (arguments[0] != 0) return hex_bytes(arguments);
  return register_text(arguments[1]) + " " + hex(high_first(arguments.last(2)), 4);
}

std::string passed_on_word(Bytes arguments) {
  constexpr std::uint8_t length = 2;
  if (arguments[0] != length || arguments[3] != 0) return hex_bytes(arguments);
  const auto word = static_cast<std::uint16_t>(high_first(arguments.subspan(1, 2)));
  return hex(word, 4) + " " + pt5111_word(word);
}

std::string two_bytes(Bytes arguments) {
  if (arguments[0] != 0 || arguments[1] != 0) return hex_bytes(arguments);
  return std::to_string(arguments[2]) + " " + std::to_string(arguments[3]);
}

std::string sensor_task(Bytes arguments) {
  struct Task {
    std::uint8_t number;
    const char* name;
  };
  namespace task = wire::sensor_task;
  constexpr std::array tasks{
      Task{task::none, "none"}, Task{task::verify, "verify"}, Task{task::convert, "convert"},
      Task{task::calibrate_t5391, "calibrate"}, Task{task::calibrate, "calibrate"}};
  for (const Task& row : tasks) {
    if (arguments[1] != 0 || arguments[2] != 0 || arguments[3] != row.number) continue;
    return "sensor " + std::to_string(arguments[0]) + " " + row.name;
  }
  return hex_bytes(arguments);
}

/// Commands whose arguments are not one number.
struct ArgumentForm {
  std::uint8_t code;
  std::string (*text)(Bytes arguments);
};
constexpr std::array argument_forms{
    ArgumentForm{command::write_register, register_write},
    ArgumentForm{command::write_register_de, register_write},
    ArgumentForm{command::pt5111_word, passed_on_word},
    ArgumentForm{command::zoom1_profile, two_bytes},
    ArgumentForm{command::zoom3_profile, two_bytes},
    ArgumentForm{command::sensor_service, sensor_task},
    ArgumentForm{command::interrupter_service, sensor_task},
};

std::string arguments_text(std::uint8_t code, Bytes arguments) {
  for (const ArgumentForm& form : argument_forms) {
    if (form.code == code) return form.text(arguments);
  }
  return std::to_string(high_first(arguments));
}

/// Nothing when the checksum is right.
std::string checksum_text(Bytes frame) {
  std::uint8_t sum = 0;
  for (const std::uint8_t byte : frame.first(checksum_place))
    sum = static_cast<std::uint8_t>(sum + byte);
  if (frame[checksum_place] == sum) return {};
  return "(checksum " + hex(frame[checksum_place], 2) + ", must be " + hex(sum, 2) + ")";
}

void decode_command(const Event& event, Decoded& decoded) {
  const Bytes frame = sent_of(event);
  decoded.kind = "command";
  decoded.code = frame[0];
  decoded.shown_code = std::to_string(frame[0]);
  decoded.name = name_of(command::table, event);
  decoded.value =
      joined({arguments_text(frame[0], frame.subspan(1, argument_count)), checksum_text(frame)});
}

bool reads_register(std::uint8_t code) {
  return code == query::read_register || code == query::read_register_de;
}

std::string query_argument(std::uint8_t code, Bytes arguments) {
  const std::uint8_t argument = arguments[query::argument_first(code) ? 0 : 1];
  if (reads_register(code)) return register_text(argument);
  const bool counts = argument != 0 || query::argument_first(code);
  return counts ? std::to_string(argument) : "";
}

std::string reply_text(std::uint8_t code, Bytes reply) {
  if (code == query::version || code == query::version_de) return hex(high_first(reply), 4);
  if (code == query::hall_xy || code == query::gyro_xy) {
    return std::to_string(static_cast<std::int16_t>(high_first(reply.first(2)))) + " " +
           std::to_string(static_cast<std::int16_t>(high_first(reply.last(2))));
  }
  return std::to_string(static_cast<std::int32_t>(high_first(reply)));
}

void decode_query(const Event& event, Decoded& decoded) {
  const Bytes frame = sent_of(event);
  decoded.kind = "query";
  decoded.code = frame[0];
  decoded.shown_code = hex(frame[0], 2);
  decoded.name = name_of(query::table, event);
  decoded.value =
      joined({query_argument(frame[0], frame.subspan(1, argument_count)), checksum_text(frame)});
  if (event.received_length < wire::query_frame_length) return;
  decoded.answer = reply_text(
      frame[0], received_of(event).subspan(wire::query_reply_offset, wire::query_reply_length));
}

}  // namespace

void decode_lens_frame(const Event& event, Decoded& decoded) {
  namespace loader = wire::boot_loader;
  const std::size_t length = event.sent_length;
  if (length == wire::command_frame_length) return decode_command(event, decoded);
  if (length == wire::query_frame_length) return decode_query(event, decoded);
  const bool ends = event.sent[loader::frame_length - 1] == loader::end_byte;
  if (length == loader::frame_length && ends) return decode_boot_frame(event, decoded);
  if (event.module == 0 && length > wire::query_frame_length) return decode_payload(event, decoded);
  decode_bytes(event, decoded);
}

}  // namespace kelvo::sim::trace
