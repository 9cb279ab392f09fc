#ifndef KELVO_PANTILT_MOTION_FREEZE_H
#define KELVO_PANTILT_MOTION_FREEZE_H

#include <cstdint>

extern "C" {

/// While it is 1, gains set by hand stay in force.
extern std::int32_t giPID_Debug_En;
}

#endif
