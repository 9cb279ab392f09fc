#ifndef KELVO_BUS_SPI_DEVICE_H
#define KELVO_BUS_SPI_DEVICE_H

#include <cstdint>

namespace kelvo::bus {

/// One full-duplex transfer of `length` bytes; the driver's own result (0 = done).
std::int32_t spi_transfer(std::int32_t device, const std::uint8_t* transmit, std::uint8_t* receive,
                          std::uint32_t length);

}  // namespace kelvo::bus

#endif
