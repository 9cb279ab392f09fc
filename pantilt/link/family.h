#ifndef KELVO_PANTILT_LINK_FAMILY_H
#define KELVO_PANTILT_LINK_FAMILY_H

#include <cstdint>

extern "C" {

/// Controller family: -1 until asked for, then 1 (Vetra) or 2 (Tasmere). The link paces itself by it.
extern std::int32_t giMotorType;
}

#endif
