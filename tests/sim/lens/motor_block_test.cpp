#include "sim/lens/motor_block.h"

#include <gtest/gtest.h>

#include "sim/camera/bench.h"

namespace {

using kelvo::sim::camera::Output;
using kelvo::sim::camera::Time;
using kelvo::test::Bench;

/// A bench with a booted module and short words for its two channels.
class MotorBlockTest : public testing::Test {
 protected:
  void boot(int module) { bench.boot(module); }

  void program_focus(int mode, int low, int high, int period) {
    bench.write_register(134, 1);
    bench.write_register(142, 73);
    bench.write_register(30, 0);
    bench.write_register(0, mode);
    bench.write_register(2, low);
    bench.write_register(4, high);
    bench.write_register(6, period);
    bench.write_register(24, 0);
    bench.write_register(252, 499);
  }
  void run_focus() {
    bench.write_register(30, 3842);
    bench.write_register(30, 3850);
  }
  void program_zoom(int mode, int low, int high, int period) {
    bench.write_register(62, 0);
    bench.write_register(32, mode);
    bench.write_register(34, low);
    bench.write_register(36, high);
    bench.write_register(38, period);
    bench.write_register(56, 0);
  }
  void run_zoom() {
    bench.write_register(62, 3842);
    bench.write_register(62, 3850);
  }
  void wait_ns(std::int64_t nanoseconds) { bench.camera.clock.advance(Time(nanoseconds)); }
  int focus() const { return bench.position(Output::focus_channel); }
  int zoom() const { return bench.position(Output::zoom_channel); }

