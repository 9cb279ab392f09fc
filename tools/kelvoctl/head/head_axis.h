// The two axes of the head as the commands see them: one row each.
#ifndef KELVO_TOOLS_KELVOCTL_HEAD_HEAD_AXIS_H
#define KELVO_TOOLS_KELVOCTL_HEAD_HEAD_AXIS_H

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "tools/kelvoctl/common/session.h"

namespace CLI {  // NOLINT(readability-identifier-naming): the name that it has
class App;
}  // namespace CLI

namespace kelvo::ctl {

class CommandTable;

inline constexpr int vetra = 1;
inline constexpr int tasmere = 2;

/// An axis: its names and the library's functions for it.
struct HeadAxis {
  const char* name;
  bool tilts;
  std::uint16_t slave;
  // What moves have last written to it, by family.
  std::int32_t* vetra_written;
  std::int32_t* tasmere_written;

  std::int32_t (*move_to)(std::int32_t direction, std::int32_t speed, std::uint32_t position);
  std::int32_t (*move)(std::int32_t direction, std::int32_t speed);
  std::int32_t (*stop)();
  std::int32_t (*position)(std::uint32_t* position);
  std::int32_t (*status)();
  std::int32_t (*sleep_mode)();
  std::int32_t (*calibration)();
  std::int32_t (*uses_hall)();
  std::int32_t (*version)();
  std::int32_t (*program_state)();
  std::int32_t (*temperature)();

  std::int32_t (*switch_limits)(std::int32_t enable);
  std::int32_t (*set_limits)(std::int32_t start, std::int32_t end);
  std::int32_t (*set_limit_step)(std::int32_t speed);
  std::int32_t (*limits_on)();
  std::int32_t (*limits)(std::uint32_t* start, std::uint32_t* end);

  std::int32_t (*turbo)(std::int32_t on);
  std::int32_t (*current)(std::int32_t current);
  std::int32_t (*wake)();
  std::int32_t (*reset)();
  std::int32_t (*initialise)();
};

extern const std::array<HeadAxis, 2> head_axes;

/// Makes the head usable and tells its family. Throws a Failure if this axis does not answer.
int attach_axis(Session& session, const HeadAxis& axis);

/// Whether its controller answers, of whatever family it is.
bool answers(Session& session, const HeadAxis& axis, std::optional<int> family);
/// Throws a Failure if it does not: most of the library's functions do not tell.
void check_answers(Session& session, const HeadAxis& axis, int family);

/// Throws a Failure on a head of the other family.
void require_family(const HeadAxis& axis, int family, int required, const std::string& what);

std::uint32_t position_of(Session& session, const HeadAxis& axis);
bool is_at_rest(Session& session, const HeadAxis& axis);
/// "position" and "at_rest".
Json place_json(Session& session, const HeadAxis& axis);

/// After a controller has restarted or was written to past the moves: the next move writes its gains
/// again, and the library asks for the Hall sensor again.
void forget_settings(const HeadAxis& axis);

/// A command without options that each axis has.
struct AxisCommand {
  const char* name;
  const char* description;
  Json (*run)(Session& session, const HeadAxis& axis);
};

void add_axis_command(CommandTable& table, CLI::App& group, const HeadAxis& axis,
                      const AxisCommand& command);

}  // namespace kelvo::ctl

#endif
