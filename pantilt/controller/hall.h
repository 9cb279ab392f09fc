#ifndef KELVO_PANTILT_CONTROLLER_HALL_H
#define KELVO_PANTILT_CONTROLLER_HALL_H

#include "kelvo/pantilt.h"

namespace kelvo::pantilt {

/// Whether a Tasmere tilt axis positions by its Hall sensor; the controller is asked the first time.
inline bool tilt_uses_hall() {
  if (giSerTiltUseHall == -1) GetTiltHallSetting();
  return giSerTiltUseHall != 0;
}

}  // namespace kelvo::pantilt

#endif
