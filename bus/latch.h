#ifndef KELVO_BUS_LATCH_H
#define KELVO_BUS_LATCH_H

#include <cstdint>

extern "C" {

/// The command error latch: 0 = link usable; anything else = command and query frames send nothing.
extern std::int32_t giSpiCmdErr;
}

#endif
