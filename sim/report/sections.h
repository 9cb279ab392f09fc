#ifndef KELVO_SIM_REPORT_SECTIONS_H
#define KELVO_SIM_REPORT_SECTIONS_H

#include <vector>

#include "sim/camera/camera.h"
#include "sim/report/section.h"

namespace kelvo::sim {

// The boots that are remembered, and how the lens side stood at the end of each.
Section boots_section(const camera::Camera& camera);
Section frames_section(const camera::Camera& camera);
Section images_section(const camera::Camera& camera);
Section boot_motors_section(const camera::Camera& camera);
Section boot_devices_section(const camera::Camera& camera);

// The lens side now. Those of a program are empty while none runs.
Section controller_section(const camera::Camera& camera);
Section motors_section(const camera::Camera& camera);
Section interrupters_section(const camera::Camera& camera);
Section devices_section(const camera::Camera& camera);
Section stabiliser_section(const camera::Camera& camera);

// The head now.
Section head_section(const camera::Camera& camera);
Section head_moves_section(const camera::Camera& camera);
Section head_registers_section(const camera::Camera& camera);

/// All of it: first how everything stands, then what has been.
std::vector<Section> all_sections(const camera::Camera& camera);

}  // namespace kelvo::sim

#endif
