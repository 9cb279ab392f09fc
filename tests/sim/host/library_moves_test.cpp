// The real library moves the motors of the simulated camera: where they end, and when.
#include <gtest/gtest.h>
#include <kelvo.h>
#include <time.h>

#include <cstdint>
#include <ostream>

#include "sim/host/installed_camera.h"

namespace {

using kelvo::sim::camera::Output;
using kelvo::test::InstalledCamera;

using Operation = std::uint32_t (*)(std::uint8_t speed, std::uint32_t steps);

std::uint32_t zoom1_micro_backward(std::uint8_t speed, std::uint32_t steps) {
  return setZoom1uBackward(speed, static_cast<std::int32_t>(steps));
}
std::uint32_t zoom2_forward_512(std::uint8_t speed, std::uint32_t steps) {
  return setZoom2Forward512(speed, static_cast<std::int32_t>(steps));
}
std::uint32_t zoom2_backward_512(std::uint8_t speed, std::uint32_t steps) {
  return setZoom2Backward512(speed, static_cast<std::int32_t>(steps));
}

struct MoveRow {
  const char* name;
  std::int32_t (*boot)();
  Operation operation;
  std::uint8_t speed;
  std::uint32_t steps;
  Output output;
  std::int32_t counts;       // where the motor ends
  std::int64_t first_count;  // ns from the start of the move
  std::int64_t last_count;
};

void PrintTo(const MoveRow& row, std::ostream* stream) { *stream << row.name; }

// clang-format off
const MoveRow move_rows[] = {
  // 960 steps a second
  {"De015Zoom1Forward",      Init30516, setZoom1Forward,      255, 480, Output::zoom1_block,  480, 1'041'667, 500'000'000},
  {"De015Zoom1Backward",     Init30516, setZoom1Backward,     255, 480, Output::zoom1_block, -480, 1'041'667, 500'000'000},
  {"De015Zoom1Forward22",    Init30516, setZoom1Forward2_2,   255, 480, Output::zoom1_block,  480, 1'041'667, 500'000'000},
  {"De015Zoom1Backward22",   Init30516, setZoom1Backward2_2,  255, 480, Output::zoom1_block, -480, 1'041'667, 500'000'000},
  // 376 steps a second
  {"De015Zoom1uForward",     Init30516, setZoom1uForward,     100, 376, Output::zoom1_block,  376, 2'659'575, 1'000'000'000},
  {"De015Zoom1uBackward",    Init30516, zoom1_micro_backward, 100, 376, Output::zoom1_block, -376, 2'659'575, 1'000'000'000},
  // range 10, period 90: 144 us an eighth step
  {"De015FocusForward",      Init30516, setFocusForward,      255, 200, Output::focus_channel,  1600, 144'000, 230'400'000},
  {"De015FocusBackward",     Init30516, setFocusBackward,     255, 200, Output::focus_channel, -1600, 144'000, 230'400'000},
  {"De015Zoom2Forward",      Init30516, setZoom2Forward,      255, 200, Output::zoom_channel,   1600, 144'000, 230'400'000},
  {"De015Zoom2Backward",     Init30516, setZoom2Backward,     255, 200, Output::zoom_channel,  -1600, 144'000, 230'400'000},
  {"De015Zoom2Forward512",   Init30516, zoom2_forward_512,    255, 203, Output::zoom_channel,    203, 144'000, 29'232'000},
  {"De015Zoom2Backward512",  Init30516, zoom2_backward_512,   255, 203, Output::zoom_channel,   -203, 144'000, 29'232'000},
  // range 5, period 648: 4.1472 ms a tick
  {"De015FocusSlowest",      Init30516, setFocusForward,        0,   3, Output::focus_channel,    24, 33'177'600, 796'262'400},
  {"Df033FocusForward",      Init30516_DF033, setFocusForward,    255, 200, Output::focus_channel,  1600, 144'000, 230'400'000},
  {"Df033FocusBackward",     Init30516_DF033, setFocusBackward,   255, 200, Output::focus_channel, -1600, 144'000, 230'400'000},
  {"Df033Zoom2Forward",      Init30516_DF033, setZoom2Forward,    255, 200, Output::zoom_channel,   1600, 144'000, 230'400'000},
  {"Df033Zoom2Backward512",  Init30516_DF033, zoom2_backward_512, 255, 203, Output::zoom_channel,   -203, 144'000, 29'232'000},
  // 1320 steps a second
  {"Df033Zoom3Forward",      Init30516_DF033, setZoom3Forward,    255, 660, Output::zoom3_block,    660, 757'576, 500'000'000},
  {"Df033Zoom3Backward",     Init30516_DF033, setZoom3Backward,   255, 660, Output::zoom3_block,   -660, 757'576, 500'000'000},
  // divider 7, period 657: 4.2048 ms a step
  {"Df033Zoom1Forward",      Init30516_DF033, setZoom1Forward,    255, 1500, Output::pt5111_a,     1500, 4'204'800, 6'307'200'000},
  {"Df033Zoom1Backward",     Init30516_DF033, setZoom1Backward,   234, 1500, Output::pt5111_a,    -1500, 4'204'800, 6'307'200'000},
  // divider 2, period 781: 159.9488 ms a step
  {"Df033Zoom1uForward",     Init30516_DF033, setZoom1uForward,     6, 10, Output::pt5111_a,         10, 159'948'800, 1'599'488'000},
  {"Df033Zoom1uBackward",    Init30516_DF033, zoom1_micro_backward, 6, 10, Output::pt5111_a,        -10, 159'948'800, 1'599'488'000},
  // range 0, period 781: 159.9488 ms a half step
  {"T5391Zoom1Slowest",      Init30516_T5391, setZoom1Forward,      0, 10, Output::zoom_channel,     20, 159'948'800, 3'198'976'000},
  // range 5, period 610: 3.904 ms a half step
  {"T5391Zoom1Backward",     Init30516_T5391, setZoom1Backward,    40, 100, Output::zoom_channel,  -200, 3'904'000, 780'800'000},
  // range 3, period 124: 3.1744 ms a count of the 1-2 phase drive
  {"T5391FocusForward",      Init30516_T5391, setFocusForward,    100, 100, Output::focus_channel,  100, 3'174'400, 317'440'000},
  {"T5391FocusBackward",     Init30516_T5391, setFocusBackward,   100, 100, Output::focus_channel, -100, 3'174'400, 317'440'000},
  // range 0, period 1024: 209.7152 ms a count
  {"T5391FocusSlowest",      Init30516_T5391, setFocusForward,      0,   3, Output::focus_channel,    3, 209'715'200, 629'145'600},
  // range 3, period 1136: 29.0816 ms a count
  {"T5391FocusLongPeriodInRange3", Init30516_T5391, setFocusForward, 10, 20, Output::focus_channel,  20, 29'081'600, 581'632'000},
  // range 7, period 1550: 2.48 ms a count
  {"T5391FocusLongPeriod",   Init30516_T5391, setFocusForward,    128, 100, Output::focus_channel,  100, 2'480'000, 248'000'000},
  // range 7, period 781: 1.2496 ms a count
  {"T5391FocusFastest",      Init30516_T5391, setFocusBackward,   255, 100, Output::focus_channel, -100, 1'249'600, 124'960'000},
};
// clang-format on

void pass(std::int64_t nanoseconds) {
  const timespec time{nanoseconds / 1'000'000'000, nanoseconds % 1'000'000'000};
  nanosleep(&time, nullptr);
}

class LibraryMove : public testing::TestWithParam<MoveRow> {};

TEST_P(LibraryMove, EndsWhereAndWhenItShould) {
  const MoveRow& row = GetParam();
  const std::int32_t one = row.counts > 0 ? 1 : -1;
  InstalledCamera camera;
  ASSERT_EQ(row.boot(), 0);
  ASSERT_EQ(row.operation(row.speed, row.steps), 0u);
  EXPECT_EQ(camera.position(row.output), 0);
  pass(row.first_count - 1);
  EXPECT_EQ(camera.position(row.output), 0);
  pass(1);
  EXPECT_EQ(camera.position(row.output), one);
  pass(row.last_count - row.first_count - 1);
  EXPECT_EQ(camera.position(row.output), row.counts - one);
  pass(1);
  EXPECT_EQ(camera.position(row.output), row.counts);
  pass(10'000'000'000);
  EXPECT_EQ(camera.position(row.output), row.counts);
  const auto positions = camera.state().positions();
  for (std::size_t i = 0; i < positions.size(); ++i) {
    if (i != static_cast<std::size_t>(row.output)) {
      EXPECT_EQ(positions[i], 0);
    }
  }
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

INSTANTIATE_TEST_SUITE_P(Moves, LibraryMove, testing::ValuesIn(move_rows),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(LibraryMoves, AddUp) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516_T5391(), 0);
  setFocusForward(255, 400);
  pass(2'000'000'000);
  setFocusBackward(255, 150);
  pass(2'000'000'000);
  EXPECT_EQ(camera.position(Output::focus_channel), 250);
}

TEST(LibraryMoves, AreReplacedByTheNextOne) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516(), 0);
  setFocusForward(255, 2000);
  pass(144'000 * 100LL);
  setFocusBackward(255, 1);
  pass(1'000'000'000);
  // The motor is stopped by the third frame of 56 us, after one more eighth step.
  EXPECT_EQ(camera.position(Output::focus_channel), 93);
}

TEST(LibraryMoves, StandStillOnThePt5111AtSpeedZero) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516_DF033(), 0);
  setZoom1Forward(5, 10);
  pass(60'000'000'000);
  EXPECT_EQ(camera.position(Output::pt5111_a), 0);
}

TEST(LibraryMoves, ReachTheIrisAndTheFilterOfDe015) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516(), 0);
  // Divider 6, period 781: 9.9968 ms a step.
  piris_close(40);
  pass(40 * 9'996'800LL - 1);
  EXPECT_EQ(camera.position(Output::pt5111_b), 39);
  pass(1);
  EXPECT_EQ(camera.position(Output::pt5111_b), 40);
  piris_open(60);
  pass(1'000'000'000);
  EXPECT_EQ(camera.position(Output::pt5111_b), -20);
  ICR_ON(30);
  pass(1'000'000'000);
  EXPECT_EQ(camera.position(Output::pt5111_a), 30);
  ICR_OFF(30);
  pass(100'000'000);
  stop();
  pass(1'000'000'000);
  EXPECT_EQ(camera.position(Output::pt5111_a), 20);
  EXPECT_EQ(camera.state().violations().total(), 0u);
}

TEST(LibraryMoves, OfTheWrongModuleAreReported) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516_T5391(), 0);
  SetLensType(7);
  setZoom1Forward(100, 10);
  EXPECT_EQ(camera.state().violations().total(), 8u);
}

}  // namespace
