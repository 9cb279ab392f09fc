#ifndef KELVO_TOOLS_KELVOCTL_LENS_OIS_H
#define KELVO_TOOLS_KELVOCTL_LENS_OIS_H

#include "tools/kelvoctl/common/session.h"

namespace kelvo::ctl {

/// The stabiliser's sensors, and every setting of it that can be read. Only queries are sent.
Json stabiliser_json(Session& session);

}  // namespace kelvo::ctl

#endif
