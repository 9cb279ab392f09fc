#include "tools/kelvoctl/lens/lens_status.h"

#include <cstdint>
#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/hexadecimal.h"
#include "tools/kelvoctl/lens/interrupters.h"
#include "tools/kelvoctl/lens/motor_table.h"
#include "tools/kelvoctl/lens/ois.h"

namespace kelvo::ctl {
namespace {

Json motors_of(Session& session, LensModule module) {
  Json list = Json::array();
  for (const Motor& motor : motor_table) {
    if (!motor.is_on(module)) continue;
    Json entry{{"motor", motor.name}, {"count", nullptr}};
    if (motor.counted.on(module)) entry["count"] = session.call(motor.count);
    std::uint8_t running = 0;
    session.call([&] { return motor.status(&running); });
    entry["running"] = running != 0;
    list.push_back(entry);
  }
  return list;
}

}  // namespace

Json lens_status(Session& session) {
  const LensModule module = session.lens();
  std::uint32_t version = 0;
  session.call([&version] { return getVersion(&version); });
  session.check_lens_link();
  Json status{{"version", hexadecimal(version, 4)}};
  if (version == 0) {
    session.complain(ExitCode::link_failed, "no program answers: boot the controller");
    return status;
  }
  // On DE015 asking would switch their supply on.
  status["sensors"] = module == LensModule::de015 ? Json() : sensors_json(session);
  status["offset"] = offsets_json(session);
  status["filter"] = nullptr;  // it does not tell where it stands
  status.update(stabiliser_json(session));
  status["motors"] = motors_of(session, module);
  return status;
}

}  // namespace kelvo::ctl
