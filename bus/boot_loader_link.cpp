#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "bus/bus_lock.h"
#include "bus/latch.h"
#include "bus/spi_device.h"
#include "kelvo/bus.h"
#include "wire/boot_loader.h"

namespace {

using kelvo::bus::BusLock;
using kelvo::bus::spi_transfer;
namespace boot_loader = kelvo::wire::boot_loader;

using ShortBuffer = std::array<std::uint8_t, 32>;

constexpr std::int32_t payload_bytes_shown = 16;
constexpr std::uint32_t header_pause_ms = 100;

std::int32_t locked_transfer(const std::uint8_t* transmit, std::uint8_t* receive,
                             std::uint32_t length) {
  const BusLock lock;
  return spi_transfer(fd, transmit, receive, length);
}

void print_bytes(const std::uint8_t* bytes, int count) {
  for (int i = 0; i < count; ++i) std::printf("0x%02x ", bytes[i]);
  std::printf("\n");
}

/// The two buffers of a payload; both or none.
class PayloadBuffers {
 public:
  explicit PayloadBuffers(std::int32_t size) {
    if (size < 0) return;
    const auto room = static_cast<std::size_t>(std::max(size, payload_bytes_shown));
    transmit = static_cast<std::uint8_t*>(std::calloc(room, 1));
    receive = static_cast<std::uint8_t*>(std::calloc(room, 1));
  }
  ~PayloadBuffers() {
    std::free(transmit);
    std::free(receive);
  }
  PayloadBuffers(const PayloadBuffers&) = delete;
  PayloadBuffers& operator=(const PayloadBuffers&) = delete;

  bool complete() const { return transmit != nullptr && receive != nullptr; }

  std::uint8_t* transmit = nullptr;
  std::uint8_t* receive = nullptr;
};

}  // namespace

std::int32_t WriteCommand(std::uint8_t code, std::uint8_t d1, std::uint8_t d2, std::uint8_t d3) {
  InitSPI();
  const ShortBuffer transmit{code, d1, d2, d3, boot_loader::end_byte};
  ShortBuffer receive{};
  const std::int32_t result =
      locked_transfer(transmit.data(), receive.data(), boot_loader::frame_length);
  std::printf("Addr:%02x ", code);
  print_bytes(receive.data(), boot_loader::frame_length);
  return result;
}

std::int32_t WriteData(std::uint8_t memId, std::int32_t size, const std::uint8_t* data) {
  std::printf("Download FW size:%d\n", size);
  const PayloadBuffers payload(size);
  const ShortBuffer header{boot_loader::payload_header, boot_loader::payload_mode, memId, 0,
                           boot_loader::end_byte};
  ShortBuffer header_reply{};
  InitSPI();
  delay_ms(header_pause_ms);
  locked_transfer(header.data(), header_reply.data(), boot_loader::frame_length);
  delay_ms(header_pause_ms);
  // Shown before the payload is exchanged, so these are always zeros (deliberate).
  constexpr std::array<std::uint8_t, payload_bytes_shown> nothing_received{};
  std::printf("Read Addr2:%02x ", memId);
  print_bytes(nothing_received.data(), payload_bytes_shown);
  if (!payload.complete()) return -1;
  const auto length = static_cast<std::uint32_t>(size);
  std::copy_n(data, size, payload.transmit);
  return locked_transfer(payload.transmit, payload.receive, length);
}

std::int32_t ReadSpi(std::uint8_t code, std::uint8_t* rx, std::int32_t /*len*/) {
  InitSPI();
  const ShortBuffer transmit{code, 0, 0, 0, boot_loader::end_byte};
  {
    const BusLock lock;
    std::int32_t result = spi_transfer(fd, transmit.data(), rx, boot_loader::frame_length);
    if (result != 0) result = spi_transfer(fd, transmit.data(), rx, boot_loader::frame_length);
    if (result != 0) std::printf("ReadSpi Error %d\n", result);
  }
  // The latch, not the transfer's result (deliberate).
  return giSpiCmdErr;
}
