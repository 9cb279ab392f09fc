#ifndef KELVO_SIM_WRAPPER_REPORT_H
#define KELVO_SIM_WRAPPER_REPORT_H

#include <string>

#include "sim/camera/camera.h"

namespace kelvo::sim {

/// What only the camera knows, as tables: boots, frames, images, motors, violations.
/// The name is that of a shared camera, or empty.
std::string report(const camera::Camera& camera, camera::CarriedImages images,
                   const std::string& name = "");

}  // namespace kelvo::sim

#endif
