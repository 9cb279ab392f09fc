// What there is of a head.
#include <nlohmann/json.hpp>

#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/head/head_axis.h"
#include "tools/kelvoctl/head/head_status.h"

namespace kelvo::ctl {
namespace {

Json controller_json(Session& session, const HeadAxis& axis, int family) {
  Json controller{{"axis", axis.name}, {"slave", axis.slave}};
  controller["answers"] = answers(session, axis, family);
  if (!controller["answers"]) return controller;
  controller.update(condition_json(session, axis, family));
  return controller;
}

Json detect(Session& session) {
  const int family = session.attach_head();
  Json controllers = Json::array();
  for (const HeadAxis& axis : head_axes) {
    controllers.push_back(controller_json(session, axis, family));
    if (controllers.back()["answers"]) continue;
    session.complain(ExitCode::link_failed,
                     std::string("the ") + axis.name + " controller does not answer");
  }
  return {{"head", head_name(family)}, {"controllers", controllers}};
}

Json version(Session& session) {
  Json result{{"head", nullptr}};
  for (const HeadAxis& axis : head_axes) {
    const int family = attach_axis(session, axis);
    result["head"] = head_name(family);
    result[axis.name] = version_json(session, axis, family);
  }
  return result;
}

}  // namespace

void add_head(CommandTable& table) {
  CLI::App& group = CommandTable::add_group(table.root(), "head", "The head's two controllers");
  table.add(group, "detect", "Tells their family, and whether they answer", detect);
  table.add(group, "version", "Reads the versions of their firmware", version);
}

}  // namespace kelvo::ctl
