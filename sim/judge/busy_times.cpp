#include "sim/judge/busy_times.h"

#include <array>
#include <chrono>

#include "sim/common/wire_time.h"
#include "wire/boot_loader.h"

namespace kelvo::sim::camera {
namespace {

namespace codes = wire::boot_loader;
using std::chrono::microseconds;
using std::chrono::milliseconds;

struct BusyTime {
  std::uint8_t code;  // of the boot-loader frame that begins it
  Time length;
  const char* behind;
};

// How long a driver has to wait; what the controller needs of it is its own affair.
// clang-format off
constexpr std::array busy_times{
    BusyTime{0,                    milliseconds(100), "the end of the reset"},
    BusyTime{codes::pll_control,   milliseconds(1),   "the start of the PLL"},
    BusyTime{codes::clock_source,  milliseconds(1),   "the change of the clock source"},
    BusyTime{codes::download_size, milliseconds(100), "the size of a download"},
    BusyTime{codes::payload_header, milliseconds(100), "the header of a payload"},
    BusyTime{codes::start_program, milliseconds(100), "the start of the program"},
};
// clang-format on

}  // namespace

void BusyTimes::judge(Exchange& exchange) {
  const Time begun = exchange.now - spi_time(exchange.sent.size());
  if (begun < ready_) {
    const auto in_us = [](Time time) {
      return static_cast<long long>(std::chrono::duration_cast<microseconds>(time).count());
    };
    const BusyTime& busy = busy_times[row_];
    exchange.violation("%lld us behind %s, must be at least %lld", in_us(begun - since_),
                       busy.behind, in_us(busy.length));
  }
  if (exchange.sent.size() != codes::frame_length) return;
  for (std::size_t row = 1; row < busy_times.size(); ++row) {
    if (busy_times[row].code == exchange.sent[0])
      keep_busy(exchange.now, static_cast<std::uint8_t>(row));
  }
}

void BusyTimes::released(Time now) { keep_busy(now, 0); }

void BusyTimes::keep_busy(Time now, std::uint8_t row) {
  row_ = row;
  since_ = now;
  ready_ = now + busy_times[row].length;
}

}  // namespace kelvo::sim::camera
