// What else an axis's controller can be told: turbo, current, to wake up, to restart, to be set up.
#include <nlohmann/json.hpp>

#include "tools/kelvoctl/common/child.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/common/options.h"
#include "tools/kelvoctl/common/signals.h"
#include "tools/kelvoctl/head/axis_commands.h"

namespace kelvo::ctl {
namespace {

Json switch_turbo(Session& session, const HeadAxis& axis, bool on) {
  const int family = attach_axis(session, axis);
  require_family(axis, family, tasmere, "turbo mode");
  session.call([&] { return axis.turbo(on ? 1 : 0); });
  check_answers(session, axis, family);
  return {{"axis", axis.name}, {"turbo", on}};
}

struct CurrentOptions {
  std::string value;
};

/// The library's number for a current: a Tasmere controller has two profiles.
std::int32_t current_of(int family, const std::string& text) {
  if (family == tasmere) {
    if (text == "A" || text == "B") return text == "A" ? 1 : 2;
    throw Failure(ExitCode::wrong_arguments,
                  "\"" + text + "\" is no profile of a tasmere head: write A or B");
  }
  const std::optional<std::int64_t> number = parse_number(text);
  if (number && *number >= word_range.low && *number <= word_range.high) {
    return static_cast<std::int32_t>(*number);
  }
  throw Failure(ExitCode::wrong_arguments,
                "\"" + text + "\" is no current of a vetra head: write 0 to 65535");
}

Json set_current(Session& session, const HeadAxis& axis, const CurrentOptions& options) {
  const int family = attach_axis(session, axis);
  const std::int32_t current = current_of(family, options.value);
  session.call([&] { return axis.current(current); });
  forget_settings(axis);
  check_answers(session, axis, family);
  const Json value = family == tasmere ? Json(options.value) : Json(current);
  return {{"axis", axis.name}, {family == tasmere ? "profile" : "current", value}};
}

/// The wake-up's own result tells nothing.
Json wake(Session& session, const HeadAxis& axis) {
  attach_axis(session, axis);
  session.call(axis.wake);
  if (session.call(axis.sleep_mode) != 0) {
    throw Failure(ExitCode::link_failed, "the controller does not wake up");
  }
  return {{"axis", axis.name}, {"awake", true}};
}

Json reset(Session& session, const HeadAxis& axis) {
  const int family = attach_axis(session, axis);
  session.confirm("This restarts the " + std::string(axis.name) + " controller. Go on?");
  session.call(axis.reset);
  forget_settings(axis);
  check_answers(session, axis, family);
  return place_json(session, axis);
}

Json initialise(Session& session, const HeadAxis& axis) {
  const int family = attach_axis(session, axis);
  require_family(axis, family, tasmere, "set-up of its own");
  const std::string name = axis.name;
  session.confirm("This sets up the " + name + " controller as a new one, writes its flash and " +
                  "restarts it. Go on?");
  session.progress(name + " init");
  const bool interrupted = run_in_child(
      session, [&axis] { axis.initialise(); },
      [&](const std::string& line) { session.progress(name + " init: " + line); });
  forget_settings(axis);
  check_answers(session, axis, family);
  if (interrupted) throw Interrupted("interrupted: the set-up was carried through");
  return place_json(session, axis);
}

void add_turbo(CommandTable& table, CLI::App& group, const HeadAxis& axis) {
  CLI::App& turbo = CommandTable::add_group(group, "turbo", "Its turbo mode (tasmere)");
  add_axis_command(table, turbo, axis,
                   {"on", "Switches it on", [](Session& session, const HeadAxis& which) {
                      return switch_turbo(session, which, true);
                    }});
  add_axis_command(table, turbo, axis,
                   {"off", "Switches it off", [](Session& session, const HeadAxis& which) {
                      return switch_turbo(session, which, false);
                    }});
}

void add_current(CommandTable& table, CLI::App& group, const HeadAxis& axis) {
  auto [command, options] = table.add<CurrentOptions>(
      group, "current", "Sets the motor's current (vetra), or a drive profile (tasmere)",
      [&axis](Session& session, const CurrentOptions& given) {
        return set_current(session, axis, given);
      });
  require(add_text(command, "VALUE", options.value, "vetra: 0 to 65535; tasmere: A or B"));
}

}  // namespace

void add_axis_settings(CommandTable& table, CLI::App& group, const HeadAxis& axis) {
  add_turbo(table, group, axis);
  add_current(table, group, axis);
  add_axis_command(table, group, axis, {"wake", "Wakes the controller up", wake});
  add_axis_command(table, group, axis, {"reset", "Restarts the controller", reset});
  add_axis_command(
      table, group, axis,
      {"init", "Sets up a new controller and saves that in its flash (tasmere)", initialise});
}

}  // namespace kelvo::ctl
