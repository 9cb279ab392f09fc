#ifndef KELVO_TOOLS_KELVOCTL_HEAD_HEAD_STATUS_H
#define KELVO_TOOLS_KELVOCTL_HEAD_HEAD_STATUS_H

#include "tools/kelvoctl/common/session.h"

namespace kelvo::ctl {

/// Both axes of the attached head: position, limits, states, temperature. Only reads are made. What a
/// family cannot tell is null.
Json head_status(Session& session, int family);

}  // namespace kelvo::ctl

#endif
