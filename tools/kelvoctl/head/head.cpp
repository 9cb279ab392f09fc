// What there is of a head.
#include <nlohmann/json.hpp>

#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/head/head_axis.h"
#include "tools/kelvoctl/head/head_status.h"

namespace kelvo::ctl {
namespace {

using Family = std::optional<int>;  // nothing while pan, which alone tells it, does not answer

Json head_json(Family family) { return family ? Json(head_name(*family)) : Json(); }

/// The command goes on with the other controller, and fails in the end.
bool answers_or_complain(Session& session, const HeadAxis& axis, Family family) {
  if ((family || axis.tilts) && answers(session, axis, family)) return true;
  session.complain(ExitCode::link_failed, silence(axis.name));
  return false;
}

Json controller_json(Session& session, const HeadAxis& axis, Family family) {
  Json controller{{"axis", axis.name}, {"slave", axis.slave}};
  controller["answers"] = answers_or_complain(session, axis, family);
  if (!controller["answers"] || !family) return controller;
  controller.update(condition_json(session, axis, *family));
  return controller;
}

Json detect(Session& session) {
  const Family family = session.find_head();
  Json controllers = Json::array();
  for (const HeadAxis& axis : head_axes) {
    controllers.push_back(controller_json(session, axis, family));
  }
  return {{"head", head_json(family)}, {"controllers", controllers}};
}

Json version_of(Session& session, const HeadAxis& axis, Family family) {
  if (!answers_or_complain(session, axis, family) || !family) return {};
  return version_json(session, axis, *family);
}

Json version(Session& session) {
  const Family family = session.find_head();
  Json result{{"head", head_json(family)}};
  for (const HeadAxis& axis : head_axes) {
    result[axis.name] = version_of(session, axis, family);
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
