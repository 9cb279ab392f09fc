#include "tools/kelvoctl/head/head_status.h"

#include <cstdint>
#include <nlohmann/json.hpp>

#include "tools/kelvoctl/head/head_axis.h"

namespace kelvo::ctl {
namespace {

Json status_of(Session& session, const HeadAxis& axis, int family) {
  // The queries do not tell silence from zeros.
  if (!answers(session, axis, family)) {
    session.complain(ExitCode::link_failed,
                     std::string(axis.name) + ": the controller does not answer");
    return {{"axis", axis.name}};
  }
  const bool tells_all = family == tasmere;
  std::uint32_t position = 0;
  std::uint32_t start = 0;
  std::uint32_t end = 0;
  session.call([&] { return axis.position(&position); });
  session.call([&] { return axis.limits(&start, &end); });
  Json status{{"axis", axis.name},
              {"position", position},
              {"at_rest", session.call(axis.status) == 0},
              {"calibrated", session.call(axis.calibration) == 0},
              {"limits", session.call(axis.limits_on) == 1},
              // Of a tilt axis with its Hall sensor the start can lie below 0.
              {"start", static_cast<std::int32_t>(start)},
              {"end", static_cast<std::int32_t>(end)},
              {"version", session.call(axis.version)}};
  for (const auto& [name, query] :
       {std::pair{"hall", axis.uses_hall}, std::pair{"sleep", axis.sleep_mode},
        std::pair{"state", axis.program_state}, std::pair{"temperature", axis.temperature}}) {
    status[name] = tells_all ? Json(session.call(query)) : Json();
  }
  return status;
}

}  // namespace

Json head_status(Session& session, int family) {
  Json list = Json::array();
  for (const HeadAxis& axis : head_axes) list.push_back(status_of(session, axis, family));
  return list;
}

}  // namespace kelvo::ctl
