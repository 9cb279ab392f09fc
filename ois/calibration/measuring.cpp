#include "ois/calibration/measuring.h"

#include <cstdio>

#include "kelvo/bus.h"

namespace kelvo::ois {

std::uint16_t measure(const Field& field, Reply& reply) {
  RecvCommand(field.query, 0, reply);
  std::printf("%s:%02x %02x %02x %02x\n", field.label, reply[0], reply[1], reply[2], reply[3]);
  return static_cast<std::uint16_t>(reply[2] << 8 | reply[3]);
}

}  // namespace kelvo::ois
