#ifndef KELVO_TOOLS_KELVOCTL_LENS_PT5111_H
#define KELVO_TOOLS_KELVOCTL_LENS_PT5111_H

#include <cstdint>

#include "tools/kelvoctl/common/by_module.h"
#include "tools/kelvoctl/common/session.h"

namespace kelvo::ctl {

/// Which modules have the chip.
inline constexpr Fitted with_pt5111{true, true, false};

/// Throws a Failure unless the last word got through.
void check_word(Session& session, std::int64_t result);

}  // namespace kelvo::ctl

#endif
