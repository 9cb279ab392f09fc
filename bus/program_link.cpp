#include <algorithm>
#include <array>
#include <cstdio>

#include "bus/bus_lock.h"
#include "bus/latch.h"
#include "bus/spi_device.h"
#include "kelvo/bus.h"
#include "wire/lens_module.h"
#include "wire/lens_program.h"

std::int32_t giSpiCmdErr = -1;
std::int32_t gi30516Ver = static_cast<std::int32_t>(kelvo::wire::LensModule::de015);

namespace {

using kelvo::bus::BusLock;
using kelvo::bus::spi_transfer;
namespace wire = kelvo::wire;

using FrameBuffer = std::array<std::uint8_t, 32>;

std::uint8_t latch_byte() { return static_cast<std::uint8_t>(giSpiCmdErr); }

/// Sums wrap: a checksum is the sum modulo 256.
std::uint8_t checksum(const FrameBuffer& frame, std::size_t bytes) {
  unsigned sum = 0;
  for (std::size_t i = 0; i < bytes; ++i) sum += frame[i];
  return static_cast<std::uint8_t>(sum);
}

}  // namespace

std::uint8_t SendCommand(std::uint8_t cmd, std::uint8_t a1, std::uint8_t a2, std::uint8_t a3,
                         std::uint8_t a4) {
  InitSPI();
  FrameBuffer transmit{cmd, a1, a2, a3, a4};
  transmit[5] = checksum(transmit, 5);
  FrameBuffer receive{};
  const BusLock lock;  // taken even while the latch is set (deliberate)
  if (giSpiCmdErr == 0) {
    const auto transfer = [&] {
      return spi_transfer(fd, transmit.data(), receive.data(), wire::command_frame_length);
    };
    std::int32_t result = transfer();
    if (result != 0) result = transfer();
    if (result != 0) std::printf("SendCommand Error %d\n", result);
    giSpiCmdErr = result;
  }
  return latch_byte();
}

std::uint8_t RecvCommand(std::uint8_t cmd, std::uint8_t a1, std::uint8_t* out) {
  InitSPI();
  FrameBuffer transmit{cmd, 0, 0, 0, wire::query::marker(cmd)};
  transmit[wire::query::argument_first(cmd) ? 1 : 2] = a1;
  transmit[5] = checksum(transmit, 5);
  FrameBuffer receive{};
  // No bus lock and no retry: the one transfer on the device that goes unlocked (deliberate).
  if (giSpiCmdErr == 0) {
    const std::int32_t result =
        spi_transfer(fd, transmit.data(), receive.data(), wire::query_frame_length);
    std::copy_n(receive.begin() + wire::query_reply_offset, wire::query_reply_length, out);
    giSpiCmdErr = result;
  }
  return latch_byte();
}

std::uint8_t reg_wt16_0x0c(std::uint8_t reg, std::int16_t value) {
  const bool de015 = gi30516Ver == static_cast<std::int32_t>(wire::LensModule::de015);
  const std::uint8_t command =
      de015 ? wire::command::write_register_de : wire::command::write_register;
  return SendCommand(command, 0, reg, static_cast<std::uint8_t>(value >> 8),
                     static_cast<std::uint8_t>(value));
}
