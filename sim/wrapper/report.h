#ifndef KELVO_SIM_WRAPPER_REPORT_H
#define KELVO_SIM_WRAPPER_REPORT_H

#include <string>

#include "sim/camera/camera.h"

namespace kelvo::sim {

/// What only the camera knows, as tables: boots, frames, images, motors, violations.
std::string report(const camera::Camera& camera, camera::CarriedImages images);

}  // namespace kelvo::sim

#endif
