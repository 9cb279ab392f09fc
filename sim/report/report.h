#ifndef KELVO_SIM_REPORT_REPORT_H
#define KELVO_SIM_REPORT_REPORT_H

#include <string>
#include <vector>

#include "sim/camera/camera.h"
#include "sim/report/section.h"

namespace kelvo::sim {

/// How everything stands and what has been, as tables, with other sections behind the camera's own.
std::string status_text(const camera::Camera& camera, const std::vector<Section>& more = {});
/// What only the camera knows of a run, as tables: boots, frames, images, motors, head, and how many
/// violations.
std::string summary(const camera::Camera& camera);
/// The violations that are listed; nothing when there are none.
std::string violations_table(const camera::Camera& camera);
/// One violation as one line.
std::string violation_line(const camera::Violation& violation);
/// Both, under a heading. The name is that of a shared camera, or empty.
std::string report(const camera::Camera& camera, const std::string& name = "");

/// What the tables call the state of a boot's program, and of a controller of the head.
const char* state_of(const camera::BootRecord& boot);
const char* state_of(const camera::HeadController& controller, camera::Time now);
/// The bytes of a frame that are kept, two digits each.
std::string frame_text(const camera::Violation& violation);

}  // namespace kelvo::sim

#endif
