#ifndef KELVO_WIRE_SPI_DEVICE_H
#define KELVO_WIRE_SPI_DEVICE_H

#include <cstddef>
#include <cstdint>

namespace kelvo::wire {

/// Full-duplex transfer: the argument points at a SpiTransfer.
inline constexpr unsigned long spi_transfer_request = 0xc0185201;
/// Bus speed: the argument points at a 32-bit number of hertz.
inline constexpr unsigned long spi_speed_request = 0xc0045202;

struct SpiTransfer {
  const std::uint8_t* transmit;
  std::uint8_t* receive;
  std::uint32_t length;  // bytes, the same both ways
  std::uint32_t reserved;
};
static_assert(sizeof(SpiTransfer) == 24);
static_assert(offsetof(SpiTransfer, receive) == 8);
static_assert(offsetof(SpiTransfer, length) == 16);

}  // namespace kelvo::wire

#endif
