#ifndef KELVO_TOOLS_KELVOCTL_LENS_LENS_STATUS_H
#define KELVO_TOOLS_KELVOCTL_LENS_LENS_STATUS_H

#include "tools/kelvoctl/common/session.h"

namespace kelvo::ctl {

/// Version, motors, photo-interrupters and settings of the attached lens controller, those that the module
/// has. Only queries are sent.
Json lens_status(Session& session);

}  // namespace kelvo::ctl

#endif
