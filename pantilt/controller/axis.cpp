#include "pantilt/controller/axis.h"

#include "kelvo/pantilt.h"

namespace kelvo::pantilt {

void send(const Axis& axis, std::uint8_t reg, const Payload& payload) {
  SendI2C(axis.slave, reg, payload.bytes(), payload.size() + 1);
}

Reading read(const Axis& axis, std::uint8_t reg, std::int32_t length) {
  Reading reading;
  reading.status = ReadI2C(axis.slave, reg, reading.bytes, length);
  return reading;
}

}  // namespace kelvo::pantilt
