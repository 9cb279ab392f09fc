// The real library reads and presets the position counters of the simulated camera, asks whether its
// motors move and takes their power away.
#include <gtest/gtest.h>
#include <kelvo.h>

#include <cstdint>
#include <ostream>

#include "sim/host/installed_camera.h"
#include "sim/host/library_calls.h"

namespace {

using kelvo::sim::camera::Output;
using kelvo::test::InstalledCamera;
using kelvo::test::pass_ms;

struct CounterRow {
  const char* name;
  std::int32_t (*boot)();
  std::uint32_t (*forward)(std::uint8_t speed, std::uint32_t steps);
  std::uint32_t (*backward)(std::uint8_t speed, std::uint32_t steps);
  std::uint8_t (*preset)(std::uint32_t count);
  std::uint32_t (*count)();
  std::uint8_t (*status)(std::uint8_t* running);
  std::uint32_t (*power_off)();
  std::uint32_t counts_a_step;
  std::uint32_t preset_to;     // what is set
  std::uint32_t preset_reads;  // what is read then
};

void PrintTo(const CounterRow& row, std::ostream* stream) { *stream << row.name; }

// clang-format off
const CounterRow counter_rows[] = {
  // The two that are only cleared do not take the count.
  {"De015Zoom1", Init30516, setZoom1Forward, setZoom1Backward, SetZoom1Count, GetZoom1Count, getZoom1Status, setZoom1PowerOff, 1, 5000, 0},
  {"De015Zoom2", Init30516, setZoom2Forward, setZoom2Backward, SetZoom2Count, GetZoom2Count, getZoom2Status, setZoom2PowerOff, 8, 5000, 5000},
  {"De015Focus", Init30516, setFocusForward, setFocusBackward, SetFocusCount, GetFocusCount, getFocusStatus, setFocusPowerOff, 8, 20000, 20000},
  {"Df033Zoom1", Init30516_DF033, setZoom1Forward, setZoom1Backward, SetZoom1Count, GetZoom1Count, getZoom1Status, setZoom1PowerOff, 1, 100'000, 100'000},
  {"Df033Zoom3", Init30516_DF033, setZoom3Forward, setZoom3Backward, SetZoom3Count, GetZoom3Count, getZoom3Status, setZoom3PowerOff, 1, 5000, 0},
  {"Df033Focus", Init30516_DF033, setFocusForward, setFocusBackward, SetFocusCount, GetFocusCount, getFocusStatus, setFocusPowerOff, 8, 40000, 40000},
  {"T5391Zoom1", Init30516_T5391, setZoom1Forward, setZoom1Backward, SetZoom1Count, GetZoom1Count, getZoom1Status, setZoom1PowerOff, 2, 5000, 5000},
};
// clang-format on

class LibraryCounter : public testing::TestWithParam<CounterRow> {};

bool is_running(const CounterRow& row) {
  std::uint8_t running = 7;
  EXPECT_EQ(row.status(&running), 0);
  EXPECT_TRUE(running == 0 || running == 1);
  return running == 1;
}

TEST_P(LibraryCounter, FollowsMovesFromItsPreset) {
  const CounterRow& row = GetParam();
  InstalledCamera camera;
  ASSERT_EQ(row.boot(), 0);
  EXPECT_EQ(row.count(), 0u);
  row.forward(255, 30);
  pass_ms(1000);
  EXPECT_EQ(row.count(), 30 * row.counts_a_step);
  EXPECT_EQ(row.preset(row.preset_to), 0);
  EXPECT_EQ(row.count(), row.preset_reads);
  row.forward(255, 100);
  pass_ms(2000);
  row.backward(255, 40);
  pass_ms(2000);
  EXPECT_EQ(row.count(), row.preset_reads + 60 * row.counts_a_step);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

TEST_P(LibraryCounter, StandsStillWhenTheMotorIsDone) {
  const CounterRow& row = GetParam();
  InstalledCamera camera;
  ASSERT_EQ(row.boot(), 0);
  EXPECT_FALSE(is_running(row));
  row.forward(255, 100);
  EXPECT_TRUE(is_running(row));
  int polls = 0;
  while (is_running(row) && polls < 1000) {
    pass_ms(2);
    ++polls;
  }
  EXPECT_GT(polls, 30) << "100 steps take at least 60 ms";
  EXPECT_LT(polls, 1000);
  EXPECT_EQ(row.count(), 100 * row.counts_a_step);
  pass_ms(1000);
  EXPECT_EQ(row.count(), 100 * row.counts_a_step);
}

TEST_P(LibraryCounter, StandsStillWithoutPowerUntilTheNextMove) {
  const CounterRow& row = GetParam();
  InstalledCamera camera;
  ASSERT_EQ(row.boot(), 0);
  row.forward(255, 1000);
  pass_ms(100);
  EXPECT_TRUE(is_running(row));
  EXPECT_EQ(row.power_off(), 0u);
  EXPECT_FALSE(is_running(row));
  const std::uint32_t count = row.count();
  EXPECT_GT(count, 0u);
  EXPECT_LT(count, 1000 * row.counts_a_step);
  pass_ms(2000);
  EXPECT_EQ(row.count(), count);
  row.forward(255, 10);
  pass_ms(500);
  EXPECT_EQ(row.count(), count + 10 * row.counts_a_step);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

INSTANTIATE_TEST_SUITE_P(Motors, LibraryCounter, testing::ValuesIn(counter_rows),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(LibraryCounters, OfZoom1AndZoom3LoseTheirSign) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516_DF033(), 0);
  setZoom1Backward(255, 20);
  setZoom3Backward(255, 30);
  pass_ms(1000);
  EXPECT_EQ(GetZoom1Count(), 20u);
  EXPECT_EQ(GetZoom3Count(), 30u);
}

TEST(LibraryCounters, OfChannelsAreCountedBelowZero) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516(), 0);
  setFocusBackward(255, 1);
  pass_ms(1000);
  EXPECT_EQ(GetFocusCount(), 32760u) << "fifteen bits";
  ASSERT_EQ(Init30516_DF033(), 0);
  setFocusBackward(255, 1);
  pass_ms(1000);
  EXPECT_EQ(GetFocusCount(), 65528u) << "sixteen bits";
}

TEST(LibraryStatus, OfTheFocusIsKnownOnT5391WithoutItsCount) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516_T5391(), 0);
  std::uint8_t running = 7;
  setFocusForward(255, 100);
  EXPECT_EQ(getFocusStatus(&running), 0);
  EXPECT_EQ(running, 1);
  pass_ms(1000);
  getFocusStatus(&running);
  EXPECT_EQ(running, 0);
  EXPECT_EQ(GetFocusCount(), 0u);
  EXPECT_EQ(SetFocusCount(5), 0);
  EXPECT_EQ(setFocusPowerOff(), 0u);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

TEST(LibraryStatus, OfZoom2IsKnownOnDf033) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516_DF033(), 0);
  std::uint8_t running = 7;
  setZoom2Forward(255, 100);
  EXPECT_EQ(getZoom2Status(&running), 0);
  EXPECT_EQ(running, 1);
  setZoom2PowerOff();
  getZoom2Status(&running);
  EXPECT_EQ(running, 0);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

}  // namespace
