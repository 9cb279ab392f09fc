#include <unistd.h>

#include <cstdint>

#include "kelvo/bus.h"
#include "kelvo/lens.h"
#include "lens/motors/by_module.h"
#include "wire/lens_program.h"
#include "wire/motor_channels.h"

namespace {

using kelvo::lens::ByModule;
using kelvo::lens::lens_module;
using kelvo::lens::LensModule;
namespace command = kelvo::wire::command;
namespace query = kelvo::wire::query;
namespace task = kelvo::wire::sensor_task;
namespace wire = kelvo::wire;

struct Reply {
  std::uint8_t bytes[4] = {};

  std::uint32_t level() const { return static_cast<std::uint32_t>(bytes[2] << 8 | bytes[3]); }
  std::uint32_t low_bit() const { return bytes[3] & 1U; }
  std::uint32_t wide() const {
    return static_cast<std::uint32_t>(bytes[0] << 8 | bytes[1]) << 16 | level();
  }
};

Reply ask(std::uint8_t code, std::uint32_t argument) {
  Reply reply;
  RecvCommand(code, static_cast<std::uint8_t>(argument), reply.bytes);
  return reply;
}

struct Calibration {
  std::int32_t sensors = 0;
  std::uint8_t command = 0;
  std::uint8_t task = 0;
};

constexpr ByModule<Calibration> calibrations{
    .de015 = {3, command::interrupter_service, task::calibrate},
    .df033 = {3, command::sensor_service, task::calibrate},
    .t5391 = {2, command::sensor_service, task::calibrate_t5391},
};
constexpr std::int32_t all_sensors = -1;

/// 0: not served.
using OffsetQuery = std::uint8_t;
constexpr ByModule<OffsetQuery> focus_offset{
    .de015 = query::interrupter_offset,
    .df033 = query::focus_offset,
    .t5391 = query::focus_offset,
};
constexpr ByModule<OffsetQuery> zoom2_offset{.de015 = query::zoom2_offset};

std::uint32_t read_offset(const ByModule<OffsetQuery>& offset) {
  const OffsetQuery code = offset.fitted();
  return code == 0 ? 0 : ask(code, 0).wide();
}

/// The interrupters stay supplied afterwards (deliberate).
std::uint32_t measure_interrupter(std::uint32_t sensor) {
  constexpr useconds_t settling_us = 10'000;
  reg_wt16_0x0c(wire::motor_block_commit.reg, wire::motor_block_commit.value);
  reg_wt16_0x0c(wire::interrupter_supply, wire::interrupter_power::measure);
  usleep(settling_us);
  return ask(query::sensor_level, sensor).level() > wire::interrupted_level ? 1 : 0;
}

}  // namespace

std::int32_t setPICalibraition(std::int32_t which) {
  const Calibration& calibration = calibrations.fitted();
  for (std::int32_t sensor = 0; sensor < calibration.sensors; ++sensor) {
    if (which != sensor && which != all_sensors) continue;
    SendCommand(calibration.command, static_cast<std::uint8_t>(sensor), 0, 0, calibration.task);
  }
  return 0;
}

std::int32_t FocusPIVerification(std::int32_t on) {
  switch (lens_module()) {
    case LensModule::de015:
      if (on == 0) break;  // it can only be switched on here (deliberate)
      SendCommand(command::interrupter_service, 0, 0, 0, task::verify);
      SendCommand(command::interrupter_service, 1, 0, 0, task::verify);
      break;
    case LensModule::df033:
    case LensModule::t5391:
      SendCommand(command::sensor_service, 0, 0, 0, on != 0 ? task::verify : task::none);
      break;
  }
  return 0;
}

std::int32_t SetPIPower(std::int32_t on) {
  namespace power = wire::interrupter_power;
  reg_wt16_0x0c(wire::interrupter_supply, on == 1 ? power::on : power::off);
  return 0;
}

std::uint32_t getPI(std::uint32_t sensor) {
  constexpr std::uint32_t no_interrupters = 0xFFFFFFFF;
  switch (lens_module()) {
    case LensModule::de015: return measure_interrupter(sensor);
    case LensModule::df033:
    case LensModule::t5391: return ask(query::interrupter_state, sensor).low_bit();
  }
  return no_interrupters;
}

std::uint32_t getPI_Cali_DE051(std::uint32_t sensor) {
  return ask(query::interrupter_offset, sensor).low_bit();
}

std::uint32_t GetFocusOffset() { return read_offset(focus_offset); }
std::uint32_t GetZoom2Offset() { return read_offset(zoom2_offset); }
