#ifndef KELVO_OIS_CALIBRATION_MEASURING_H
#define KELVO_OIS_CALIBRATION_MEASURING_H

#include <cstdint>

#include "ois/calibration/records.h"

namespace kelvo::ois {

/// The four bytes of a query's answer. What does not come leaves the last one in place.
using Reply = std::uint8_t[4];

/// Asks the controller for a value of a record, prints the reply and returns the value.
std::uint16_t measure(const Field& field, Reply& reply);

}  // namespace kelvo::ois

#endif
