// What the library asks of the kernel, asked without it.
#ifndef KELVO_BENCHMARKS_BARE_H
#define KELVO_BENCHMARKS_BARE_H

#include <cstdint>

namespace kelvo::bench {

void bare_lock();
void bare_unlock();

/// A full-duplex transfer without and with the bus lock; `length` bytes, at most 32.
void bare_transfer(std::uint32_t length);
void bare_locked_transfer(std::uint32_t length);

/// I2C requests, their messages taken from the heap and their buffers cleared.
void bare_i2c_write(std::uint16_t length);
void bare_i2c_read(std::uint16_t length);

}  // namespace kelvo::bench

#endif
