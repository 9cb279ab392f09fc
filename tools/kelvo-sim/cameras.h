#ifndef KELVO_TOOLS_KELVO_SIM_CAMERAS_H
#define KELVO_TOOLS_KELVO_SIM_CAMERAS_H

#include <memory>
#include <string>

#include "sim/state/shared_camera.h"

namespace CLI {  // NOLINT(readability-identifier-naming): the name that it has
class App;
}  // namespace CLI

namespace kelvo::tools {

/// The arguments of a command that looks at one camera.
struct CameraArguments {
  std::string name;
  bool json = false;
};

/// Adds the camera's name to a command.
void add_name(CLI::App& command, CameraArguments& arguments);
/// Adds the choice between tables and JSON.
void add_json(CLI::App& command, CameraArguments& arguments);

/// The entry of a camera in the list of all. Throws a Failure when there is none.
sim::CameraEntry find_camera(const std::string& name);
/// A copy of the camera now, or a Failure.
std::unique_ptr<sim::SharedCamera> open_camera(const std::string& name);

}  // namespace kelvo::tools

#endif
