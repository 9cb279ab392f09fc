#include "tools/kelvo-sim/cameras.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <nlohmann/json.hpp>

#include "sim/report/table.h"
#include "tools/common/failure.h"
#include "tools/common/output.h"
#include "tools/kelvo-sim/commands.h"

namespace kelvo::tools {
namespace {

std::vector<sim::CameraEntry> all_cameras() {
  sim::CameraList list = sim::SharedCamera::list();
  if (!list.error.empty()) throw Failure(ExitCode::unusable_camera, list.error);
  return std::move(list.cameras);
}

std::size_t programs_of(const sim::CameraEntry& camera) {
  return static_cast<std::size_t>(
      std::ranges::count(camera.processes, sim::Role::program, &sim::AttachedProcess::role));
}

std::string time_text(std::chrono::system_clock::time_point time) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::string text(sizeof "2000-01-01T00:00:00Z" - 1, ' ');
  std::strftime(text.data(), text.size() + 1, "%Y-%m-%dT%H:%M:%SZ", &parts);
  return text;
}

void print_table(const std::vector<sim::CameraEntry>& cameras) {
  sim::Table table({"camera", "made", "programs", "state"});
  for (const sim::CameraEntry& camera : cameras) {
    const bool usable = camera.error.empty();
    table.add({camera.name, usable ? time_text(camera.made) : "-",
               usable ? std::to_string(programs_of(camera)) : "-",
               usable ? "usable" : camera.error});
  }
  if (!table.empty()) print(table.text());
}

Json to_json(const sim::CameraEntry& camera) {
  if (!camera.error.empty()) return {{"camera", camera.name}, {"error", camera.error}};
  Json json{{"camera", camera.name}, {"made", time_text(camera.made)}, {"programs", Json::array()}};
  for (const sim::AttachedProcess& process : camera.processes) {
    if (process.role == sim::Role::program) json["programs"].push_back(process.process);
  }
  return json;
}

void list(bool json) {
  const std::vector<sim::CameraEntry> cameras = all_cameras();
  if (!json) return print_table(cameras);
  Json all = Json::array();
  for (const sim::CameraEntry& camera : cameras) all.push_back(to_json(camera));
  print_json({{"cameras", all}});
}

std::string users(std::size_t programs) {
  if (programs == 1) return "1 program uses this camera: end it";
  return std::to_string(programs) + " programs use this camera: end them";
}

void remove(const std::string& name, bool in_use) {
  const sim::CameraEntry camera = find_camera(name);
  if (!in_use && programs_of(camera) != 0) {
    throw Failure(ExitCode::camera_in_use, name + ": " + users(programs_of(camera)) +
                                               ", or remove the camera with --in-use");
  }
  const std::string error =
      sim::SharedCamera::remove(name, in_use ? sim::Removal::even_in_use : sim::Removal::if_unused);
  if (!error.empty()) throw Failure(ExitCode::unusable_camera, error);
}

}  // namespace

void add_name(CLI::App& command, CameraArguments& arguments) {
  command.add_option("NAME", arguments.name, "The camera")->type_name("")->required();
}

void add_json(CLI::App& command, CameraArguments& arguments) {
  command.add_flag("--json", arguments.json, "Print JSON instead of tables");
}

sim::CameraEntry find_camera(const std::string& name) {
  const std::vector<sim::CameraEntry> cameras = all_cameras();
  const auto found = std::ranges::find(cameras, name, &sim::CameraEntry::name);
  if (found != cameras.end()) return *found;
  throw Failure(ExitCode::no_camera, name + ": there is no camera of this name: " + tool_name +
                                         " list shows those that there are");
}

std::unique_ptr<sim::SharedCamera> open_camera(const std::string& name) {
  find_camera(name);
  sim::OpenedCamera opened = sim::SharedCamera::open(name, sim::Role::observer);
  if (opened.camera == nullptr) throw Failure(ExitCode::unusable_camera, opened.error);
  return std::move(opened.camera);
}

void add_list(CLI::App& app) {
  CLI::App* const command = app.add_subcommand("list", "Lists the cameras that have names");
  const auto arguments = std::make_shared<CameraArguments>();
  add_json(*command, *arguments);
  command->callback([arguments] { list(arguments->json); });
}

void add_remove(CLI::App& app) {
  CLI::App* const command = app.add_subcommand("remove", "Removes a camera");
  const auto arguments = std::make_shared<CameraArguments>();
  const auto in_use = std::make_shared<bool>(false);
  add_name(*command, *arguments);
  command->add_flag("--in-use", *in_use,
                    "Even if programs use it: they go on, but nobody joins them");
  command->callback([arguments, in_use] { remove(arguments->name, *in_use); });
}

}  // namespace kelvo::tools
