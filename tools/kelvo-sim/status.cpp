#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "sim/lens/wiring.h"
#include "sim/report/report.h"
#include "tools/common/output.h"
#include "tools/kelvo-sim/cameras.h"
#include "tools/kelvo-sim/commands.h"

namespace kelvo::tools {
namespace {

using sim::camera::BootRecord;
using sim::camera::Camera;
using sim::camera::LensSummary;
using sim::camera::name_of;

Json motors(const BootRecord& boot, const LensSummary& lens) {
  Json motors = Json::array();
  for (const sim::camera::Wire& wire : sim::camera::wiring) {
    if (wire.module != boot.module) continue;
    const std::size_t output = index(wire.output);
    Json motor{{"motor", wire.motor}, {"position", lens.positions[output]}};
    if (wire.counted) motor["counter"] = lens.counts[output];
    motor["in"] = wire.count;
    motors.push_back(motor);
  }
  return motors;
}

Json boot_json(const Camera& camera, std::uint32_t number) {
  const BootRecord& boot = camera.boots().boot(number);
  Json json{{"boot", number},
            {"attempts", boot.attempts},
            {"program", sim::state_of(boot)},
            {"violations", boot.violations}};
  if (boot.started) json["boot_time_ns"] = (boot.up - boot.begun).count();
  if (!boot.runs) return json;
  const LensSummary lens = camera.lens_summary(number);
  json["module"] = name_of(boot.module);
  json["version"] = boot.version;
  json["motors"] = motors(boot, lens);
  json["filter"] = name_of(lens.filter);
  json["dc_iris"] = lens.iris_target;
  json["heater"] = lens.heater;
  json["stabiliser"] = lens.stabiliser_on;
  return json;
}

Json axis(const sim::camera::HeadController& controller, sim::camera::Time now) {
  return {{"position", controller.common_position(now)},
          {"count", controller.axis().position(now)},
          {"limits", controller.axis().bound()},
          {"state", sim::state_of(controller, now)}};
}

Json status_json(const std::string& name, const Camera& camera) {
  const sim::camera::Time now = camera.clock.now();
  Json boots = Json::array();
  for (std::uint32_t number = camera.boots().first(); number <= camera.boots().total(); ++number) {
    boots.push_back(boot_json(camera, number));
  }
  return {{"camera", name},
          {"time_ns", now.count()},
          {"violations", camera.violations().total()},
          {"boots", boots},
          {"head",
           {{"family", name_of(camera.head().family())},
            {"transfers", camera.head().transfers()},
            {"pan", axis(camera.head().pan(), now)},
            {"tilt", axis(camera.head().tilt(), now)}}}};
}

void status(const CameraArguments& arguments) {
  const Camera camera = open_camera(arguments.name)->snapshot();
  if (arguments.json) return print_json(status_json(arguments.name, camera));
  print(sim::summary(camera));
}

}  // namespace

void add_status(CLI::App& app) {
  CLI::App* const command =
      app.add_subcommand("status", "Shows how a camera stands: boots, motors, head, time");
  const auto arguments = std::make_shared<CameraArguments>();
  add_name(*command, *arguments);
  add_json(*command, *arguments);
  command->callback([arguments] { status(*arguments); });
}

}  // namespace kelvo::tools
