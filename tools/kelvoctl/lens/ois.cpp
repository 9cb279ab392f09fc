// The stabiliser's run-time controls.
#include "tools/kelvoctl/lens/ois.h"

#include <array>
#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/common/numbers.h"
#include "tools/kelvoctl/lens/lens_use.h"

namespace kelvo::ctl {
namespace {

constexpr Range long_range{0, 0xFFFFFFFF};
constexpr Fitted pausing{true, false, false};
// Elsewhere the same query tells the offset of the focus interrupter.
constexpr Fitted tells_stationary{true, false, false};
constexpr std::int64_t default_pause = 1;

struct Value {
  std::optional<std::int64_t> value;
};

/// One number that is set and read back.
struct OisSetting {
  const char* name;
  const char* description;
  Range range;
  std::int32_t (*set)(std::uint32_t value);
  std::uint32_t (*read)();
};
constexpr std::array settings{
    OisSetting{"coma", "Shows the coma, or sets it", byte_range, Set_Coma, Read_Coma},
    OisSetting{"stability", "Shows the limit up to which the gyro counts as stable, or sets it",
               word_range,
               [](std::uint32_t limit) { return Gyro_stability(static_cast<std::int32_t>(limit)); },
               Read_Gyro_stability},
};

struct AxisValues {
  std::optional<std::int64_t> both;
  std::optional<std::int64_t> x;
  std::optional<std::int64_t> y;

