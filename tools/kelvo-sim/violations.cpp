#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "sim/report/report.h"
#include "tools/common/output.h"
#include "tools/kelvo-sim/cameras.h"
#include "tools/kelvo-sim/commands.h"

namespace kelvo::tools {
namespace {

Json to_json(const sim::camera::Violation& violation) {
  return {{"time_ns", violation.time.count()}, {"process", violation.process},
          {"to", name_of(violation.unit)},     {"frame", sim::frame_text(violation)},
          {"bytes", violation.length},         {"reason", violation.reason.data()}};
}

void violations(const CameraArguments& arguments, Context& context) {
  const sim::camera::Camera camera = open_camera(arguments.name)->snapshot();
  if (camera.violations().total() != 0) context.result = ExitCode::violations;
  if (!arguments.json) return print(sim::violations_table(camera));
  Json listed = Json::array();
  for (const sim::camera::Violation& violation : camera.violations().listed()) {
    listed.push_back(to_json(violation));
  }
  print_json(
      {{"camera", arguments.name}, {"total", camera.violations().total()}, {"listed", listed}});
}

}  // namespace

void add_violations(CLI::App& app, Context& context) {
  CLI::App* const command = app.add_subcommand(
      "violations",
      "Lists what programs did against the protocol; the exit code tells whether there is any");
  const auto arguments = std::make_shared<CameraArguments>();
  add_name(*command, *arguments);
  add_json(*command, *arguments);
  command->callback([arguments, &context] { violations(*arguments, context); });
}

}  // namespace kelvo::tools
