// The commands of each axis, by subject. Each function adds its own to the axis's group.
#ifndef KELVO_TOOLS_KELVOCTL_HEAD_AXIS_COMMANDS_H
#define KELVO_TOOLS_KELVOCTL_HEAD_AXIS_COMMANDS_H

#include <cstdint>
#include <string>

#include "tools/kelvoctl/common/numbers.h"
#include "tools/kelvoctl/head/head_axis.h"

namespace kelvo::ctl {

inline constexpr Range position_range{0, 65535};
inline constexpr Range speed_range{0, 7200};

/// Both are positions; the travel goes upwards from the first to the second.
struct Limits {
  std::int64_t start = 0;
  std::int64_t end = 0;
};

/// Sets them and switches them on, in the controller and, for tilt, in this process.
void apply_limits(Session& session, const HeadAxis& axis, const Limits& limits);

/// What the controller has: "axis", "limits_on", "start", "end" and their "unit".
Json limits_json(Session& session, const HeadAxis& axis, int family);

/// Reads A:B. Throws a Failure.
Limits limits_of(const std::string& text);

void add_axis_moves(CommandTable& table, CLI::App& group, const HeadAxis& axis);
void add_axis_limits(CommandTable& table, CLI::App& group, const HeadAxis& axis);
void add_axis_settings(CommandTable& table, CLI::App& group, const HeadAxis& axis);

}  // namespace kelvo::ctl

#endif
