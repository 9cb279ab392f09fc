#include <cstdint>

#include "kelvo/bus.h"
#include "kelvo/ois.h"
#include "lens/variant/variant.h"
#include "wire/lens_program.h"

namespace {

using kelvo::lens::lens_module;
using kelvo::lens::LensModule;
namespace command = kelvo::wire::command;
namespace query = kelvo::wire::query;

/// Setters tell nobody how it went.
std::int32_t set(std::uint8_t setting, std::uint32_t value) {
  SendCommand(setting, static_cast<std::uint8_t>(value >> 24),
              static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 8),
              static_cast<std::uint8_t>(value));
  return 0;
}

std::int32_t set_byte(std::uint8_t setting, std::uint32_t value) {
  return set(setting, value & 0xFFU);
}

std::int32_t set_word(std::uint8_t setting, std::uint32_t value) {
  return set(setting, value & 0xFFFFU);
}

/// A query's reply; zeros when none came.
struct Reply {
  std::uint8_t status = 0;
  std::uint32_t first = 0;   // bytes 0 and 1
  std::uint32_t second = 0;  // bytes 2 and 3

  std::uint32_t wide() const { return first << 16 | second; }
};

Reply ask(std::uint8_t code) {
  std::uint8_t bytes[4] = {};
  const std::uint8_t status = RecvCommand(code, 0, bytes);
  return {status, static_cast<std::uint32_t>(bytes[0] << 8 | bytes[1]),
          static_cast<std::uint32_t>(bytes[2] << 8 | bytes[3])};
}

std::uint32_t read(std::uint8_t code) { return ask(code).wide(); }

std::uint8_t read_second(std::uint8_t code, std::uint32_t* out) {
  const Reply reply = ask(code);
  *out = reply.second;
  return reply.status;
}

std::uint32_t read_pair(std::uint8_t code, std::uint32_t* x, std::uint32_t* y) {
  const Reply reply = ask(code);
  *x = reply.first;
  *y = reply.second;
  return reply.second;
}

bool can_pause() { return lens_module() == LensModule::de015; }

/// Detection and coma are coupled so by the controller's program.
std::uint32_t detection_mode(std::uint32_t coma) {
  switch (coma) {
    case 0: return 2;
    case 5: return 3;
    default: return 4;
  }
}

}  // namespace

std::int32_t OIS_En(std::int32_t on) {
  Set_XY_Definition(1);
  return set(on != 0 ? command::stabiliser_on : command::stabiliser_off, 0);
}

std::int32_t OIS_Pause(std::uint32_t pause) {
  return can_pause() ? set_byte(command::stabiliser_pause, pause) : 0;
}

std::uint32_t Read_OIS_Pause() { return can_pause() ? read(query::stabiliser_pause) : 0; }

std::int32_t Set_X_GyroGain(std::int32_t gain) {
  return set(command::gyro_gain_x, static_cast<std::uint32_t>(gain));
}

std::int32_t Set_Y_GyroGain(std::int32_t gain) {
  return set(command::gyro_gain_y, static_cast<std::uint32_t>(gain));
}

std::uint32_t Read_X_GyroGain() { return read(query::gyro_gain_x); }
std::uint32_t Read_Y_GyroGain() { return read(query::gyro_gain_y); }

std::int32_t Set_XY_Definition(std::uint32_t value) { return set_byte(command::range_xy, value); }
std::int32_t Set_X_Definition(std::uint32_t value) { return set_byte(command::range_x, value); }
std::int32_t Set_Y_Definition(std::uint32_t value) { return set_byte(command::range_y, value); }

std::int32_t Get_XY_Data(std::uint32_t* x, std::uint32_t* y) {
  read_pair(query::gyro_xy, x, y);
  return 0;
}

// Its result is the Y value, not a status (deliberate).
std::uint32_t Get_HallXY_Data(std::uint32_t* x, std::uint32_t* y) {
  return read_pair(query::hall_xy, x, y);
}

std::uint8_t Get_HallX_Data(std::uint32_t* x) { return read_second(query::hall_x, x); }
std::uint8_t Get_HallY_Data(std::uint32_t* y) { return read_second(query::hall_y, y); }

std::int32_t Set_Mode(std::uint32_t mode) { return set_byte(command::set_mode, mode); }

std::int32_t Set_Coma(std::uint32_t value) { return set_byte(command::coma, value); }
std::uint32_t Read_Coma() { return read(query::coma); }

std::int32_t Stationary_detection(std::uint32_t on) {
  return set_byte(command::stationary_detection, on == 0 ? 0 : detection_mode(Read_Coma()));
}

std::uint32_t Read_Stationary_detection() { return read(query::stationary_detection); }

std::int32_t Gyro_stability(std::int32_t value) {
  return set_word(command::gyro_stability, static_cast<std::uint32_t>(value));
}

std::uint32_t Read_Gyro_stability() { return read(query::gyro_stability); }
std::uint32_t Get_gyro_stable_flag() { return read(query::gyro_stable); }
