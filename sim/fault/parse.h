// Faults as people write them: a device, then words, with blanks or colons between them.
//
//   spi command=62 nth=3 error=EIO
//   i2c:slave=tilt:busy
#ifndef KELVO_SIM_FAULT_PARSE_H
#define KELVO_SIM_FAULT_PARSE_H

#include <string>
#include <string_view>

#include "sim/fault/fault.h"

namespace kelvo::sim::fault {

/// Either a fault or one line that says what is wrong with the text.
struct ParsedFault {
  Fault fault;
  std::string error;
};

ParsedFault parse(std::string_view text);

}  // namespace kelvo::sim::fault

#endif
