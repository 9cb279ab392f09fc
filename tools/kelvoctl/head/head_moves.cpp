// Where an axis is, and how it gets elsewhere.
#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/options.h"
#include "tools/kelvoctl/head/axis_commands.h"
#include "tools/kelvoctl/head/tuning.h"

namespace kelvo::ctl {
namespace {

constexpr std::chrono::microseconds axis_poll_pause = std::chrono::milliseconds(50);
constexpr std::int64_t half_speed = 3600;
constexpr std::chrono::microseconds until_stopped{-1};
constexpr std::int64_t circle = 65536;
constexpr std::int64_t tolerance = 40;  // a count of a Vetra controller is some 3.6 positions

/// What a move has with it, because the library keeps it for one process only.
struct AxisMoveOptions {
  std::optional<std::int64_t> direction;
  std::string tuning_file;
  std::string limits;
  bool freeze = false;
};

struct GotoOptions {
  AxisMoveOptions move;
  std::int64_t position = 0;
  std::int64_t speed = half_speed;
  bool wait = false;
  std::chrono::microseconds timeout = std::chrono::seconds(30);
};

struct AxisRunOptions {
  AxisMoveOptions move;
  std::int64_t speed = 0;
  std::chrono::microseconds time = until_stopped;
};

/// Moves leave the gains alone as long as this lives.
class Freeze {
 public:
  Freeze(Session& session, bool wanted) : session_(session), before_(gains_frozen()) {
    if (wanted) freeze_gains(session, true);
  }
  ~Freeze() {
    if (gains_frozen() != before_) freeze_gains(session_, before_);
  }
  Freeze(const Freeze&) = delete;
  Freeze& operator=(const Freeze&) = delete;

