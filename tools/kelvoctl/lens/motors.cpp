// zoom1, zoom2, zoom3 and focus: moves, counters, power.
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/common/numbers.h"
#include "tools/kelvoctl/common/options.h"
#include "tools/kelvoctl/lens/homing.h"
#include "tools/kelvoctl/lens/lens_use.h"
#include "tools/kelvoctl/lens/motor.h"

namespace kelvo::ctl {
namespace {

constexpr Range all_steps{-0xFFFFF, 0xFFFFF};

struct MoveOptions {
  std::int64_t steps = 0;
  std::int64_t speed = 100;
  bool micro = false;
  bool two_phase = false;
  bool wait = false;
  std::chrono::microseconds timeout = std::chrono::seconds(60);

  Stepping stepping() const {
    if (two_phase) return Stepping::two_phase;
    return micro ? Stepping::micro : Stepping::plain;
  }
  bool forward() const { return steps >= 0; }
};

struct CountOptions {
  std::optional<std::int64_t> count;
};

const char* stepping_name(Stepping stepping) {
  switch (stepping) {
    case Stepping::micro: return "micro";
    case Stepping::two_phase: return "two-phase";
    case Stepping::plain: break;
  }
  return "plain";
}

/// Throws a Failure where the module does not have it, or not as far.
const MoveWay& way_of(const Session& session, const Motor& motor, const MoveOptions& options) {
  refuse_unless_fitted(session, motor);
  const LensModule module = session.lens();
  const MoveWays& ways = motor.ways_of(options.stepping());
  const MoveWay& way = options.forward() ? ways.forward : ways.backward;
  const std::uint32_t most = way.most_steps.on(module);
  refuse_unless(most != 0, module,
                std::string("does not move ") + motor.name +
                    (options.forward() ? " forward" : " backward") + " with --" +
                    stepping_name(options.stepping()));
  if (std::abs(options.steps) > most) {
    throw Failure(ExitCode::wrong_arguments, std::string(motor.name) + " of " +
                                                 ctl::name_of(module) + " moves by " +
                                                 std::to_string(most) + " steps at most");
  }
  return way;
}

Json move(Session& session, const Motor& motor, const MoveOptions& options) {
  const MoveWay& way = way_of(session, motor, options);
  if (options.wait) session.limit_patience(options.timeout);
  use_lens(session);
  Json result = motor_json(session, motor);
  result["steps"] = options.steps;
  result["speed"] = options.speed;
  result["stepping"] = stepping_name(options.stepping());
  result["count_before"] = count_json(session, motor);
  start(session, way, static_cast<std::uint8_t>(options.speed),
        static_cast<std::uint32_t>(std::abs(options.steps)));
  session.set_in_motion(motor.name, [&session, &motor] { return stop_if_running(session, motor); });
  if (!options.wait) return result;
  const auto over = [&] { return !is_running(session, motor); };
  const std::chrono::microseconds time = wait_for(session, motor, options.timeout, over);
  use_lens(session);  // a controller that has restarted stands still as well
  result["count_after"] = count_json(session, motor);
  result["time_ms"] = milliseconds_of(time);
  return result;
}

Json count(Session& session, const Motor& motor, const CountOptions& options) {
  refuse_unless_fitted(session, motor);
  const LensModule module = session.lens();
  if (options.count) {
    refuse_unless_settable(session, motor, static_cast<std::uint32_t>(*options.count));
  } else {
    refuse_unless(motor.counted.on(module), module,
                  std::string("has no counter of ") + motor.name + " that can be read");
  }
  use_lens(session);
  if (options.count) set_count(session, motor, static_cast<std::uint32_t>(*options.count));
  Json result = motor_json(session, motor);
  result["count"] = count_json(session, motor);
  return result;
}

Json off(Session& session, const Motor& motor) {
  refuse_unless_fitted(session, motor);
  use_lens(session);
  check_sent(session, session.send(motor.power_off));
  Json result = motor_json(session, motor);
  result["power"] = "off";
  return result;
}

void add_move(CommandTable& table, CLI::App& group, const Motor& motor) {
  auto [command, options] = table.add<MoveOptions>(
      group, "move", std::string("Moves ") + motor.title + " by steps, forward or backward",
      [&motor](Session& session, const MoveOptions& given) { return move(session, motor, given); });
  require(add_number(command, "STEPS", options.steps, all_steps, "Steps; below 0 is backward", ""));
  add_number(command, "--speed", options.speed, byte_range, "Level of 0 to 255; 100 unless given");
  CLI::Option* const micro =
      add_flag(command, "--micro", options.micro, "In the motor's finer stepping");
  exclude(add_flag(command, "--two-phase", options.two_phase, "In 2-2 phase drive"), micro);
  CLI::Option* const wait = add_flag(command, "--wait", options.wait, "Wait until it is at rest");
  need(add_duration(command, "--timeout", options.timeout, "The longest wait; 60s unless given"),
       wait);
}

void add_count(CommandTable& table, CLI::App& group, const Motor& motor) {
  auto [command, options] =
      table.add<CountOptions>(group, "count", "Shows the counter, or sets it",
                              [&motor](Session& session, const CountOptions& given) {
                                return count(session, motor, given);
                              });
  add_number(command, "N", options.count, all_counts, "What to set it to", "");
}

}  // namespace

void add_motors(CommandTable& table) {
  for (const Motor& motor : motor_table) {
    CLI::App& group =
        CommandTable::add_group(table.root(), motor.name, std::string("Moves ") + motor.title);
    add_move(table, group, motor);
    add_homing(table, group, motor);
    add_count(table, group, motor);
    table.add(group, "off", "Stops it and cuts its power",
              [&motor](Session& session) { return off(session, motor); });
  }
}

}  // namespace kelvo::ctl
