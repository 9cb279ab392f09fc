#include <benchmark/benchmark.h>

#include <cstdint>

#include "benchmarks/bare.h"
#include "kelvo.h"

namespace {

constexpr std::uint32_t command_bytes = 7;
constexpr std::uint32_t query_bytes = 12;
constexpr int writes_of_a_move = 11;

template <auto work>
void measure(benchmark::State& state) {
  for ([[maybe_unused]] const auto _ : state) work();
}

void bare_command() { kelvo::bench::bare_locked_transfer(command_bytes); }
void command() { SendCommand(5, 0, 0, 0, 0); }

void bare_query() { kelvo::bench::bare_transfer(query_bytes); }
void query() {
  std::uint8_t reply[4] = {};
  RecvCommand(0xA1, 0, reply);
  benchmark::DoNotOptimize(reply);
}

void bare_write() { kelvo::bench::bare_i2c_write(3); }
void write() {
  const std::uint8_t data[2] = {};
  SendI2C(40, 1, data, 3);
}

void bare_read() { kelvo::bench::bare_i2c_read(2); }
void read() {
  std::uint8_t data[2] = {};
  ReadI2C(40, 50, data, 2);
  benchmark::DoNotOptimize(data);
}

void bare_move() {
  for (int i = 0; i < writes_of_a_move; ++i) bare_command();
}
void move() { setFocusForward(100, 200); }

/// The same move again: the position is read, and nothing but the move itself is written.
void bare_repeated_move() {
  kelvo::bench::bare_i2c_read(2);
  kelvo::bench::bare_i2c_write(6);
}
void repeated_move() { PanABSMove(0, 7200, 30000); }

void bare_lock_pair() {
  kelvo::bench::bare_lock();
  kelvo::bench::bare_unlock();
}

BENCHMARK(measure<bare_command>)->Name("locked command frame/bare");
BENCHMARK(measure<command>)->Name("locked command frame/library");
BENCHMARK(measure<bare_query>)->Name("query frame/bare");
BENCHMARK(measure<query>)->Name("query frame/library");
BENCHMARK(measure<bare_write>)->Name("I2C write/bare");
BENCHMARK(measure<write>)->Name("I2C write/library");
BENCHMARK(measure<bare_read>)->Name("I2C read/bare");
BENCHMARK(measure<read>)->Name("I2C read/library");
BENCHMARK(measure<bare_move>)->Name("register-path move/bare");
BENCHMARK(measure<move>)->Name("register-path move/library");
BENCHMARK(measure<bare_repeated_move>)->Name("pan move that changes nothing/bare");
BENCHMARK(measure<repeated_move>)->Name("pan move that changes nothing/library");
BENCHMARK(measure<bare_lock_pair>)->Name("bus lock taken and given back");

}  // namespace
