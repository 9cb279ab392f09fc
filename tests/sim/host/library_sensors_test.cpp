// The real library asks the photo-interrupters and the converter of the simulated camera, and moves its
// iris and its IR-cut filter.
#include <gtest/gtest.h>
#include <kelvo.h>

#include <cstdint>
#include <ostream>

#include "sim/host/installed_camera.h"
#include "sim/host/library_calls.h"

namespace {

using kelvo::sim::camera::FilterPlace;
using kelvo::sim::camera::Output;
using kelvo::test::InstalledCamera;
using kelvo::test::pass_ms;
using namespace std::chrono_literals;

struct Motor {
  const char* name;
  std::int32_t (*boot)();
  std::uint32_t (*backward)(std::uint8_t speed, std::uint32_t steps);
  std::uint32_t sensor;
  Output output;
  std::int32_t edge;
};

void PrintTo(const Motor& motor, std::ostream* stream) { *stream << motor.name; }

// clang-format off
const Motor motors[] = {
  {"De015Focus", Init30516,       setFocusBackward, 0, Output::focus_channel, -4000},
  {"De015Zoom2", Init30516,       setZoom2Backward, 1, Output::zoom_channel,  -5600},
  {"De015Zoom1", Init30516,       setZoom1Backward, 2, Output::zoom1_block,    -800},
  {"Df033Focus", Init30516_DF033, setFocusBackward, 0, Output::focus_channel, -4400},
  {"Df033Zoom2", Init30516_DF033, setZoom2Backward, 1, Output::zoom_channel,  -4800},
  {"Df033Zoom3", Init30516_DF033, setZoom3Backward, 2, Output::zoom3_block,    -700},
  {"Df033Zoom1", Init30516_DF033, setZoom1Backward, 3, Output::pt5111_a,       -900},
  {"T5391Focus", Init30516_T5391, setFocusBackward, 0, Output::focus_channel,  -600},
  {"T5391Zoom1", Init30516_T5391, setZoom1Backward, 1, Output::zoom_channel,  -1500},
};
// clang-format on

class LibraryInterrupter : public testing::TestWithParam<Motor> {};

TEST_P(LibraryInterrupter, ChangesItsStateOnTheWay) {
  const Motor& motor = GetParam();
  InstalledCamera camera;
  ASSERT_EQ(motor.boot(), 0);
  PT5111PI1(1);
  SetPIPower(1);
  ASSERT_EQ(getPI(motor.sensor), 0u);
  motor.backward(255, 1500);
  int polls = 0;
  std::int32_t before = 0;
  while (getPI(motor.sensor) == 0 && polls < 10'000) {
    before = camera.position(motor.output);
    pass_ms(1);
    ++polls;
  }
  EXPECT_GT(before, motor.edge);
  EXPECT_LE(camera.position(motor.output), motor.edge);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

INSTANTIATE_TEST_SUITE_P(Motors, LibraryInterrupter, testing::ValuesIn(motors),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(LibraryInterrupters, AreCalibratedOneByOneOrAllTogether) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516(), 0);
  EXPECT_EQ(GetFocusOffset(), 0u);
  EXPECT_EQ(getPI_Cali_DE051(0), 0u);
  setPICalibraition(1);
  pass_ms(1000);
  EXPECT_EQ(GetZoom2Offset(), 42u);
  EXPECT_EQ(getPI_Cali_DE051(0), 0u);
  EXPECT_EQ(getPI_Cali_DE051(1), 1u);
  setPICalibraition(-1);
  pass_ms(1000);
  for (const std::uint32_t sensor : {0U, 1U, 2U}) EXPECT_EQ(getPI_Cali_DE051(sensor), 1u);
  EXPECT_EQ(GetFocusOffset(), 37u);
  FocusPIVerification(1);
  ASSERT_EQ(Init30516_DF033(), 0);
  setPICalibraition(-1);
  pass_ms(1000);
  EXPECT_EQ(GetFocusOffset(), 29u);
  EXPECT_EQ(getPI_Cali_DE051(2), 1u);
  FocusPIVerification(1);
  FocusPIVerification(0);
  ASSERT_EQ(Init30516_T5391(), 0);
  setPICalibraition(-1);
  pass_ms(1000);
  EXPECT_EQ(GetFocusOffset(), 9u);
  EXPECT_EQ(getPI_Cali_DE051(1), 1u);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

TEST(LibraryConverter, IsReadOnEveryModuleAndLeavesTheInterruptersAlone) {
  InstalledCamera camera;
  for (std::int32_t (*boot)() : {Init30516, Init30516_DF033, Init30516_T5391}) {
    ASSERT_EQ(boot(), 0);
    setFocusBackward(255, 700);
    pass_ms(3000);
    EXPECT_EQ(getPI(0), 1u);
    EXPECT_EQ(getADC(0), 0x0A3Cu);
    EXPECT_EQ(getADC(1), 0x07E1u);
    EXPECT_EQ(getADC(9), 0u);
    EXPECT_EQ(getPI(0), 1u);
  }
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

FilterPlace filter(InstalledCamera& camera) { return camera.state().lens_summary().filter; }

TEST(LibraryFilter, IsThrownToAndFroOnEveryModule) {
  InstalledCamera camera;
  const struct {
    std::int32_t (*boot)();
    FilterPlace at_first;
    std::chrono::nanoseconds time;
  } rows[] = {{Init30516, FilterPlace::between, 9 * 16us},  // words; the others' are command frames
              {Init30516_DF033, FilterPlace::on, 200ms + 5 * 56us},
              {Init30516_T5391, FilterPlace::off, 510ms + 11 * 56us}};
  for (const auto& row : rows) {
    ASSERT_EQ(row.boot(), 0);
    EXPECT_EQ(filter(camera), row.at_first);
    const auto begun = camera.now();
    EXPECT_EQ(setICRon(50, 60), 0u);
    EXPECT_EQ(camera.now() - begun, row.time);
    pass_ms(1000);
    EXPECT_EQ(filter(camera), FilterPlace::on);
    EXPECT_EQ(setICRoff(50, 120), 0u);
    pass_ms(2000);
    EXPECT_EQ(filter(camera), FilterPlace::off);
  }
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

TEST(LibraryIris, ClosesForwardAndOpensBackwardOnDe015) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516(), 0);
  setIrisForward(0, 40);
  pass_ms(1000);
  EXPECT_EQ(camera.position(Output::pt5111_b), 40);
  setIrisBackward(0, 60);
  pass_ms(1000);
  EXPECT_EQ(camera.position(Output::pt5111_b), -20);
  for (std::int32_t (*boot)() : {Init30516_DF033, Init30516_T5391}) {
    ASSERT_EQ(boot(), 0);
    setIrisForward(0, 40);
    pass_ms(1000);
    EXPECT_EQ(camera.position(Output::pt5111_b), 0);
  }
}

TEST(LibraryIris, HasATargetAndAHeater) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516_DF033(), 0);
  EXPECT_EQ(setDCIrisABS(0x12345), 0x12345u);
  setHeater(0x150);
  EXPECT_EQ(camera.state().lens_summary().iris_target, 0x2345);
  EXPECT_EQ(camera.state().lens_summary().heater, 0x50);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

}  // namespace
