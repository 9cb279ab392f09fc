#ifndef KELVO_TOOLS_KELVOCTL_LENS_HOMING_H
#define KELVO_TOOLS_KELVOCTL_LENS_HOMING_H

#include "tools/kelvoctl/lens/motor_table.h"

namespace CLI {  // NOLINT(readability-identifier-naming): the name that it has
class App;
}  // namespace CLI

namespace kelvo::ctl {

class CommandTable;

/// Adds the command that finds a motor's reference position.
void add_homing(CommandTable& table, CLI::App& group, const Motor& motor);

}  // namespace kelvo::ctl

#endif
