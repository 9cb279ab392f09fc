#include "lens/motors/motor_state.h"

#include "kelvo/bus.h"

std::int32_t giMotorBusy = 0;
std::int32_t giZoom1Started = 0;
std::int32_t giZoom2Started = 0;
std::int32_t giZoom3Started = 0;
std::int32_t giFocusStarted = 0;

namespace kelvo::lens {

void Motor::settle(std::uint32_t milliseconds) const {
  if (*started == 0) delay_ms(milliseconds);
}

}  // namespace kelvo::lens
