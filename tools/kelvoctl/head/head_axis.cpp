#include "tools/kelvoctl/head/head_axis.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <span>

#include "kelvo.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "wire/pan_tilt.h"
#include "wire/pan_tilt_registers.h"

namespace kelvo::ctl {
namespace {

constexpr std::size_t written_words = 7;

/// A register that tells whether somebody is there.
struct Probe {
  std::uint8_t number;
  std::int32_t length;
};
constexpr Probe vetra_probe{wire::vetra::position, 2};
constexpr Probe tasmere_probe{wire::tasmere::position, 2};
constexpr Probe common_probe{wire::vetra::version, 1};  // both families can read this number
static_assert(wire::vetra::version == wire::tasmere::sleep_mode);

const Probe& probe_of(std::optional<int> family) {
  if (!family) return common_probe;
  return *family == vetra ? vetra_probe : tasmere_probe;
}

}  // namespace

const std::array<HeadAxis, 2> head_axes{
    HeadAxis{.name = "pan",
             .tilts = false,
             .slave = wire::pan_slave,
             .vetra_written = iPanVETRA_Motor_Reg,
             .tasmere_written = iPanTASMERE_PID,
             .move_to = PanABSMove,
             .move = PanContinuousMove,
             .stop = PanStop,
             .position = GetPanPos,
             .status = GetPanStatus,
             .sleep_mode = GetPanSleepMode,
             .calibration = PanGetCaliStatus,
             .uses_hall = GetPanHallSetting,
             .version = GetPanVersion,
             .program_state = GetPanProgState,
             .temperature = GetPanTemp,
             .switch_limits = PanLimitEn,
             .set_limits = PanLimitSet,
             .set_limit_step = PanLimitstep,
             .limits_on = GetPanLimitEn,
             .limits = GetPanLimitPos,
             .turbo = PanTurboMode,
             .current = SetPanCurrent,
             .wake = SetPanWakeUp,
             .reset = PanReset,
             .initialise = PanInitParam},
    HeadAxis{.name = "tilt",
             .tilts = true,
             .slave = wire::tilt_slave,
             .vetra_written = iTiltVETRA_Motor_Reg,
             .tasmere_written = iTiltTASMERE_PID,
             .move_to = TiltABSMove,
             .move = TiltContinuousMove,
             .stop = TiltStop,
             .position = GetTiltPos,
             .status = GetTiltStatus,
             .sleep_mode = GetTiltSleepMode,
             .calibration = TiltGetCaliStatus,
             .uses_hall = GetTiltHallSetting,
             .version = GetTiltVersion,
             .program_state = GetTiltProgState,
             .temperature = GetTiltTemp,
             .switch_limits = TiltLimitEn,
             .set_limits =
                 [](std::int32_t start, std::int32_t end) {
                   return TiltLimit(static_cast<std::uint32_t>(start),
                                    static_cast<std::uint32_t>(end));
                 },
             .set_limit_step = TiltLimitstep,
             .limits_on = GetTiltLimitEn,
             .limits = GetTiltLimitPos,
             .turbo = TiltTurboMode,
             .current =
                 [](std::int32_t current) {
                   return SetTILTCurrent(static_cast<std::uint32_t>(current));
                 },
             .wake = SetTiltWakeUp,
             .reset = TiltReset,
             .initialise = TiltInitParam},
};

int attach_axis(Session& session, const HeadAxis& axis) {
  const std::optional<int> family = session.find_head();
  if (!family) {
    throw Failure(
        ExitCode::link_failed,
        silence("pan", axis.tilts ? ", and tells the family before tilt can be used" : ""));
  }
  check_answers(session, axis, *family);
  return *family;
}

bool answers(Session& session, const HeadAxis& axis, std::optional<int> family) {
  const Probe& probe = probe_of(family);
  std::array<std::uint8_t, 2> bytes{};
  return session.call(
             [&] { return ReadI2C(axis.slave, probe.number, bytes.data(), probe.length); }) == 0;
}

void check_answers(Session& session, const HeadAxis& axis, int family) {
  if (answers(session, axis, family)) return;
  throw Failure(ExitCode::link_failed, silence(axis.name));
}

void require_family(const HeadAxis& axis, int family, int required, const std::string& what) {
  if (family == required) return;
  throw Failure(ExitCode::refused, "the " + std::string(axis.name) + " controller of a " +
                                       head_name(family) + " head has no " + what);
}

std::uint32_t position_of(Session& session, const HeadAxis& axis) {
  std::uint32_t position = 0;
  session.call([&] { return axis.position(&position); });
  return position;
}

bool is_at_rest(Session& session, const HeadAxis& axis) { return session.call(axis.status) == 0; }

Json place_json(Session& session, const HeadAxis& axis) {
  return {{"axis", axis.name},
          {"position", position_of(session, axis)},
          {"at_rest", is_at_rest(session, axis)}};
}

void forget_settings(const HeadAxis& axis) {
  constexpr std::int32_t in_no_table = -1;
  for (std::int32_t* const written : {axis.vetra_written, axis.tasmere_written}) {
    std::ranges::fill(std::span(written, written_words), in_no_table);
  }
  giSerTiltUseHall = -1;
}

void add_axis_command(CommandTable& table, CLI::App& group, const HeadAxis& axis,
                      const AxisCommand& command) {
  table.add(group, command.name, command.description,
            [&axis, run = command.run](Session& session) { return run(session, axis); });
}

}  // namespace kelvo::ctl
