// The photo-interrupters: their states, their supply, and what the controller does with them by itself.
#include "tools/kelvoctl/lens/interrupters.h"

#include <array>
#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/common/numbers.h"
#include "tools/kelvoctl/common/options.h"
#include "tools/kelvoctl/lens/lens_use.h"
#include "tools/kelvoctl/lens/motor_table.h"
#include "tools/kelvoctl/lens/pt5111.h"

namespace kelvo::ctl {
namespace {

constexpr ByModule<std::int64_t> sensors{3, 4, 2};
constexpr ByModule<std::int64_t> calibrated_sensors{3, 3, 2};
constexpr Fitted verification_off{false, true, true};
constexpr Fitted zoom2_offset{true, false, false};
constexpr Fitted tells_calibrated{true, false, false};
constexpr std::int32_t all = -1;

struct SensorOptions {
  std::optional<std::int64_t> sensor;
};

struct SupplyOptions {
  bool pt5111 = false;
};

struct Switch {
  const char* name;
  std::int32_t value;
};
constexpr std::array switches{Switch{"on", 1}, Switch{"off", 0}};

/// The motor that usually has it.
Json motor_at(LensModule module, std::int64_t sensor) {
  for (const Motor& motor : motor_table) {
    if (motor.is_on(module) && motor.sensor.on(module) == sensor) return motor.name;
  }
  return {};
}

Json state(Session& session, std::int64_t sensor) {
  const auto read = [number = static_cast<std::uint32_t>(sensor)] { return getPI(number); };
  // On DE015 the supply is switched on and the level converted; elsewhere it is a query.
  const bool sends = session.lens() == LensModule::de015;
  const std::uint32_t value = sends ? session.send(read) : session.call(read);
  session.check_lens_link();
  return {
      {"sensor", sensor}, {"motor", motor_at(session.lens(), sensor)}, {"interrupted", value == 1}};
}

Json read_sensors(Session& session, const SensorOptions& options) {
  const LensModule module = session.lens();
  if (options.sensor) check_sensor(module, *options.sensor);
  use_lens(session);
  return {{"module", name_of(module)},
          {"sensors", options.sensor ? Json::array({state(session, *options.sensor)})
                                     : sensors_json(session)}};
}

Json supply(Session& session, const Switch& to, const SupplyOptions& options) {
  const LensModule module = session.lens();
  if (options.pt5111) refuse_unless(with_pt5111.on(module), module, "has no PT5111");
  use_lens(session);
  const std::int32_t on = to.value;
  if (options.pt5111) {
    check_word(session, session.send([on] { return PT5111PI1(on); }));
  } else {
    session.send([on] { return SetPIPower(on); });
    session.check_lens_link();
  }
  return {{"module", name_of(module)},
          {"supply", options.pt5111 ? "pt5111" : "controller"},
          {"power", to.name}};
}

Json calibrate(Session& session, const SensorOptions& options) {
  const LensModule module = session.lens();
  const std::int64_t count = calibrated_sensors.on(module);
  refuse_unless(options.sensor.value_or(0) < count, module,
                "calibrates the photo-interrupters 0 to " + std::to_string(count - 1) + " only");
  use_lens(session);
  const auto which = static_cast<std::int32_t>(options.sensor.value_or(all));
  session.send([which] { return setPICalibraition(which); });
  session.check_lens_link();
  return {{"module", name_of(module)},
          {"sensor", options.sensor ? Json(which) : Json("all")},
          {"calibration", "started"}};
}

Json verify(Session& session, const Switch& to) {
  const LensModule module = session.lens();
  refuse_unless(to.value != 0 || verification_off.on(module), module,
                "cannot switch the verification off again");
  use_lens(session);
  session.send([&to] { return FocusPIVerification(to.value); });
  session.check_lens_link();
  return {{"module", name_of(module)}, {"verification", to.name}};
}

Json offsets(Session& session) {
  use_lens(session);
  Json result{{"module", name_of(session.lens())}};
  result.update(offsets_json(session));
  return result;
}

void add_switches(CommandTable& table, CLI::App& group) {
  CLI::App& power = CommandTable::add_group(group, "power", "Switches their supply");
  CLI::App& verification = CommandTable::add_group(
      group, "verify", "Switches the verification of the focus interrupter");
  for (const Switch& to : switches) {
    auto [command, options] = table.add<SupplyOptions>(
        power, to.name, std::string("Switches the supply ") + to.name,
        [&to](Session& session, const SupplyOptions& given) { return supply(session, to, given); });
    add_flag(command, "--pt5111", options.pt5111, "That of the one at the PT5111");
    table.add(verification, to.name, std::string("Switches the verification ") + to.name,
              [&to](Session& session) { return verify(session, to); });
  }
}

}  // namespace

Json sensors_json(Session& session) {
  Json states = Json::array();
  for (std::int64_t sensor = 0; sensor < sensors.on(session.lens()); ++sensor) {
    states.push_back(state(session, sensor));
  }
  return states;
}

Json offsets_json(Session& session) {
  const LensModule module = session.lens();
  Json result{{"focus", session.call(GetFocusOffset)}};
  result["zoom2"] = zoom2_offset.on(module) ? Json(session.call(GetZoom2Offset)) : Json();
  if (tells_calibrated.on(module)) {
    result["focus_calibrated"] = session.call([] { return getPI_Cali_DE051(0); }) == 1;
  }
  session.check_lens_link();
  return result;
}

void check_sensor(LensModule module, std::int64_t sensor) {
  const std::int64_t count = sensors.on(module);
  if (sensor < count) return;
  throw Failure(ExitCode::wrong_arguments, name_of(module) + " has the photo-interrupters 0 to " +
                                               std::to_string(count - 1) + " only");
}

void add_interrupters(CommandTable& table) {
  CLI::App& group = CommandTable::add_group(table.root(), "pi", "Looks at the photo-interrupters");
  auto [reading, read_options] =
      table.add<SensorOptions>(group, "read", "Tells whether they are interrupted", read_sensors);
  add_number(reading, "SENSOR", read_options.sensor, byte_range, "One alone", "");
  auto [calibration, calibrate_options] = table.add<SensorOptions>(
      group, "calibrate", "Starts the controller's own calibration", calibrate);
  add_number(calibration, "SENSOR", calibrate_options.sensor, byte_range, "One alone", "");
  table.add(group, "offset", "Shows what a calibration found", offsets);
  add_switches(table, group);
}

}  // namespace kelvo::ctl
