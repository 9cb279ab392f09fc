// An event in words: the names of what crossed the wire, from the tables in wire/.
#ifndef KELVO_SIM_TRACE_DECODER_H
#define KELVO_SIM_TRACE_DECODER_H

#include <optional>
#include <string>

#include "sim/trace/event.h"

namespace kelvo::sim::trace {

/// The parts of a line, in their order. Those that there is nothing to say about are empty.
struct Decoded {
  std::string device;       // spi, pt5111, i2c pan, reset
  std::string kind;         // open, command, query, boot, payload, word, read, write, shell ...
  std::optional<int> code;  // of a command, query, boot-loader frame, word or register
  std::string shown_code;   // as one writes such a code
  std::string name;         // what the code stands for; several meanings are joined by |
  std::string value;        // what was sent with it
  std::string answer;       // what came back
  std::string error;        // why it failed
};

Decoded decode(const Event& event);

/// For example `spi command 62 zoom1-enable 1` or `spi query 8C read-register 20 focus-counter -> 1600`.
std::string text_of(const Decoded& decoded);

}  // namespace kelvo::sim::trace

#endif
