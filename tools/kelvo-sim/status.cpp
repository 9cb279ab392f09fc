#include <sys/ipc.h>
#include <sys/sem.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "sim/report/report.h"
#include "sim/report/sections.h"
#include "tools/common/output.h"
#include "tools/kelvo-sim/cameras.h"
#include "tools/kelvo-sim/commands.h"
#include "tools/kelvo-sim/section_json.h"

namespace kelvo::tools {
namespace {

using sim::Section;
using sim::Value;
using sim::camera::Camera;

/// Who holds the bus lock: the last to have changed a semaphore that is not free.
Section bus_lock_section(const sim::SharedCamera& shared) {
  Section section{"bus_lock", {{"held", "bus lock held"}, {"process", "by process"}}};
  const key_t key = shared.bus_key();
  const int set = key > 0 ? semget(key, 1, 0) : -1;
  const bool held = set >= 0 && semctl(set, 0, GETVAL) > 0;
  section.rows.push_back({held, held ? Value(sim::number(semctl(set, 0, GETPID))) : Value()});
  return section;
}

Section programs_section(const sim::SharedCamera& shared) {
  Section section{"programs", {{"process", "program's process"}, {"asleep", "sleeps"}}};
  for (const sim::AttachedProcess& process : shared.processes()) {
    if (process.role != sim::Role::program) continue;
    section.rows.push_back({sim::number(process.process), process.asleep});
  }
  return section;
}

Json status_json(const std::string& name, const Camera& camera, const std::vector<Section>& more) {
  Json json{{"camera", name},
            {"time_ns", camera.clock.now().count()},
            {"violations", camera.violations().total()},
            {"head_transfers", camera.head().transfers()},
            {"pt5111_words", camera.pt5111_words()}};
  add_sections(json, sim::all_sections(camera));
  add_sections(json, more);
  return json;
}

void status(const CameraArguments& arguments) {
  const std::unique_ptr<sim::SharedCamera> shared = open_camera(arguments.name);
  const Camera camera = shared->snapshot();
  const std::vector<Section> more{bus_lock_section(*shared), programs_section(*shared)};
  if (arguments.json) return print_json(status_json(arguments.name, camera, more));
  print(sim::status_text(camera, more));
}

}  // namespace

void add_status(CLI::App& app) {
  CLI::App* const command =
      app.add_subcommand("status", "Shows how every device of a camera stands, and what has been");
  const auto arguments = std::make_shared<CameraArguments>();
  add_name(*command, *arguments);
  add_json(*command, *arguments);
  command->callback([arguments] { status(*arguments); });
}

}  // namespace kelvo::tools