 private:
  Session& session_;
  bool before_;
};

/// Everything that a move needs before it begins. Returns the family.
int prepare(Session& session, const HeadAxis& axis, Motion motion, const AxisMoveOptions& options) {
  std::optional<Limits> limits;
  if (!options.limits.empty()) limits = limits_of(options.limits);
  if (!options.tuning_file.empty()) load_tuning(session, read_tuning_file(options.tuning_file));
  const int family = attach_axis(session, axis);
  if (!options.freeze) require_gains(axis, family, motion);
  const std::int32_t sleeps = session.call(axis.sleep_mode);
  if (sleeps < 0) check_answers(session, axis, family);
  if (sleeps > 0) {
    throw Failure(ExitCode::refused, "the axis sleeps: wake it with " + std::string(tool_name) +
                                         " " + axis.name + " wake");
  }
  if (limits) apply_limits(session, axis, *limits);
  return family;
}

/// The direction in which the way to a position does not go through the end of the range. Tilt moves to a
/// position are the other way round than all others, but for a Tasmere axis without its Hall sensor.
std::int64_t straight_direction(Session& session, const HeadAxis& axis, int family,
                                std::int64_t target) {
  const bool down = target < std::int64_t{position_of(session, axis)};
  const bool turned = axis.tilts && (family == vetra || session.call(axis.uses_hall) == 1);
  return down != turned ? 1 : 0;
}

constexpr std::chrono::microseconds longest_halt = std::chrono::seconds(5);

/// Stops an axis, and waits while it slows down. Whether it has come to rest.
bool halt(Session& session, const HeadAxis& axis, int family) {
  session.forget_motion(axis.name);
  session.call(axis.stop);
  check_answers(session, axis, family);
  for (std::chrono::microseconds waited{}; waited < longest_halt; waited += axis_poll_pause) {
    if (is_at_rest(session, axis)) return true;
    session.sleep(axis_poll_pause);
  }
  return is_at_rest(session, axis);
}

/// The command has its result all the same.
void halt_or_complain(Session& session, const HeadAxis& axis, int family) {
  if (halt(session, axis, family)) return;
  session.complain(ExitCode::time_out, "the axis was told to stop, and still moves after " +
                                           duration_text(longest_halt));
}

/// After Ctrl-C: what became of it, whatever that is.
std::string stop_axis(Session& session, const HeadAxis& axis) {
  try {
    const bool rests = halt(session, axis, session.attach_head());
    return (rests ? "the axis was stopped at " : "the axis was told to stop, and still moves at ") +
           std::to_string(position_of(session, axis));
  } catch (const Failure& failure) {
    return std::string("the axis may still move: ") + failure.what();
  }
}

/// A read that fails reads as rest.
bool is_surely_at_rest(Session& session, const HeadAxis& axis) {
  if (!is_at_rest(session, axis)) return false;
  return is_at_rest(session, axis);
}

/// Waits until the axis is at rest, which is asked for the first time after a pause: a move needs a moment
/// to begin.
void wait_for_rest(Session& session, const HeadAxis& axis, int family,
                   std::chrono::microseconds timeout) {
  const Progress progress(session);
  bool begun = false;
  const auto over = [&] {
    if (!std::exchange(begun, true)) return false;
    check_answers(session, axis, family);
    progress.show(std::string(axis.name) + ": " + std::to_string(position_of(session, axis)));
    if (!is_surely_at_rest(session, axis)) return false;
    check_answers(session, axis, family);
    return true;
  };
  const auto stop = [&] { return stop_axis(session, axis); };
  wait_until_over(session, {"the axis moves", timeout, over, stop, axis_poll_pause});
}

/// For the session, which stops what moves after Ctrl-C.
void set_in_motion(Session& session, const HeadAxis& axis) {
  session.set_in_motion(axis.name, [&session, &axis]() -> std::string {
    try {
      // One that does not answer reads as one at rest.
      if (answers(session, axis, session.find_head()) && is_surely_at_rest(session, axis))
        return "";
    } catch (const Failure&) {
      // Why it cannot be reached, stopping it will tell.
    }
    return std::string(axis.name) + ": " + stop_axis(session, axis);
  });
}

/// The range is a circle.
bool is_near(std::int64_t position, std::int64_t target) {
  const std::int64_t apart = std::abs(position - target);
  return std::min(apart, circle - apart) <= tolerance;
}

void wait_for_arrival(Session& session, const HeadAxis& axis, int family,
                      const GotoOptions& options) {
  wait_for_rest(session, axis, family, options.timeout);
  const std::int64_t position = position_of(session, axis);
  if (is_near(position, options.position)) return;
  session.complain(ExitCode::refused,
                   "the axis rests at " + std::to_string(position) + ", not at " +
                       std::to_string(options.position) +
                       ": see its travel limits, and whether something holds it");
}

Json move_to(Session& session, const HeadAxis& axis, const GotoOptions& options) {
  const int family = prepare(session, axis, Motion::absolute, options.move);
  const std::int64_t direction = options.move.direction
                                     ? *options.move.direction
                                     : straight_direction(session, axis, family, options.position);
  {
    const Freeze freeze(session, options.move.freeze);
    session.call([&] {
      return axis.move_to(static_cast<std::int32_t>(direction),
                          static_cast<std::int32_t>(options.speed),
                          static_cast<std::uint32_t>(options.position));
    });
  }
  set_in_motion(session, axis);
  check_answers(session, axis, family);
  if (options.wait) wait_for_arrival(session, axis, family, options);
  Json result = place_json(session, axis);
  result.update({{"target", options.position}, {"speed", options.speed}, {"direction", direction}});
  return result;
}

/// A time-out is how this wait ends as it should, unless the limits end it before.
void move_for(Session& session, const HeadAxis& axis, int family, std::chrono::microseconds time) {
  try {
    wait_for_rest(session, axis, family, time);
  } catch (const Failure& failure) {
    if (failure.code() != static_cast<int>(ExitCode::time_out)) throw;
    halt_or_complain(session, axis, family);
  }
}

Json move(Session& session, const HeadAxis& axis, const AxisRunOptions& options) {
  const int family = prepare(session, axis, Motion::continuous, options.move);
  const std::int64_t direction = options.move.direction.value_or(0);
  {
    const Freeze freeze(session, options.move.freeze);
    session.call([&] {
      return axis.move(static_cast<std::int32_t>(direction),
                       static_cast<std::int32_t>(options.speed));
    });
  }
  set_in_motion(session, axis);
  check_answers(session, axis, family);
  if (options.time != until_stopped) move_for(session, axis, family, options.time);
  Json result = place_json(session, axis);
  result.update({{"speed", options.speed}, {"direction", direction}});
  return result;
}

Json stop_and_show(Session& session, const HeadAxis& axis) {
  const int family = attach_axis(session, axis);
  halt_or_complain(session, axis, family);
  return place_json(session, axis);
}

Json position(Session& session, const HeadAxis& axis) {
  attach_axis(session, axis);
  return place_json(session, axis);
}

void add_move_options(CLI::App& command, AxisMoveOptions& options, const std::string& direction) {
  add_number(command, "--direction", options.direction, {0, 1}, direction, "0|1");
  add_text(command, "--pid", options.tuning_file,
           "The tuning table's file, for this and what follows in this process", "FILE");
  add_text(command, "--limits", options.limits,
           "Set the travel limits to these positions and switch them on before", "A:B");
  add_flag(command, "--freeze", options.freeze, "Leave the gains as they are in the controller");
}

void add_goto(CommandTable& table, CLI::App& group, const HeadAxis& axis) {
  auto [command, options] = table.add<GotoOptions>(
      group, "goto", "Moves to a position", [&axis](Session& session, const GotoOptions& given) {
        return move_to(session, axis, given);
      });
  require(add_number(command, "POS", options.position, position_range, "Position, 0 to 65535", ""));
  add_number(command, "--speed", options.speed, speed_range,
             "0 to 7200; without it " + std::to_string(half_speed));
  add_move_options(command, options.move,
                   "As the controller is told; without it the one that leads there straight");
  CLI::Option* const wait =
      add_flag(command, "--wait", options.wait, "Wait until the axis is at rest");
  needs(add_duration(command, "--timeout", options.timeout,
                     "Wait so long at most; without it " + duration_text(options.timeout)),
        wait);
}

void add_move(CommandTable& table, CLI::App& group, const HeadAxis& axis) {
  auto [command, options] =
      table.add<AxisRunOptions>(group, "move", "Moves until it is stopped",
                                [&axis](Session& session, const AxisRunOptions& given) {
                                  return move(session, axis, given);
                                });
  require(add_number(command, "SPEED", options.speed, speed_range, "Speed, 0 to 7200", ""));
  add_move_options(command, options.move, "0, the default: positions grow; 1: they fall");
  add_duration(command, "--for", options.time, "Move so long, then stop");
}

}  // namespace

void add_axis_moves(CommandTable& table, CLI::App& group, const HeadAxis& axis) {
  add_goto(table, group, axis);
  add_move(table, group, axis);
  add_axis_command(table, group, axis, {"stop", "Stops the axis", stop_and_show});
  add_axis_command(table, group, axis, {"position", "Tells where the axis is", position});
}

}  // namespace kelvo::ctl
