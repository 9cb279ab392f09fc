#include "sim/fault/busy.h"

#include "wire/lens_program.h"
#include "wire/motor_channels.h"
#include "wire/pan_tilt_registers.h"

namespace kelvo::sim::fault {
namespace {

/// The byte of the received ones that tells it: the bits that stay, and those that are set.
struct Status {
  std::uint8_t number;  // of a query or a register
  std::uint8_t place;
  std::uint8_t stays;
  std::uint8_t set;
};

constexpr std::uint8_t reply = wire::query_reply_offset;

constexpr Status queries[] = {
    {wire::query::zoom1_running_de, reply + 3, 0, 1},
    {wire::query::zoom1_running, reply + 3, 0, 1},
    {wire::query::zoom3_running, reply + 3, 0, 1},
    {wire::query::calibration_state, reply + 3, 0, 1},
};
constexpr Status motor_registers[] = {
    {wire::focus_channel.status, reply + 2, 0, 1},
    {wire::zoom_channel.status, reply + 2, 0, 1},
};
constexpr Status vetra_registers[] = {{wire::vetra::status, 0, 0xFB, 0}};
constexpr Status tasmere_registers[] = {{wire::tasmere::run_status, 0, 0, 1}};

const Status* find(std::span<const Status> rows, std::optional<std::uint8_t> number) {
  for (const Status& row : rows) {
    if (row.number == number) return &row;
  }
  return nullptr;
}

const Status* status_of(const Transfer& transfer) {
  if (transfer.frame == Frame::query) {
    return transfer.reg ? find(motor_registers, transfer.reg) : find(queries, transfer.code);
  }
  if (transfer.frame != Frame::read) return nullptr;
  if (transfer.family == wire::HeadFamily::vetra) return find(vetra_registers, transfer.reg);
  return find(tasmere_registers, transfer.reg);
}

}  // namespace

bool tells_status(const Transfer& transfer) {
  const Status* const status = status_of(transfer);
  return status != nullptr && status->place < transfer.received;
}

void say_running(const Transfer& transfer, std::span<std::uint8_t> received) {
  const Status* const status = status_of(transfer);
  if (status == nullptr || status->place >= received.size()) return;
  std::uint8_t& byte = received[status->place];
  byte = static_cast<std::uint8_t>((byte & status->stays) | status->set);
}

}  // namespace kelvo::sim::fault
