#ifndef KELVO_TOOLS_KELVO_SIM_TRACE_REAL_H
#define KELVO_TOOLS_KELVO_SIM_TRACE_REAL_H

#include "tools/kelvo-sim/commands.h"
#include "tools/kelvo-sim/trace_output.h"

namespace kelvo::tools {

/// Runs a program on the real devices, and traces it while it runs. Its exit code becomes the tool's.
void trace_real(const TraceForm& form, Context& context);

}  // namespace kelvo::tools

#endif