  bool any() const { return both || x || y; }
};

struct OnOptions {
  std::optional<std::int64_t> range;
};

using Set = std::int32_t (*)(std::uint32_t value);

void set(Session& session, Set setter, const std::optional<std::int64_t>& value) {
  if (!value) return;
  const auto number = static_cast<std::uint32_t>(*value);
  session.send([&] { return setter(number); });
  session.check_lens_link();
}

std::uint32_t answered(Session& session, std::uint32_t (*reader)()) {
  const std::uint32_t value = session.call(reader);
  session.check_lens_link();
  return value;
}

Json module_json(const Session& session) { return {{"module", name_of(session.lens())}}; }

/// One of an axis.
using ReadPair = std::uint32_t (*)(std::uint32_t* x, std::uint32_t* y);
Json pair_json(Session& session, ReadPair reader) {
  std::uint32_t x = 0;
  std::uint32_t y = 0;
  session.call([&] { return reader(&x, &y); });
  session.check_lens_link();
  return {{"x", x}, {"y", y}};
}

std::uint32_t gyro_values(std::uint32_t* x, std::uint32_t* y) {
  return static_cast<std::uint32_t>(Get_XY_Data(x, y));
}

Json switch_on(Session& session, const OnOptions& options) {
  use_lens(session);
  session.send([] { return OIS_En(1); });
  session.check_lens_link();
  set(session, Set_XY_Definition, options.range);  // behind, because that has made it 1
  Json result = module_json(session);
  result["stabiliser"] = "on";
  result["range"] = options.range.value_or(1);
  return result;
}

Json switch_off(Session& session) {
  use_lens(session);
  session.send([] { return OIS_En(0); });
  session.check_lens_link();
  Json result = module_json(session);
  result["stabiliser"] = "off";
  return result;
}

Json pause(Session& session, std::int64_t value) {
  refuse_unless(pausing.on(session.lens()), session.lens(), "cannot pause the stabiliser");
  use_lens(session);
  set(session, OIS_Pause, value);
  Json result = module_json(session);
  result["pause"] = answered(session, Read_OIS_Pause);
  return result;
}

Json set_or_show(Session& session, const OisSetting& setting, const Value& given) {
  use_lens(session);
  set(session, setting.set, given.value);
  Json result = module_json(session);
  result[setting.name] = answered(session, setting.read);
  return result;
}

Json gain(Session& session, const AxisValues& given) {
  const Set set_x = [](std::uint32_t value) {
    return Set_X_GyroGain(static_cast<std::int32_t>(value));
  };
  const Set set_y = [](std::uint32_t value) {
    return Set_Y_GyroGain(static_cast<std::int32_t>(value));
  };
  use_lens(session);
  set(session, set_x, given.x ? given.x : given.both);
  set(session, set_y, given.y ? given.y : given.both);
  Json result = module_json(session);
  result["gain"] = {{"x", answered(session, Read_X_GyroGain)},
                    {"y", answered(session, Read_Y_GyroGain)}};
  return result;
}

/// It cannot be read back.
Json range(Session& session, const AxisValues& given) {
  if (!given.any()) {
    throw Failure(ExitCode::wrong_arguments, "which range? Give RANGE, --x or --y");
  }
  use_lens(session);
  set(session, Set_XY_Definition, given.both);
  set(session, Set_X_Definition, given.x);
  set(session, Set_Y_Definition, given.y);
  Json result = module_json(session);
  for (const auto& [name, value] : {std::pair("x", given.x), std::pair("y", given.y)}) {
    const std::optional<std::int64_t> now = value ? value : given.both;
    if (now) result["range"][name] = *now;
  }
  return result;
}

Json mode(Session& session, std::uint32_t number, const char* name) {
  use_lens(session);
  set(session, Set_Mode, number);
  Json result = module_json(session);
  result["mode"] = name;
  return result;
}

Json stationary_json(Session& session) {
  if (!tells_stationary.on(session.lens())) return {};
  return answered(session, Read_Stationary_detection);
}

Json stationary(Session& session, std::optional<std::uint32_t> on) {
  const LensModule module = session.lens();
  refuse_unless(on.has_value() || tells_stationary.on(module), module,
                "does not tell the mode of stationary detection");
  use_lens(session);
  if (on) set(session, Stationary_detection, *on);
  Json result = module_json(session);
  if (on) result["detection"] = *on != 0 ? "on" : "off";
  result["detection_mode"] = stationary_json(session);
  return result;
}

Json read_all(Session& session) {
  use_lens(session);
  Json result = module_json(session);
  result.update(stabiliser_json(session));
  return result;
}

void add_stabiliser_switches(CommandTable& table, CLI::App& group) {
  auto [on, on_options] = table.add<OnOptions>(group, "on", "Starts stabilisation", switch_on);
  add_number(on, "--range", on_options.range, byte_range, "The range of both axes; 1 unless given");
  table.add(group, "off", "Stops stabilisation", switch_off);
  auto [pause_command, pause_options] =
      table.add<Value>(group, "pause", "Pauses stabilisation; DE015 alone",
                       [](Session& session, const Value& given) {
                         return pause(session, given.value.value_or(default_pause));
                       });
  add_number(pause_command, "PAUSE", pause_options.value, byte_range,
             "The program's pause setting; 1 unless given", "");
  table.add(group, "resume", "Lets stabilisation go on; DE015 alone",
            [](Session& session) { return pause(session, 0); });
}

void add_axis_values(CommandTable& table, CLI::App& group, const char* name,
                     const char* description, const char* value, const Range& limits,
                     Json (*run)(Session&, const AxisValues&)) {
  auto [command, options] = table.add<AxisValues>(group, name, description, run);
  add_number(command, value, options.both, limits, "For both axes", "");
  add_number(command, "--x", options.x, limits, "For the X axis");
  add_number(command, "--y", options.y, limits, "For the Y axis");
}

void add_setting(CommandTable& table, CLI::App& group, const OisSetting& setting) {
  auto [command, options] = table.add<Value>(group, setting.name, setting.description,
                                             [&setting](Session& session, const Value& given) {
                                               return set_or_show(session, setting, given);
                                             });
  add_number(command, "VALUE", options.value, setting.range, "What to set it to", "");
}

void add_modes(CommandTable& table, CLI::App& group) {
  CLI::App& modes = CommandTable::add_group(group, "mode", "Sets the mode of the loop");
  table.add(modes, "normal", "As after a boot",
            [](Session& session) { return mode(session, 0, "normal"); });
  table.add(modes, "calibration", "As in a quality check",
            [](Session& session) { return mode(session, 1, "calibration"); });
  CLI::App& detection =
      CommandTable::add_group(group, "stationary", "Switches stationary detection");
  table.add(detection, "on", "Switches it on, in the mode that the coma chooses",
            [](Session& session) { return stationary(session, 1); });
  table.add(detection, "off", "Switches it off",
            [](Session& session) { return stationary(session, 0); });
  table.add(detection, "show", "Shows its mode; DE015 alone",
            [](Session& session) { return stationary(session, {}); });
}

}  // namespace

Json stabiliser_json(Session& session) {
  Json result{{"gyro", pair_json(session, gyro_values)}};
  result["hall"] = pair_json(session, Get_HallXY_Data);
  result["gyro_stable"] = answered(session, Get_gyro_stable_flag) != 0;
  result["gain"] = {{"x", answered(session, Read_X_GyroGain)},
                    {"y", answered(session, Read_Y_GyroGain)}};
  for (const OisSetting& setting : settings) result[setting.name] = answered(session, setting.read);
  result["detection_mode"] = stationary_json(session);
  result["pause"] = pausing.on(session.lens()) ? Json(answered(session, Read_OIS_Pause)) : Json();
  return result;
}

void add_stabiliser(CommandTable& table) {
  CLI::App& group = CommandTable::add_group(table.root(), "ois", "Controls the stabiliser");
  add_stabiliser_switches(table, group);
  add_axis_values(table, group, "gain", "Shows the gyro gains, or sets them", "GAIN", long_range,
                  gain);
  add_axis_values(table, group, "range", "Sets the stabilisation range", "RANGE", byte_range,
                  range);
  add_modes(table, group);
  for (const OisSetting& setting : settings) add_setting(table, group, setting);
  table.add(group, "read", "Shows the sensors, and every setting that can be read", read_all);
}

}  // namespace kelvo::ctl