  Bench bench;
};

TEST_F(MotorBlockTest, MicroStepsMakeACountOfEightTicks) {
  boot(7);
  // Range 10, period 90: a tick each 18 us, a count each 144 us.
  program_focus(0x600, 576, 1, 10330);
  run_focus();
  wait_ns(143'999);
  EXPECT_EQ(focus(), 0);
  wait_ns(1);
  EXPECT_EQ(focus(), 1);
  wait_ns(1'599 * 144'000 - 1);
  EXPECT_EQ(focus(), 1599);
  wait_ns(1);
  EXPECT_EQ(focus(), 1600);
  wait_ns(1'000'000'000);
  EXPECT_EQ(focus(), 1600);
  EXPECT_EQ(zoom(), 0);
}

TEST_F(MotorBlockTest, MicroStepsGoBackward) {
  boot(8);
  program_zoom(0x640, 8, 0, 10330);
  run_zoom();
  wait_ns(8 * 144'000LL);
  EXPECT_EQ(zoom(), -8);
  EXPECT_EQ(focus(), 0);
}

TEST_F(MotorBlockTest, PhasesMakeACountOfOneTick) {
  boot(9);
  // Range 5, period 610: a tick each 3.904 ms.
  program_zoom(0x340, 400, 0, 5730);
  run_zoom();
  wait_ns(3'903'999);
  EXPECT_EQ(zoom(), 0);
  wait_ns(1);
  EXPECT_EQ(zoom(), 1);
  wait_ns(399 * 3'904'000LL);
  EXPECT_EQ(zoom(), 400);
}

TEST_F(MotorBlockTest, PhasesGoBackward) {
  boot(9);
  // Range 0, period 781: a tick each 159.9488 ms.
  program_focus(0x300, 2, 0, 781);
  run_focus();
  wait_ns(159'948'799);
  EXPECT_EQ(focus(), 0);
  wait_ns(1);
  EXPECT_EQ(focus(), -1);
  wait_ns(159'948'800);
  EXPECT_EQ(focus(), -2);
}

TEST_F(MotorBlockTest, BothMotorsMoveAtTheSameTime) {
  boot(9);
  program_focus(0x340, 100, 0, 5730);
  program_zoom(0x300, 50, 0, 5730);
  run_focus();
  run_zoom();
  wait_ns(20 * 3'904'000LL);
  EXPECT_EQ(focus(), 20);
  EXPECT_EQ(zoom(), -20);
}

TEST_F(MotorBlockTest, TakesALongPeriodOfAPhaseDriveInItsHighestRange) {
  boot(9);
  // 8194 is range 7, period 1026 (1.6416 ms a tick), as 8188 is range 7, period 1020 (1.632 ms).
  program_focus(0x340, 10, 0, 8194);
  run_focus();
  wait_ns(1'641'599);
  EXPECT_EQ(focus(), 0);
  wait_ns(1);
  EXPECT_EQ(focus(), 1);
  program_focus(0x300, 10, 0, 8188);
  run_focus();
  wait_ns(1'631'999);
  EXPECT_EQ(focus(), 1);
  wait_ns(1);
  EXPECT_EQ(focus(), 0);
}

TEST_F(MotorBlockTest, HasHigherRangesForMicroSteps) {
  boot(7);
  // 8194 is range 8, period 2: a tick each 1.6 us.
  program_focus(0x600, 10, 0, 8194);
  run_focus();
  wait_ns(8 * 1'600 - 1);
  EXPECT_EQ(focus(), 0);
  wait_ns(1);
  EXPECT_EQ(focus(), 1);
}

TEST_F(MotorBlockTest, HasTheRangesZeroThreeFiveAndSevenForPhases) {
  // Of each word the time of a tick: 204.8 us * period / 2^range.
  const struct {
    int word;
    std::int64_t tick;
  } rows[] = {
      {781, 159'948'800},                          // range 0, period 781
      {1024, 209'715'200},                         // 0, 1024
      {3071, 628'940'800},                         // 0, 3071
      {3072 + 44, 1'126'400}, {4208, 29'081'600},  // 3, 1136
      {5119, 52'403'200},                          // 3, 2047
      {5730, 3'904'000},                           // 5, 610
      {7167, 13'100'800},                          // 5, 2047
      {7168 + 7, 11'200},
  };
  for (const auto& row : rows) {
    boot(7);
    boot(9);  // another lens, its motors in the middle
    program_focus(0x340, 3, 0, row.word);
    run_focus();
    wait_ns(row.tick - 1);
    EXPECT_EQ(focus(), 0) << row.word;
    wait_ns(1);
    EXPECT_EQ(focus(), 1) << row.word;
  }
}

TEST_F(MotorBlockTest, HasEveryRangeForMicroSteps) {
  boot(7);
  // 1296 is range 1, period 272: a tick each 27.8528 ms.
  program_focus(0x600, 1, 0, 1296);
  run_focus();
  wait_ns(8 * 27'852'800LL - 1);
  EXPECT_EQ(focus(), 0);
  wait_ns(1);
  EXPECT_EQ(focus(), 1);
}

TEST_F(MotorBlockTest, DoesNotMoveWithPeriodZero) {
  boot(9);
  program_focus(0x340, 10, 0, 0);
  run_focus();
  wait_ns(60'000'000'000);
  EXPECT_EQ(focus(), 0);
  // Range 3, period 0.
  program_focus(0x340, 10, 0, 3072);
  run_focus();
  wait_ns(60'000'000'000);
  EXPECT_EQ(focus(), 0);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST_F(MotorBlockTest, StopsWhenItsCoilsLoseTheirCurrent) {
  for (const int off : {0x3DF, 0x1DF}) {
    boot(8);
    boot(7);
    program_focus(0x600, 800, 0, 10330);
    program_zoom(0x600, 800, 0, 10330);
    run_focus();
    run_zoom();
    wait_ns(100 * 144'000 + 70'000);
    bench.write_register(24, off);
    wait_ns(1'000'000'000);
    EXPECT_EQ(focus(), 100);
    EXPECT_EQ(zoom(), 800);
    bench.write_register(56, off);
    run_zoom();
    wait_ns(1'000'000'000);
    EXPECT_EQ(zoom(), 800) << "without current";
    bench.write_register(56, 0);
    run_zoom();
    wait_ns(1'000'000'000);
    EXPECT_EQ(zoom(), 1600);
  }
}

TEST_F(MotorBlockTest, CountsTenBitsInEachHalf) {
  boot(7);
  program_focus(0x600, 0x400 + 8, 0x400 + 1, 10330);
  run_focus();
  wait_ns(60'000'000'000);
  EXPECT_EQ(focus(), 1032);
}

TEST_F(MotorBlockTest, RunsOnlyWhenItHasBeenArmed) {
  boot(7);
  program_focus(0x600, 800, 0, 10330);
  bench.write_register(30, 3850);
  wait_ns(1'000'000'000);
  EXPECT_EQ(focus(), 0);
  bench.write_register(30, 3842);
  wait_ns(1'000'000'000);
  EXPECT_EQ(focus(), 0);
  bench.write_register(30, 3850);
  wait_ns(1'000'000'000);
  EXPECT_EQ(focus(), 800);
}

TEST_F(MotorBlockTest, IsStoppedByControlZero) {
  boot(7);
  program_focus(0x600, 800, 0, 10330);
  run_focus();
  wait_ns(100 * 144'000 + 70'000);
  bench.write_register(30, 0);
  wait_ns(1'000'000'000);
  EXPECT_EQ(focus(), 100);
}

TEST_F(MotorBlockTest, UsesWhatTheRegistersHoldWhenItRuns) {
  boot(7);
  program_focus(0x600, 800, 0, 10330);
  run_focus();
  bench.write_register(2, 8);
  bench.write_register(0, 0x640);
  wait_ns(1'000'000'000);
  EXPECT_EQ(focus(), 800);
}

TEST_F(MotorBlockTest, StopsAtTheEndOfItsTravel) {
  boot(9);
  program_focus(0x340, 500, 2, 0x2801);
  run_focus();
  wait_ns(60'000'000'000);
  EXPECT_EQ(focus(), 2000);
}

TEST_F(MotorBlockTest, ReportsAModeWordThatIsNoDriveMode) {
  boot(7);
  program_focus(0x500, 800, 0, 10330);
  run_focus();
  wait_ns(1'000'000'000);
  EXPECT_EQ(focus(), 0);
  EXPECT_EQ(bench.violations(),
            (std::vector<std::string>{"lens controller | 0F 00 1E 0F 0A 46 00 | mode word 0x500 is "
                                      "no drive mode"}));
}

TEST_F(MotorBlockTest, LosesItsRegistersAndStopsItsMotorsInAReset) {
  boot(7);
  program_focus(0x600, 800, 0, 10330);
  run_focus();
  wait_ns(10 * 144'000LL);
  bench.shell_all({"echo 0 > /sys/class/gpio/gpio33/value"});
  wait_ns(1'000'000'000);
  EXPECT_EQ(focus(), 10);
  EXPECT_EQ(bench.camera.lens().program().motor_block().read(6), 0);
}

}  // namespace
