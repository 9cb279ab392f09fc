// Whether a camera can be driven from here, before anything is sent.
#include <nlohmann/json.hpp>

#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/doctor_checks.h"

namespace kelvo::ctl {
namespace {

const char* health_name(Health health) {
  switch (health) {
    case Health::good: return "good";
    case Health::doubtful: return "doubtful";
    case Health::bad: return "bad";
  }
  return "";
}

Json doctor(Session& session) {
  Json rows = Json::array();
  for (const std::vector<Finding>& findings : {check_camera(), check_devices(), check_library(),
                                               check_bus_lock(), check_images(), check_records()}) {
    for (const Finding& finding : findings) {
      rows.push_back({{"check", finding.what},
                      {"health", health_name(finding.health)},
                      {"detail", finding.detail}});
      if (finding.health == Health::bad) {
        session.complain(finding.code, finding.what + ": " + finding.detail);
      }
    }
  }
  return {{"checks", rows}};
}

}  // namespace

void add_doctor(CommandTable& table) {
  table.add(table.root(), "doctor",
            "Looks whether a camera can be driven from here: devices, bus lock, library, images",
            doctor);
}

}  // namespace kelvo::ctl
