#include "tools/kelvoctl/lens/lens_status.h"

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/hexadecimal.h"
#include "tools/kelvoctl/lens/motor_table.h"

namespace kelvo::ctl {
namespace {

/// A setting that can be read back.
struct Setting {
  const char* name;
  std::uint32_t (*read)();
};

constexpr std::array stabiliser_settings{
    Setting{"pause", Read_OIS_Pause},
    Setting{"gain_x", Read_X_GyroGain},
    Setting{"gain_y", Read_Y_GyroGain},
    Setting{"coma", Read_Coma},
    Setting{"stationary", Read_Stationary_detection},
    Setting{"stability", Read_Gyro_stability},
    Setting{"stable", Get_gyro_stable_flag},
};

constexpr std::uint32_t interrupters_of_t5391 = 2;
constexpr std::uint32_t interrupters_of_df033 = 3;

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

/// On DE015 asking would switch their supply on.
Json interrupters_of(Session& session, LensModule module) {
  if (module == LensModule::de015) return nullptr;
  const std::uint32_t number =
      module == LensModule::df033 ? interrupters_of_df033 : interrupters_of_t5391;
  Json list = Json::array();
  for (std::uint32_t i = 0; i < number; ++i) {
    list.push_back(session.call([i] { return getPI(i); }) == 1);
  }
  return list;
}

Json stabiliser_of(Session& session) {
  Json settings = Json::object();
  for (const Setting& setting : stabiliser_settings) {
    settings[setting.name] = session.call(setting.read);
  }
  std::uint32_t x = 0;
  std::uint32_t y = 0;
  session.call([&] { return Get_XY_Data(&x, &y); });
  settings["gyro"] = Json::array({x, y});
  session.call([&] { return Get_HallXY_Data(&x, &y); });
  settings["hall"] = Json::array({x, y});
  return settings;
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
  status["interrupters"] = interrupters_of(session, module);
  status["filter"] = nullptr;  // it does not tell where it stands
  if (module == LensModule::de015) status["stabiliser"] = stabiliser_of(session);
  status["motors"] = motors_of(session, module);
  return status;
}

}  // namespace kelvo::ctl
