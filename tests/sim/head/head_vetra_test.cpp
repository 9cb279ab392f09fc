#include <gtest/gtest.h>

#include "sim/head/head_bench.h"

namespace {

using kelvo::test::down;
using kelvo::test::Frame;
using kelvo::test::pan;
using kelvo::test::tilt;
using kelvo::test::up;
using kelvo::test::VetraBench;

TEST(Vetra, StandsInTheMiddleOfTheCommonScaleAtFirst) {
  VetraBench bench;
  EXPECT_EQ(bench.position(pan), 9000);
  EXPECT_EQ(bench.position(tilt), 12'500);
  EXPECT_EQ(bench.camera.head().pan().common_position({}), 32'768u);
  EXPECT_EQ(bench.camera.head().tilt().common_position({}), 32'767u);
}

TEST(Vetra, IsCalibratedAndAtRestAtFirst) {
  VetraBench bench;
  EXPECT_EQ(bench.read(pan, 49, 1), (Frame{6}));
  EXPECT_EQ(bench.read(tilt, 49, 1), (Frame{6}));
  EXPECT_EQ(bench.read(pan, 48, 1), (Frame{0x15}));
}

TEST(Vetra, RunsAndStops) {
  VetraBench bench;
  bench.continuous(pan, up, 7200);  // 9000 counts a second, half a second later
  EXPECT_EQ(bench.read(pan, 49, 1), (Frame{2}));
  bench.wait_ms(500);
  EXPECT_EQ(bench.position(pan), 11'250);
  EXPECT_EQ(bench.position(tilt), 12'500);
  bench.continuous(pan, down, 72);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(pan), 13'455);
  bench.write(pan, {6});
  bench.wait_ms(5);
  EXPECT_TRUE(bench.at_rest(pan));
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(pan), 13'455);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Vetra, TiltsWithoutPanning) {
  VetraBench bench;
  bench.continuous(tilt, down, 7200);
  bench.wait_ms(100);
  EXPECT_EQ(bench.position(pan), 9000);
  EXPECT_EQ(bench.position(tilt), 12'410);
  EXPECT_TRUE(bench.at_rest(pan));
  EXPECT_FALSE(bench.at_rest(tilt));
}

TEST(Vetra, RunsRoundItsCircle) {
  VetraBench bench;
  bench.continuous(pan, up, 7200);
  bench.wait_ms(1400);
  EXPECT_EQ(bench.position(pan), 1350);
}

TEST(Vetra, HasNoSpeedAbove7200) {
  VetraBench bench;
  bench.continuous(pan, up, 0xFFFF);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(pan), 15'750);
}

TEST(Vetra, MovesToACountTheWayItIsTold) {
  VetraBench bench;
  bench.absolute(pan, up, 9900, 3600);  // 4500 counts a second
  bench.wait_ms(100);
  EXPECT_EQ(bench.position(pan), 9090);
  EXPECT_FALSE(bench.at_rest(pan));
  bench.wait_ms(348);
  EXPECT_EQ(bench.position(pan), 9900);
  EXPECT_TRUE(bench.at_rest(pan));
  bench.absolute(pan, down, 10'800, 7200);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(pan), 3150);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(pan), 10'800);
}

TEST(Vetra, TakesTheCountOfAFullRangeForZero) {
  VetraBench bench;
  bench.absolute(pan, up, 18'000, 7200);
  bench.wait_ms(1500);
  EXPECT_EQ(bench.position(pan), 0);
  EXPECT_TRUE(bench.at_rest(pan));
  EXPECT_EQ(bench.camera.head().pan().common_position(bench.camera.clock.now()), 65'535u);
}

TEST(Vetra, PansBetweenItsStartAndTheEndBelow) {
  VetraBench bench;
  bench.limits(pan, 15'000, 3000);
  bench.enable_limits(pan, 1);
  EXPECT_EQ(bench.read(pan, 51, 1), (Frame{1}));
  EXPECT_EQ(bench.read(pan, 52, 4), (Frame{0x3A, 0x98, 0x0B, 0xB8}));
  bench.continuous(pan, up, 7200);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(pan), 15'000);
  EXPECT_TRUE(bench.at_rest(pan));
  bench.continuous(pan, down, 7200);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(pan), 3000);
  bench.enable_limits(pan, 0);
  EXPECT_EQ(bench.read(pan, 51, 1), (Frame{0}));
  bench.continuous(pan, down, 7200);
  bench.wait_ms(100);
  EXPECT_EQ(bench.position(pan), 2910);
}

TEST(Vetra, PansAcrossZeroWhenTheEndIsAbove) {
  VetraBench bench;
  bench.limits(pan, 3000, 8000);  // 8000 up to 17999, and on from 0 to 3000
  bench.enable_limits(pan, 1);
  bench.continuous(pan, up, 7200);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(pan), 3000);
  bench.absolute(pan, up, 8100, 7200);
  bench.wait_ms(100);
  EXPECT_EQ(bench.position(pan), 2910);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(pan), 8100);
}

TEST(Vetra, TakesThePanLimitAtTheCountOfAFullRange) {
  VetraBench bench;
  bench.limits(pan, 18'000, 9000);
  bench.enable_limits(pan, 1);
  bench.continuous(pan, up, 7200);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(pan), 0);
  bench.limits(pan, 9000, 18'000);
  bench.continuous(pan, up, 7200);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(pan), 9000);
  bench.continuous(pan, down, 7200);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(pan), 0);
}

TEST(Vetra, TakesTheTiltLimitsInTheOtherOrder) {
  VetraBench bench;
  bench.limits(tilt, 11'000, 14'000);
  bench.enable_limits(tilt, 1);
  EXPECT_EQ(bench.read(tilt, 52, 4), (Frame{0x2A, 0xF8, 0x36, 0xB0}));
  bench.continuous(tilt, up, 7200);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(tilt), 14'000);
  bench.continuous(tilt, down, 7200);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(tilt), 11'000);
}

TEST(Vetra, TiltsOverTheWholeRangeBetweenEqualLimits) {
  VetraBench bench;
  bench.limits(tilt, 3500, 3500);
  bench.enable_limits(tilt, 1);
  bench.continuous(tilt, down, 7200);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(tilt), 3500);
  bench.continuous(tilt, up, 7200);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(tilt), 3499);
}

TEST(Vetra, GivesBackItsGainsAndRamps) {
  VetraBench bench;
  bench.write(pan, {16, 0, 35, 0, 1});
  bench.write(pan, {17, 4, 0x80, 0, 100});
  bench.write(pan, {18, 1, 0xF4});
  bench.write(pan, {19, 0, 0x3D, 9, 0});
  bench.write(pan, {21, 0, 0, 0x9C, 0x40});
  EXPECT_EQ(bench.read(pan, 16, 4), (Frame{0, 35, 0, 1}));
  EXPECT_EQ(bench.read(pan, 17, 4), (Frame{4, 0x80, 0, 100}));
  EXPECT_EQ(bench.read(pan, 18, 2), (Frame{1, 0xF4}));
  EXPECT_EQ(bench.read(pan, 18, 4), (Frame{1, 0xF4, 0, 0}));
  EXPECT_EQ(bench.read(pan, 19, 4), (Frame{0, 0x3D, 9, 0}));
  EXPECT_EQ(bench.read(pan, 21, 4), (Frame{0, 0, 0x9C, 0x40}));
  EXPECT_EQ(bench.read(tilt, 16, 4), (Frame{0, 0, 0, 0}));
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Vetra, KeepsItsLimitStepForItself) {
  VetraBench bench;
  bench.write(tilt, {10, 0, 15});
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Vetra, RestartsWhereItIsWithItsFirstSettings) {
  VetraBench bench;
  bench.limits(pan, 15'000, 3000);
  bench.enable_limits(pan, 1);
  bench.write(pan, {16, 0, 35, 0, 1});
  bench.continuous(pan, up, 7200);
  bench.wait_ms(100);
  bench.write(pan, {34});
  EXPECT_TRUE(bench.at_rest(pan));
  EXPECT_EQ(bench.position(pan), 9090);
  EXPECT_EQ(bench.read(pan, 51, 1), (Frame{0}));
  EXPECT_EQ(bench.read(pan, 52, 4), (Frame{0, 0, 0, 0}));
  EXPECT_EQ(bench.read(pan, 16, 4), (Frame{0, 0, 0, 0}));
  bench.continuous(pan, up, 7200);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(pan), 15'840);
}

}  // namespace
