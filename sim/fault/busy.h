// The answers that say whether something runs.
#ifndef KELVO_SIM_FAULT_BUSY_H
#define KELVO_SIM_FAULT_BUSY_H

#include <cstdint>
#include <span>

#include "sim/fault/transfer.h"

namespace kelvo::sim::fault {

/// Whether a transfer asks a motor, a calibration run or an axis if it runs.
bool tells_status(const Transfer& transfer);

/// Makes the answer to such a transfer say that it does.
void say_running(const Transfer& transfer, std::span<std::uint8_t> received);

}  // namespace kelvo::sim::fault

#endif
