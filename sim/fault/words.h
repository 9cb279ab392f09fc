// The words behind a fault's device.
#ifndef KELVO_SIM_FAULT_WORDS_H
#define KELVO_SIM_FAULT_WORDS_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "sim/fault/fault.h"
#include "sim/fault/names.h"

namespace kelvo::sim::fault {

/// A set of ports, a bit each.
using Ports = std::uint8_t;
constexpr Ports bit(Port port) { return static_cast<Ports>(1U << static_cast<unsigned>(port)); }

struct Word {
  std::string_view name;
  bool effect;
  Ports ports;              // that have it
  Frames frames;            // that it is about
  std::string_view values;  // what it takes; empty: nothing
  bool (*read)(std::string_view value, Fault& fault);
  std::string_view meaning;
};

std::span<const Word> all_words();

/// Null if there is none of this name.
const Word* find_word(std::string_view name);

// For messages and help.
std::string ports_of(const Word& word);
std::string values_of(const Word& word, Port port);
std::string words_of(Port port);
std::string effects_of(Port port);

}  // namespace kelvo::sim::fault

#endif
