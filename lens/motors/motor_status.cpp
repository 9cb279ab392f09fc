#include <cstdint>

#include "kelvo/bus.h"
#include "kelvo/lens.h"
#include "lens/motors/by_module.h"
#include "wire/lens_program.h"
#include "wire/motor_channels.h"

namespace {

using kelvo::lens::ByModule;
namespace query = kelvo::wire::query;

constexpr std::uint8_t zoom_status = kelvo::wire::zoom_channel.status;
constexpr std::uint8_t focus_status = kelvo::wire::focus_channel.status;

struct StatusRead {
  std::uint8_t query = 0;  // 0: not served
  std::uint8_t reg = 0;
  std::uint8_t reply_byte = 0;  // not 0 while the motor runs
};

// clang-format off
constexpr ByModule<StatusRead> zoom1{.de015 = {query::zoom1_running_de, 0,            3},
                                     .df033 = {query::zoom1_running,    0,            3},
                                     .t5391 = {query::read_register,    zoom_status,  2}};
constexpr ByModule<StatusRead> zoom2{.de015 = {query::read_register_de, zoom_status,  2},
                                     .df033 = {query::read_register,    zoom_status,  2}};
constexpr ByModule<StatusRead> zoom3{.df033 = {query::zoom3_running,    0,            3}};
constexpr ByModule<StatusRead> focus{.de015 = {query::read_register_de, focus_status, 2},
                                     .df033 = {query::read_register,    focus_status, 2},
                                     .t5391 = {query::read_register,    focus_status, 2}};
// clang-format on

std::uint8_t read(const ByModule<StatusRead>& motor, std::uint8_t* running) {
  const StatusRead& row = motor.fitted();
  if (row.query == 0) return 0;
  std::uint8_t reply[4] = {};
  const std::uint8_t status = RecvCommand(row.query, row.reg, reply);
  *running = reply[row.reply_byte] != 0 ? 1 : 0;
  return status;
}

}  // namespace

std::uint8_t getZoom1Status(std::uint8_t* running) { return read(zoom1, running); }
std::uint8_t getZoom2Status(std::uint8_t* running) { return read(zoom2, running); }
std::uint8_t getZoom3Status(std::uint8_t* running) { return read(zoom3, running); }
std::uint8_t getFocusStatus(std::uint8_t* running) { return read(focus, running); }

// Part of the interface that never did more.
std::uint8_t getIrisStatus(std::uint8_t* /*running*/) { return 0; }
std::uint8_t getICRStatus(std::uint8_t* /*running*/) { return 0; }
