// Travel limits, which the controllers keep to by themselves.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/options.h"
#include "tools/kelvoctl/head/axis_commands.h"

namespace kelvo::ctl {
namespace {

std::optional<std::int64_t> position_in(const std::string& text) {
  const std::optional<std::int64_t> number = parse_number(text);
  if (number && (*number < position_range.low || *number > position_range.high)) return {};
  return number;
}

void set_limits(Session& session, const HeadAxis& axis, const Limits& limits) {
  session.call([&] {
    return axis.set_limits(static_cast<std::int32_t>(limits.start),
                           static_cast<std::int32_t>(limits.end));
  });
}

void switch_limits(Session& session, const HeadAxis& axis, bool on) {
  session.call([&] { return axis.switch_limits(on ? 1 : 0); });
}

Json show(Session& session, const HeadAxis& axis) {
  const int family = attach_axis(session, axis);
  Json result = limits_json(session, axis, family);
  check_answers(session, axis, family);
  return result;
}

Json set(Session& session, const HeadAxis& axis, const Limits& limits) {
  const int family = attach_axis(session, axis);
  set_limits(session, axis, limits);
  check_answers(session, axis, family);
  return limits_json(session, axis, family);
}

Json switch_them(Session& session, const HeadAxis& axis, bool on) {
  const int family = attach_axis(session, axis);
  switch_limits(session, axis, on);
  check_answers(session, axis, family);
  return limits_json(session, axis, family);
}

struct LimitStepOptions {
  std::int64_t speed = 0;
};

Json set_step(Session& session, const HeadAxis& axis, const LimitStepOptions& options) {
  const int family = attach_axis(session, axis);
  require_family(axis, family, vetra, "step near its limits");
  session.call([&] { return axis.set_limit_step(static_cast<std::int32_t>(options.speed)); });
  check_answers(session, axis, family);
  return {{"axis", axis.name}, {"speed", options.speed}};
}

void add_set(CommandTable& table, CLI::App& group, const HeadAxis& axis) {
  auto [command, options] = table.add<Limits>(
      group, "set", "Sets both limits; they are switched on apart",
      [&axis](Session& session, const Limits& given) { return set(session, axis, given); });
  require(add_number(command, "A", options.start, position_range, "Where the travel begins", ""));
  require(add_number(command, "B", options.end, position_range,
                     "Where it ends, upwards from A; through the end of the range if below A", ""));
}

void add_step(CommandTable& table, CLI::App& group, const HeadAxis& axis) {
  auto [command, options] =
      table.add<LimitStepOptions>(group, "step", "Sets the step near a limit for a speed (vetra)",
                                  [&axis](Session& session, const LimitStepOptions& given) {
                                    return set_step(session, axis, given);
                                  });
  require(
      add_number(command, "SPEED", options.speed, speed_range, "Speed of the move to come", ""));
}

}  // namespace

/// A Vetra controller tells its own counts. Of a Tasmere tilt axis without its Hall sensor the library
/// reads no end.
Json limits_json(Session& session, const HeadAxis& axis, int family) {
  std::uint32_t start = 0;
  std::uint32_t end = 0;
  session.call([&] { return axis.limits(&start, &end); });
  const bool no_end = family == tasmere && axis.tilts && session.call(axis.uses_hall) == 0;
  return {{"axis", axis.name},
          {"limits_on", session.call(axis.limits_on) == 1},
          {"start", static_cast<std::int32_t>(start)},
          {"end", no_end ? Json() : Json(static_cast<std::int32_t>(end))},
          {"unit", family == vetra ? "counts" : "positions"}};
}

void apply_limits(Session& session, const HeadAxis& axis, const Limits& limits) {
  set_limits(session, axis, limits);
  switch_limits(session, axis, true);
}

Limits limits_of(const std::string& text) {
  const std::size_t colon = std::min(text.find(':'), text.size());
  const std::optional<std::int64_t> start = position_in(text.substr(0, colon));
  const std::optional<std::int64_t> end =
      position_in(text.substr(std::min(colon + 1, text.size())));
  if (start && end) return {*start, *end};
  throw Failure(ExitCode::wrong_arguments,
                "--limits: \"" + text + "\" is no pair of positions: write 10000:50000");
}

void add_axis_limits(CommandTable& table, CLI::App& group, const HeadAxis& axis) {
  CLI::App& limits = CommandTable::add_group(group, "limits", "Its travel limits");
  add_axis_command(table, limits, axis, {"show", "Tells what the controller has", show});
  add_set(table, limits, axis);
  add_axis_command(table, limits, axis,
                   {"on", "Switches them on", [](Session& session, const HeadAxis& which) {
                      return switch_them(session, which, true);
                    }});
  add_axis_command(table, limits, axis,
                   {"off", "Switches them off", [](Session& session, const HeadAxis& which) {
                      return switch_them(session, which, false);
                    }});
  add_step(table, limits, axis);
}

}  // namespace kelvo::ctl
