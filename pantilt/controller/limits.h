#ifndef KELVO_PANTILT_CONTROLLER_LIMITS_H
#define KELVO_PANTILT_CONTROLLER_LIMITS_H

#include <cstdint>

extern "C" {

// What TiltLimitEn() and TiltLimit() were given last; positions on the common scale. Pan keeps no such copy.
extern std::int32_t giTiltLimitEn;
extern std::int32_t giTiltLimitStart;
extern std::int32_t giTiltLimitEnd;
}

#endif
