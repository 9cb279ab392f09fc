#ifndef KELVO_TOOLS_KELVO_SIM_SECTION_JSON_H
#define KELVO_TOOLS_KELVO_SIM_SECTION_JSON_H

#include <vector>

#include "sim/report/section.h"
#include "tools/common/output.h"

namespace kelvo::tools {

/// Each section becomes a member: an array with an object for each row. What a row does not have is null.
void add_sections(Json& json, const std::vector<sim::Section>& sections);

}  // namespace kelvo::tools

#endif
