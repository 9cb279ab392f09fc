// The cost of a download over the size of its image: twice the size, twice the time.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "kelvo.h"

namespace {

template <int kibibytes>
void measure(benchmark::State& state) {
  constexpr std::int32_t size = kibibytes * 1024;
  const std::vector<std::uint8_t> image(size);
  for ([[maybe_unused]] const auto _ : state) DownloadCode(0x21, 0x200, size, 0, image.data());
}

BENCHMARK(measure<64>)->Name("download of 64 KiB");
BENCHMARK(measure<128>)->Name("download of 128 KiB");
BENCHMARK(measure<256>)->Name("download of 256 KiB");
BENCHMARK(measure<512>)->Name("download of 512 KiB");
BENCHMARK(measure<1024>)->Name("download of 1024 KiB");

}  // namespace
