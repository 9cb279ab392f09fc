#include "sim/fault/words.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>

namespace kelvo::sim::fault {
namespace {

bool read_frame(std::string_view value, Fault& fault) {
  const std::optional<Frame> frame = frame_of(fault.port, value);
  if (frame) fault.frames &= bit(*frame);
  return frame.has_value();
}

bool read_command(std::string_view value, Fault& fault) {
  fault.code = command_of(value);
  return fault.code.has_value();
}

bool read_query(std::string_view value, Fault& fault) {
  fault.code = query_of(value);
  return fault.code.has_value();
}

bool read_boot_code(std::string_view value, Fault& fault) {
  const auto number = number_of(value, 255);
  if (number) fault.code = static_cast<std::uint8_t>(*number);
  return number.has_value();
}

bool read_register(std::string_view value, Fault& fault) {
  fault.reg = register_of(fault.port, value);
  return fault.reg.has_value();
}

bool read_slave(std::string_view value, Fault& fault) {
  fault.slave = slave_of(value);
  return fault.slave.has_value();
}

bool read_direction(std::string_view value, Fault& fault) {
  const bool received = value == "received";
  if (!received && value != "sent") return false;
  fault.frames &= received ? asking : telling;
  fault.effect.received = received;
  return true;
}

bool read_path(std::string_view value, Fault& fault) {
  fault.files = files_called(value);
  return fault.files != 0;
}

template <std::uint64_t Fault::*member>
bool read_count(std::string_view value, Fault& fault) {
  const auto number = number_of(value, std::numeric_limits<std::uint32_t>::max());
  fault.*member = number.value_or(0);
  return fault.*member != 0;
}

bool read_error(std::string_view value, Fault& fault) {
  fault.effect.kind = EffectKind::error;
  fault.effect.error = error_of(value).value_or(0);
  return fault.effect.error != 0;
}

/// Effects with a name of their own that are errors like any other.
template <int number>
bool read_own_error(std::string_view /*value*/, Fault& fault) {
  fault.effect.kind = EffectKind::error;
  fault.effect.error = number;
  return true;
}

template <EffectKind kind>
bool read_effect(std::string_view /*value*/, Fault& fault) {
  fault.effect.kind = kind;
  return true;
}

bool read_flip(std::string_view value, Fault& fault) {
  const std::size_t point = std::min(value.find('.'), value.size());
  const auto byte = number_of(value.substr(0, point), 65'535);
  const auto place = number_of(value.substr(std::min(point + 1, value.size())), 7);
  if (!byte || !place) return false;
  fault.effect.kind = EffectKind::flip;
  fault.effect.byte = static_cast<std::uint32_t>(*byte);
  fault.effect.bit = static_cast<std::uint8_t>(*place);
  return true;
}

constexpr Ports spi = bit(Port::spi);
constexpr Ports i2c = bit(Port::i2c);
constexpr Ports file = bit(Port::file);
constexpr Ports devices = spi | bit(Port::pt5111) | i2c;
constexpr Ports all = devices | bit(Port::gpio) | file;

constexpr Frames any = 0xFFFF;
constexpr Frames transfers = any & ~bit(Frame::open);
constexpr Frames boot = bit(Frame::boot_command) | bit(Frame::checksum_read);
constexpr Frames openings = bit(Frame::open) | bit(Frame::file_write) | bit(Frame::file_read);

constexpr std::string_view from_1 = "a number from 1";

// clang-format off
constexpr std::array words{
    Word{"frame", false, all, any, "one of ", read_frame, "frames of a kind, as open, command, query, word, write or read"},
    Word{"command", false, spi, bit(Frame::command), "a command's name or number (zoom1-enable, 62, 0x3E)", read_command, "one command of the lens program"},
    Word{"query", false, spi, bit(Frame::query), "a query's name or number (zoom1-running, 0x8D)", read_query, "one query of the lens program"},
    Word{"boot-code", false, spi, boot, "a number up to 255 (0xE2)", read_boot_code, "one code of the boot loader"},
    Word{"register", false, devices, transfers, "a register's number (28), on i2c or its name (run-status)", read_register, "writes and reads of a register"},
    Word{"slave", false, i2c, transfers, "pan, tilt, or a number up to 127", read_slave, "one axis of the head"},
    Word{"direction", false, all, transfers, "sent or received", read_direction, "those that only tell something, or those that bring an answer"},
    Word{"path", false, file, any, "a file of the camera, whole or by its last part (/bin/DC_S_Cali.dat, OIS_S_Cali.dat)", read_path, "one file"},
    Word{"nth", false, all, any, from_1, read_count<&Fault::nth>, "the n-th of these"},
    Word{"every", false, all, any, from_1, read_count<&Fault::every>, "every n-th of these"},
    Word{"times", false, all, any, from_1, read_count<&Fault::times>, "so often at most"},
    Word{"error", true, all, any, "an error's name or number (EIO, 5)", read_error, "the call fails with this error, and the device gets nothing"},
    Word{"nak", true, i2c, transfers, "", read_own_error<ENXIO>, "nobody acknowledges"},
    Word{"flip", true, devices, transfers, "BYTE.BIT, the byte from 0, the bit from 0 to 7 (5.0)", read_flip, "one bit of what the device gets is flipped"},
    Word{"busy", true, spi | i2c, bit(Frame::query) | bit(Frame::read), "", read_effect<EffectKind::busy>, "what is asked for seems to run"},
    Word{"reset", true, spi | i2c, transfers, "", read_effect<EffectKind::reset>, "the controller restarts, and the frame is lost"},
    Word{"missing", true, devices | file, openings, "", read_own_error<ENOENT>, "the node or the file is not there when it is opened"},
    Word{"unreadable", true, file, bit(Frame::file_read), "", read_own_error<EACCES>, "the file cannot be opened for reading"},
    Word{"full", true, file, bit(Frame::file_write), "", read_effect<EffectKind::full>, "the file opens for writing and takes nothing"},
    Word{"kill", true, all, any, "", read_effect<EffectKind::kill>, "the process is killed in the middle of it"},
};
// clang-format on

std::string joined(Port port, bool effects_alone) {
  std::string names;
  for (const Word& word : words) {
    if ((word.ports & bit(port)) == 0 || (effects_alone && !word.effect)) continue;
    names += (names.empty() ? "" : ", ") + std::string(word.name);
  }
  return names;
}

}  // namespace

std::span<const Word> all_words() { return words; }

const Word* find_word(std::string_view name) {
  const auto* const found = std::find_if(words.begin(), words.end(),
                                         [name](const Word& word) { return word.name == name; });
  return found != words.end() ? found : nullptr;
}

std::string ports_of(const Word& word) {
  std::string names;
  for (const Port port : {Port::spi, Port::pt5111, Port::i2c, Port::gpio, Port::file}) {
    if ((word.ports & bit(port)) == 0) continue;
    names += (names.empty() ? "" : ", ") + std::string(name_of(port));
  }
  return names;
}

std::string values_of(const Word& word, Port port) {
  return std::string(word.values) + (word.read == read_frame ? frame_names(port) : "");
}

std::string words_of(Port port) { return joined(port, false); }
std::string effects_of(Port port) { return joined(port, true); }

}  // namespace kelvo::sim::fault
