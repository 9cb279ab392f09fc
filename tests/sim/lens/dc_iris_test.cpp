// The DC iris, and the heater's warmth: what goes evenly to where it is sent.
#include "sim/lens/dc_iris.h"

#include <gtest/gtest.h>

#include "sim/camera/bench.h"

namespace {

using kelvo::sim::camera::Slide;
using kelvo::sim::camera::Time;
using kelvo::test::Bench;

Time ms(std::int64_t milliseconds) { return std::chrono::milliseconds(milliseconds); }

TEST(Slide, GoesEvenlyAndStopsAtItsGoal) {
  Slide slide(100);
  slide.go(ms(1000), 50);
  EXPECT_EQ(slide.value(ms(1000)), 0);
  EXPECT_EQ(slide.value(ms(1250)), 25);
  EXPECT_EQ(slide.value(ms(1500)), 50);
  EXPECT_EQ(slide.value(ms(1'000'000'000)), 50);
}

TEST(Slide, TurnsWhereItIs) {
  Slide slide(100);
  slide.put(50);
  slide.go(ms(0), 100);
  slide.go(ms(200), 0);
  EXPECT_EQ(slide.value(ms(200)), 70);
  EXPECT_EQ(slide.value(ms(500)), 40);
  EXPECT_EQ(slide.value(ms(900)), 0);
}

/// The end of a boot: a travel, and the loop.
Bench ready(int module) {
  Bench bench;
  bench.boot(module);
  bench.command16(87, 0x0200);
  bench.command16(88, 0x0E00);
  bench.command16(39, 1);
  return bench;
}

TEST(DcIris, RestsAtItsHallOffset) {
  for (const int module : {8, 9}) {
    Bench bench;
    bench.boot(module);
    EXPECT_EQ(bench.query32(0xF3), 0x0800u);
    EXPECT_EQ(bench.query32(0xF2), 0x08000000u);
    EXPECT_EQ(bench.query32(0xF4), 0u) << "it has one axis";
    bench.command16(81, 0x0840);
    bench.wait_ms(100);
    EXPECT_EQ(bench.query32(0xF3), 0x0840u);
    EXPECT_EQ(bench.violation_count(), 0u);
  }
}

TEST(DcIris, GoesToItsTargetAt16000ASecond) {
  Bench bench = ready(8);
  bench.command16(97, 0x0800 + 1200);
  bench.wait_ms(50);
  EXPECT_EQ(bench.query32(0xF3), 0x0800u + 800);
  bench.wait_ms(50);
  EXPECT_EQ(bench.query32(0xF3), 0x0800u + 1200);
  EXPECT_EQ(bench.camera.lens_summary().iris, 0x0800 + 1200);
  EXPECT_EQ(bench.camera.lens_summary().iris_target, 0x0800 + 1200);
}

TEST(DcIris, StaysInItsTravel) {
  Bench bench = ready(9);
  bench.command16(97, 0);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(0xF3), 0x0200u);
  bench.command16(97, 0xFFFF);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(0xF3), 0x0E00u);
  bench.command16(88, 0x0D00);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(0xF3), 0x0D00u);
}

TEST(DcIris, StandsAtTheLowerEndOfATravelThatIsUpsideDown) {
  Bench bench = ready(8);
  bench.command16(88, 0x0100);
  bench.command16(97, 0x0900);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(0xF3), 0x0200u);
}

TEST(DcIris, WaitsForItsLoop) {
  Bench bench;
  bench.boot(8);
  bench.command16(97, 0x0900);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(0xF3), 0x0800u);
  bench.command16(39, 1);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(0xF3), 0x0900u);
  bench.command16(39, 0);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(0xF3), 0x0800u);
}

TEST(DcIris, FallsBackInAReset) {
  Bench bench = ready(8);
  bench.command16(97, 0x0E00);
  bench.wait_ms(1000);
  bench.boot(8);
  EXPECT_EQ(bench.query32(0xF3), 0x0800u);
  bench.command16(39, 1);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(0xF3), 0x0800u) << "the target is lost";
}

TEST(DcIris, GoesThroughItsTravelInACalibration) {
  Bench bench = ready(8);
  bench.command16(4, 1);
  bench.command16(5, 1);
  EXPECT_EQ(bench.query32(0xF3), 0x0193u);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(0xF3), 0x0E7Cu);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(0xF3), 0x0193u);
  bench.wait_ms(6000);
  EXPECT_EQ(bench.query32(0x80), 4u);
  EXPECT_EQ(bench.query32(0xF3), 0x0800u);
}

TEST(DcIris, IsNotTheStabilisersOfDe015) {
  Bench bench;
  bench.boot(7);
  bench.command16(97, 0x0900);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(0xF3), 0x0800u);
}

int temperature(Bench& bench) {
  bench.command(32, 0, 0, 0, 96);
  bench.wait_ms(10);
  return bench.query(0x81, 0);
}

TEST(Heater, WarmsTheConverterByTwoCountsALevel) {
  for (const int module : {7, 8, 9}) {
    Bench bench;
    bench.boot(module);
    EXPECT_EQ(temperature(bench), 2620);
    bench.command(7, 0, 0, 0, 80);
    bench.wait_ms(9'990);
    EXPECT_EQ(temperature(bench), 2620 + 40);
    bench.wait_ms(29'990);
    EXPECT_EQ(temperature(bench), 2620 + 160);
    bench.wait_ms(100'000);
    EXPECT_EQ(temperature(bench), 2620 + 160);
    bench.command(7, 0, 0, 0, 0);
    bench.wait_ms(19'990);
    EXPECT_EQ(temperature(bench), 2620 + 80);
    EXPECT_EQ(bench.violation_count(), 0u);
  }
}

TEST(Heater, WarmsNoOtherChannel) {
  Bench bench;
  bench.boot(8);
  bench.command(7, 0, 0, 0, 255);
  bench.wait_ms(100'000);
  EXPECT_GT(temperature(bench), 2620);
  EXPECT_EQ(bench.query(0x81, 1), 0x07E1);
  EXPECT_EQ(bench.query(0x81, 2), 0x0C58);
}

TEST(Heater, CoolsDownWithoutItsProgramOrPower) {
  Bench bench;
  bench.boot(9);
  bench.command(7, 0, 0, 0, 100);
  bench.wait_ms(100'000);
  EXPECT_EQ(bench.camera.lens_summary().warmth, 200);
  bench.camera.power_off();
  bench.wait_ms(25'000);
  EXPECT_EQ(bench.camera.lens_summary().warmth, 100);
  EXPECT_EQ(bench.camera.lens_summary().heater, 0);
}

}  // namespace
