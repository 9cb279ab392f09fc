#ifndef KELVO_TOOLS_KELVOCTL_HEAD_HEAD_STATUS_H
#define KELVO_TOOLS_KELVOCTL_HEAD_HEAD_STATUS_H

#include "tools/kelvoctl/head/head_axis.h"

namespace kelvo::ctl {

/// The version of an axis's firmware; null where the controller is not asked: tilt on Vetra.
Json version_json(Session& session, const HeadAxis& axis, int family);

/// "calibrated", "awake" and "uses_hall_sensor".
Json condition_json(Session& session, const HeadAxis& axis, int family);

/// Both axes of the attached head: position, limits, states, temperature. Only reads are made. What a
/// family cannot tell is null.
Json head_status(Session& session, int family);

}  // namespace kelvo::ctl

#endif
