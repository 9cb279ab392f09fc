// Frames to a lens controller that is still busy with the one before.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "sim/camera/bench.h"

namespace {

using kelvo::test::Bench;
using kelvo::test::Frame;
using namespace std::chrono_literals;

class BusyBench : public Bench {
 public:
  BusyBench() {
    wait_ms(1000);
    camera.set_caller({getpid(), true, getpid()});
  }

  /// Whether a frame that begins so long after the last one is held against the program as too early.
  bool too_early(std::chrono::nanoseconds pause, const Frame& frame) {
    camera.clock.advance(pause + 8us * frame.size());
    const auto before = static_cast<std::ptrdiff_t>(violation_count());
    send(frame);
    const auto all = violations();
    return std::any_of(all.begin() + before, all.end(), [](const std::string& line) {
      return line.find(" us behind ") != line.npos;
    });
  }
  bool told(const std::string& text) const {
    const auto all = violations();
    return std::any_of(all.begin(), all.end(),
                       [&](const std::string& line) { return line.ends_with(text); });
  }
};

const Frame read_low{0x66, 0, 0, 0, 0xA0};

struct BusyRow {
  const char* name;
  Frame frame;
  std::chrono::nanoseconds busy;
};

// clang-format off
const BusyRow busy_rows[] = {
  {"the start of the PLL",           {0xF4, 0x01, 0x00, 0x00, 0xA0}, 1ms},
  {"the change of the clock source", {0xF1, 0x01, 0x00, 0x00, 0xA0}, 1ms},
  {"the size of a download",         {0xE4, 0x10, 0x00, 0x00, 0xA0}, 100ms},
  {"the header of a payload",        {0xE1, 0x11, 0x21, 0x00, 0xA0}, 100ms},
  {"the start of the program",       {0xE2, 0x00, 0x00, 0x00, 0xA0}, 100ms},
};
// clang-format on

TEST(BusyTimes, AreWaitedForBehindEachFrameThatTakesItsTime) {
  for (const BusyRow& row : busy_rows) {
    BusyBench bench;
    bench.send(row.frame);
    EXPECT_TRUE(bench.too_early(row.busy - 1us, read_low)) << row.name;
    const std::string wanted = std::to_string(row.busy / 1us - 1) + " us behind " + row.name +
                               ", must be at least " + std::to_string(row.busy / 1us);
    EXPECT_TRUE(bench.told(wanted)) << wanted;
    BusyBench patient;
    patient.send(row.frame);
    EXPECT_FALSE(patient.too_early(row.busy, read_low)) << row.name;
  }
}

TEST(BusyTimes, FollowTheEndOfAReset) {
  BusyBench bench;
  bench.shell_all(
      {"echo 33 > /sys/class/gpio/export", "echo \"out\" > /sys/class/gpio/gpio33/direction",
       "echo 0 > /sys/class/gpio/gpio33/value", "echo 1 > /sys/class/gpio/gpio33/value"});
  EXPECT_TRUE(bench.too_early(99'999us, {0xF5, 0x04, 0x00, 0x00, 0xA0}));
  EXPECT_FALSE(bench.too_early(1us, {0xF4, 0x01, 0x00, 0x00, 0xA0}));
}

TEST(BusyTimes, AreNoneBehindOtherFrames) {
  BusyBench bench;
  bench.send({0xF5, 0x04, 0x00, 0x00, 0xA0});
  EXPECT_FALSE(bench.too_early(0us, read_low));
}

}  // namespace
