#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <span>

#include "kelvo/bus.h"
#include "kelvo/lens.h"
#include "lens/variant/variant.h"
#include "wire/lens_program.h"
#include "wire/motor_channels.h"

namespace {

using kelvo::lens::lens_module;
using kelvo::lens::LensModule;
using kelvo::wire::RegisterValue;
namespace command = kelvo::wire::command;
namespace wire = kelvo::wire;

/// The two ends of the IR-cut filter's way.
struct FilterMove {
  std::int64_t (*pt5111)(std::uint32_t steps);
  const char* line;        // T5391
  std::int16_t direction;  // T5391
};
constexpr FilterMove filter_on{ICR_ON, "T5391 ICR on", wire::filter_drive::into};
constexpr FilterMove filter_off{ICR_OFF, "T5391 ICR off", wire::filter_drive::away};

void write(const RegisterValue& setting) { reg_wt16_0x0c(setting.reg, setting.value); }

void write_all(std::span<const RegisterValue> settings) {
  for (const RegisterValue& setting : settings) write(setting);
}

void drive_filter_coil(const FilterMove& move) {
  constexpr useconds_t travel_us = 500'000;
  constexpr useconds_t braking_us = 10'000;
  std::puts(move.line);
  write_all(wire::filter_set_up);
  write({wire::filter_direction, move.direction});
  write_all(wire::filter_start);
  usleep(travel_us);
  write({wire::filter_coil, wire::filter_drive::braking});
  usleep(braking_us);
  write({wire::filter_coil, wire::filter_drive::released});
}

std::uint32_t move_filter(const FilterMove& move, std::uint32_t steps) {
  switch (lens_module()) {
    case LensModule::de015:
    case LensModule::df033: move.pt5111(steps); break;
    case LensModule::t5391: drive_filter_coil(move); break;
  }
  return 0;
}

std::uint32_t move_iris(std::int64_t (*move)(std::uint32_t steps), std::uint32_t steps) {
  if (lens_module() == LensModule::de015) move(steps);
  return 0;
}

}  // namespace

std::uint32_t setIrisForward(std::uint8_t /*speed*/, std::uint32_t steps) {
  return move_iris(piris_close, steps);
}

std::uint32_t setIrisBackward(std::uint8_t /*speed*/, std::uint32_t steps) {
  return move_iris(piris_open, steps);
}

std::uint32_t setDCIrisABS(std::uint32_t level) {
  SendCommand(command::dc_iris, 0, 0, static_cast<std::uint8_t>(level >> 8),
              static_cast<std::uint8_t>(level));
  return level;
}

std::uint32_t setICRon(std::uint8_t /*speed*/, std::uint32_t steps) {
  return move_filter(filter_on, steps);
}

std::uint32_t setICRoff(std::uint8_t /*speed*/, std::uint32_t steps) {
  return move_filter(filter_off, steps);
}

std::uint32_t setHeater(std::uint32_t level) {
  SendCommand(command::heater, 0, 0, 0, static_cast<std::uint8_t>(level));
  return 0;
}

std::uint32_t getADC(std::uint32_t channel) {
  constexpr useconds_t conversion_us = 10'000;
  std::uint8_t reply[4] = {};
  SendCommand(command::sensor_service, 0, 0, 0, wire::sensor_task::convert);
  usleep(conversion_us);
  RecvCommand(wire::query::sensor_level, static_cast<std::uint8_t>(channel), reply);
  return static_cast<std::uint32_t>(reply[2] << 8 | reply[3]);
}
