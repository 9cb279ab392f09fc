#include "sim/lens/counters.h"

#include <algorithm>
#include <iterator>

#include "wire/lens_program.h"
#include "wire/motor_channels.h"

namespace kelvo::sim::camera {
namespace {

struct CounterRow {
  std::uint8_t number;  // of a command, a query or a register
  Output output;
};

constexpr CounterRow clear_commands[] = {
    {wire::command::zoom1_clear_count, Output::zoom1_block},
    {wire::command::zoom3_clear_count, Output::zoom3_block},
};
constexpr CounterRow preset_commands[] = {{wire::command::zoom1_preset_count, Output::pt5111_a}};
constexpr CounterRow count_queries[] = {
    {wire::query::zoom1_count_de, Output::zoom1_block},
    {wire::query::zoom1_count, Output::pt5111_a},
    {wire::query::zoom3_count, Output::zoom3_block},
};
constexpr CounterRow count_registers[] = {
    {wire::focus_channel.counter, Output::focus_channel},
    {wire::zoom_channel.counter, Output::zoom_channel},
};

}  // namespace

void Counters::clear(const MotorStates& motors) {
  for (std::size_t i = 0; i < offsets_.size(); ++i) offsets_[i] = 0U - motors.driven[i];
}

void Counters::preset(Output output, std::uint32_t count, const MotorStates& motors) {
  offsets_[index(output)] = count - motors.driven[index(output)];
}

std::uint32_t Counters::counted(Output output, const MotorStates& motors) const {
  return motors.driven[index(output)] + offsets_[index(output)];
}

std::int32_t Counters::count(Output output, const MotorStates& motors) const {
  return static_cast<std::int32_t>(counted(output, motors));
}

void Counters::obey(std::uint8_t command, std::uint32_t value, const MotorStates& motors) {
  for (const CounterRow& row : clear_commands) {
    if (row.number == command) preset(row.output, 0, motors);
  }
  for (const CounterRow& row : preset_commands) {
    if (row.number == command) preset(row.output, value, motors);
  }
}

void Counters::write(std::uint8_t reg, std::uint16_t value, const MotorStates& motors) {
  for (const CounterRow& row : count_registers) {
    if (row.number == reg) preset(row.output, value, motors);
  }
}

std::optional<std::uint32_t> Counters::answer(std::uint8_t query, const MotorStates& motors) const {
  for (const CounterRow& row : count_queries) {
    if (row.number == query) return counted(row.output, motors);
  }
  return std::nullopt;
}

bool Counters::has(std::uint8_t reg) {
  return std::any_of(std::begin(count_registers), std::end(count_registers),
                     [&](const CounterRow& row) { return row.number == reg; });
}

std::optional<std::uint16_t> Counters::read(std::uint8_t reg, const MotorStates& motors) const {
  for (const CounterRow& row : count_registers) {
    if (row.number == reg) return static_cast<std::uint16_t>(counted(row.output, motors));
  }
  return std::nullopt;
}

}  // namespace kelvo::sim::camera
