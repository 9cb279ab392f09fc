#include <array>

#include "sim/trace/names.h"
#include "sim/trace/text.h"
#include "wire/motor_channels.h"

namespace kelvo::sim::trace {
namespace {

struct ChannelRegister {
  std::uint8_t wire::MotorChannel::*number;
  const char* name;
};

#define KELVO_ROW(name) \
  ChannelRegister { &wire::MotorChannel::name, #name }
constexpr std::array channel_registers{
    KELVO_ROW(control), KELVO_ROW(mode),    KELVO_ROW(count_low), KELVO_ROW(count_high),
    KELVO_ROW(period),  KELVO_ROW(current), KELVO_ROW(counter),   KELVO_ROW(status),
};
#undef KELVO_ROW

struct BlockRegister {
  std::uint8_t number;
  const char* name;
};
constexpr std::array block_registers{
    BlockRegister{wire::motor_block_enable.reg, "motor_block_enable"},
    BlockRegister{wire::motor_block_clock.reg, "motor_block_clock"},
    BlockRegister{wire::motor_block_commit.reg, "motor_block_commit"},
    BlockRegister{wire::interrupter_supply, "interrupter_supply"},
    BlockRegister{wire::filter_coil, "filter_coil"},
    BlockRegister{wire::filter_direction, "filter_direction"},
};

}  // namespace

std::string motor_register(std::uint8_t number) {
  for (const ChannelRegister& row : channel_registers) {
    if (wire::focus_channel.*row.number == number) return "focus-" + dashed(row.name);
    if (wire::zoom_channel.*row.number == number) return "zoom-" + dashed(row.name);
  }
  for (const BlockRegister& row : block_registers) {
    if (row.number == number) return dashed(row.name);
  }
  return {};
}

}  // namespace kelvo::sim::trace
