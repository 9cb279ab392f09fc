#ifndef KELVO_TOOLS_KELVOCTL_LENS_INTERRUPTERS_H
#define KELVO_TOOLS_KELVOCTL_LENS_INTERRUPTERS_H

#include <cstdint>

#include "tools/kelvoctl/common/session.h"

namespace kelvo::ctl {

/// Throws a Failure for a number that no photo-interrupter of the module has.
void check_sensor(LensModule module, std::int64_t sensor);

/// Number, motor and state of each photo-interrupter. On DE015 this switches their supply on.
Json sensors_json(Session& session);

/// What their calibration found. Only queries are sent.
Json offsets_json(Session& session);

}  // namespace kelvo::ctl

#endif
