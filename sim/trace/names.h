// Names of registers and words that several frames carry.
#ifndef KELVO_SIM_TRACE_NAMES_H
#define KELVO_SIM_TRACE_NAMES_H

#include <cstdint>
#include <string>

namespace kelvo::sim::trace {

/// A register of the lens controller's motor block, or nothing.
std::string motor_register(std::uint8_t number);
/// A word of the PT5111, with its value.
std::string pt5111_word(std::uint16_t word);

}  // namespace kelvo::sim::trace

#endif
