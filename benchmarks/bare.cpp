#include "benchmarks/bare.h"

#include <benchmark/benchmark.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/ioctl.h>
#include <sys/ipc.h>
#include <sys/sem.h>

#include <array>
#include <cstdlib>

#include "kelvo.h"
#include "wire/pan_tilt.h"
#include "wire/paths.h"
#include "wire/spi_device.h"

namespace kelvo::bench {
namespace {

/// Key and set are made anew for each step, as the library does.
int semaphore_set() { return semget(ftok(wire::lock_key_path, wire::lock_key_project), 0, 0); }

void i2c_request(std::uint16_t write_length, std::uint16_t read_length) {
  std::array<std::uint8_t, 256> written{};
  std::array<std::uint8_t, 256> read{};
  benchmark::DoNotOptimize(written.data());
  if (read_length > 0) benchmark::DoNotOptimize(read.data());
  auto* messages = static_cast<i2c_msg*>(std::calloc(2, sizeof(i2c_msg)));
  if (messages == nullptr) std::abort();
  messages[0] = {wire::pan_slave, 0, write_length, written.data()};
  messages[1] = {wire::pan_slave, I2C_M_RD, read_length, read.data()};
  i2c_rdwr_ioctl_data request{messages, read_length > 0 ? 2U : 1U};
  ioctl(hndl, I2C_RDWR, &request);
  std::free(messages);
}

}  // namespace

void bare_lock() {
  sembuf take[] = {{0, 0, SEM_UNDO}, {0, 1, SEM_UNDO}};
  semop(semaphore_set(), take, 2);
}

void bare_unlock() {
  const int set = semaphore_set();
  sembuf give_back = {0, -1, SEM_UNDO};
  if (semctl(set, 0, GETVAL) > 0) semop(set, &give_back, 1);
}

void bare_transfer(std::uint32_t length) {
  std::array<std::uint8_t, 32> sent{};
  std::array<std::uint8_t, 32> received{};
  benchmark::DoNotOptimize(sent.data());
  benchmark::DoNotOptimize(received.data());
  wire::SpiTransfer transfer{sent.data(), received.data(), length, 0};
  ioctl(::fd, wire::spi_transfer_request, &transfer);
}

void bare_locked_transfer(std::uint32_t length) {
  bare_lock();
  bare_transfer(length);
  bare_unlock();
}

void bare_i2c_write(std::uint16_t length) { i2c_request(length, 0); }
void bare_i2c_read(std::uint16_t length) { i2c_request(1, length); }

}  // namespace kelvo::bench
