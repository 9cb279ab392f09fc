#include "tools/kelvoctl/head/head_status.h"

#include <cstdint>
#include <nlohmann/json.hpp>

#include "tools/kelvoctl/common/hexadecimal.h"
#include "tools/kelvoctl/head/axis_commands.h"

namespace kelvo::ctl {
namespace {

Json status_of(Session& session, const HeadAxis& axis, int family) {
  // The queries do not tell silence from zeros.
  if (!answers(session, axis, family)) {
    session.complain(ExitCode::link_failed,
                     std::string(axis.name) + ": the controller does not answer");
    return {{"axis", axis.name}};
  }
  Json status = place_json(session, axis);
  status.update(condition_json(session, axis, family));
  status.update(limits_json(session, axis, family));
  status["version"] = version_json(session, axis, family);
  for (const auto& [name, query] :
       {std::pair{"state", axis.program_state}, std::pair{"temperature", axis.temperature}}) {
    status[name] = family == tasmere ? Json(session.call(query)) : Json();
  }
  return status;
}

}  // namespace

Json version_json(Session& session, const HeadAxis& axis, int family) {
  if (family == vetra && axis.tilts) return {};
  const std::int32_t version = session.call(axis.version);
  return hexadecimal(static_cast<std::uint32_t>(version), 4);
}

Json condition_json(Session& session, const HeadAxis& axis, int family) {
  return {
      {"calibrated", session.call(axis.calibration) == 0},
      {"awake", session.call(axis.sleep_mode) == 0},
      {"uses_hall_sensor", family == tasmere ? Json(session.call(axis.uses_hall) == 1) : Json()}};
}

Json head_status(Session& session, int family) {
  Json list = Json::array();
  for (const HeadAxis& axis : head_axes) list.push_back(status_of(session, axis, family));
  return list;
}

}  // namespace kelvo::ctl
