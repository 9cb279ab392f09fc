// pan and tilt: the same commands for either axis of the head.
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/head/axis_commands.h"

namespace kelvo::ctl {

void add_pan_tilt(CommandTable& table) {
  for (const HeadAxis& axis : head_axes) {
    CLI::App& group = CommandTable::add_group(table.root(), axis.name,
                                              "The head's " + std::string(axis.name) + " axis");
    add_axis_moves(table, group, axis);
    add_axis_limits(table, group, axis);
    add_axis_settings(table, group, axis);
  }
}

}  // namespace kelvo::ctl
