// What the lens commands begin and end with.
#ifndef KELVO_TOOLS_KELVOCTL_LENS_LENS_USE_H
#define KELVO_TOOLS_KELVOCTL_LENS_LENS_USE_H

#include <cstdint>
#include <string>

#include "tools/kelvoctl/common/by_module.h"
#include "tools/kelvoctl/common/session.h"

namespace kelvo::ctl {

/// Attaches the lens and makes sure that a program answers. Throws a Failure.
void use_lens(Session& session);

/// Throws a Failure unless the module has it. `what` goes on after the module's name: "has no P-iris".
void refuse_unless(bool served, LensModule module, const std::string& what);

/// Throws a Failure when the lens link has failed, or the status of the last frame is not 0.
void check_sent(Session& session, std::uint32_t status);

}  // namespace kelvo::ctl

#endif
