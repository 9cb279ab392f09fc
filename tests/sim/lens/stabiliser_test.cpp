#include "sim/lens/stabiliser.h"

#include <gtest/gtest.h>

#include <set>

#include "sim/camera/bench.h"

namespace {

using kelvo::test::Bench;

/// A camera at a time that is a whole number of its repetitions.
Bench stabilised(int module) {
  Bench bench;
  bench.boot(module);
  const auto now = bench.camera.clock.now();
  bench.camera.clock.reach((now / std::chrono::seconds(8) + 1) * std::chrono::seconds(8));
  return bench;
}

TEST(Stabiliser, KeepsItsSettingsIn32Bits) {
  for (const int module : {7, 8, 9}) {
    Bench bench;
    bench.boot(module);
    const struct {
      std::uint8_t command;
      std::uint8_t query;
    } rows[] = {{0x68, 0xE8}, {0x69, 0xE9}, {0x22, 0xA2}, {0x12, 0x92}};
    std::uint32_t value = 0x01020304;
    for (const auto& row : rows) bench.command32(row.command, value += 0x01010101);
    value = 0x01020304;
    for (const auto& row : rows) EXPECT_EQ(bench.query32(row.query), value += 0x01010101);
    EXPECT_EQ(bench.violation_count(), 0u);
  }
}

TEST(Stabiliser, KeepsThePauseAndTheDetectionOfDe015) {
  Bench bench;
  bench.boot(7);
  bench.command16(10, 1);
  bench.command16(17, 3);
  EXPECT_EQ(bench.query32(0x8A), 1u);
  EXPECT_EQ(bench.query32(0x91), 3u);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Stabiliser, HasARangeForEachAxisAndOneForBoth) {
  Bench bench;
  bench.boot(7);
  bench.command16(107, 5);
  EXPECT_EQ(bench.camera.lens().program().value(108), 5u);
  EXPECT_EQ(bench.camera.lens().program().value(109), 5u);
  bench.command16(108, 6);
  bench.command16(109, 7);
  EXPECT_EQ(bench.camera.lens().program().value(108), 6u);
  EXPECT_EQ(bench.camera.lens().program().value(109), 7u);
}

TEST(Stabiliser, IsOffAfterABootAndSwitched) {
  Bench bench;
  bench.boot(7);
  EXPECT_FALSE(bench.camera.lens_summary().stabiliser_on);
  bench.command(2, 0, 0, 0, 0);
  EXPECT_TRUE(bench.camera.lens_summary().stabiliser_on);
  bench.command(3, 0, 0, 0, 0);
  EXPECT_FALSE(bench.camera.lens_summary().stabiliser_on);
  bench.command(2, 0, 0, 0, 0);
  bench.boot(7);
  EXPECT_FALSE(bench.camera.lens_summary().stabiliser_on);
}

TEST(Stabiliser, SeesTheHandSwing) {
  Bench bench = stabilised(7);
  EXPECT_EQ(bench.query32(0xF7), 0x80008000u);
  bench.wait_ms(100);  // a quarter of X's swing, a fifth of Y's
  EXPECT_EQ(bench.query32(0xF7), 0x80188013u);
  bench.wait_ms(200);
  EXPECT_EQ(bench.query32(0xF7) >> 16, 0x7FE8u);
  bench.wait_ms(5800);  // it shakes
  EXPECT_EQ(bench.query32(0xF7) >> 16, 0x8000u + 600);
}

TEST(Stabiliser, SwingsAroundTheZerosOfTheGyros) {
  Bench bench = stabilised(7);
  bench.command16(99, 0x7000);
  bench.command16(101, 0x9000);
  EXPECT_EQ(bench.query32(0xF7), 0x70009000u);
}

TEST(Stabiliser, LeavesTheLensAtRestWhileItIsOffOrPaused) {
  Bench bench = stabilised(7);
  bench.command16(81, 0x0812);
  bench.command16(82, 0x07FE);
  bench.wait_ms(100);
  EXPECT_EQ(bench.query32(0xF2), 0x081207FEu);
  bench.command(2, 0, 0, 0, 0);
  EXPECT_EQ(bench.query32(0xF2), 0x07FA07EBu) << "against the swing";
  bench.command16(10, 1);
  EXPECT_EQ(bench.query32(0xF2), 0x081207FEu);
}

TEST(Stabiliser, GivesTheHallValuesOfEachAxis) {
  Bench bench = stabilised(7);
  bench.command(2, 0, 0, 0, 0);
  bench.wait_ms(100);
  EXPECT_EQ(bench.query32(0xF3), 0x07E8u);
  EXPECT_EQ(bench.query32(0xF4), 0x07EDu);
}

TEST(Stabiliser, KeepsTheLensWithinItsTravel) {
  Bench bench = stabilised(7);
  bench.command16(87, 0x0700);
  bench.command16(88, 0x0810);
  bench.command(2, 0, 0, 0, 0);
  bench.wait_ms(6100);
  EXPECT_EQ(bench.query32(0xF3), 0x0700u);
  bench.wait_ms(200);
  EXPECT_EQ(bench.query32(0xF3), 0x0810u);
}

TEST(Stabiliser, IsStableWhileTheSwingIsWithinTheLimit) {
  Bench bench = stabilised(7);
  EXPECT_EQ(bench.query32(0xF9), 1u);
  bench.command16(18, 23);
  EXPECT_EQ(bench.query32(0xF9), 0u);
  bench.command16(18, 24);
  EXPECT_EQ(bench.query32(0xF9), 1u);
  bench.wait_ms(6000);
  EXPECT_EQ(bench.query32(0xF9), 0u);
  bench.command16(18, 600);
  EXPECT_EQ(bench.query32(0xF9), 1u);
}

TEST(Stabiliser, MovesTheLensByItsGyroGains) {
  Bench bench = stabilised(7);
  bench.command(2, 0, 0, 0, 0);
  bench.wait_ms(100);
  bench.command32(0x68, 0x0800);
  bench.command32(0x69, 0x2000);
  EXPECT_EQ(bench.query32(0xF2), 0x07F407DAu) << "12 for 24, 38 for 19";
  bench.command32(0x68, 0);
  EXPECT_EQ(bench.query32(0xF3), 0x0800u);
  bench.command32(0x68, 0xFFFFFFFF);
  EXPECT_EQ(bench.query32(0xF3), 0x0100u);
}

TEST(Stabiliser, LeavesAnAxisWithoutRangeAtRest) {
  Bench bench = stabilised(7);
  bench.command(2, 0, 0, 0, 0);
  bench.wait_ms(100);
  bench.command16(108, 0);
  EXPECT_EQ(bench.query32(0xF2), 0x080007EDu);
  bench.command16(109, 0);
  EXPECT_EQ(bench.query32(0xF2), 0x08000800u);
  bench.command16(107, 1);
  EXPECT_EQ(bench.query32(0xF2), 0x07E807EDu);
}

TEST(Stabiliser, SeesTheLensGoThroughItsTravelInACalibration) {
  Bench bench = stabilised(7);
  bench.command16(4, 1);
  bench.command16(5, 1);
  EXPECT_EQ(bench.query32(0xF2), 0x0162014Du);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(0xF2), 0x0E9B0EB0u);
  bench.wait_ms(500);
  EXPECT_EQ(bench.query32(0xF3), 0x07FEu) << "half-way down";
  bench.wait_ms(10'500);
  EXPECT_EQ(bench.query32(0xF2), 0x07D40823u) << "it is over";
}

TEST(Stabiliser, SeesNoiseOnACameraWithASeed) {
  Bench bench;
  bench.camera.vary(11);
  bench.boot(7);
  std::set<std::uint32_t> hall;
  std::set<std::uint32_t> gyro;
  for (int i = 0; i < 100; ++i) {
    bench.wait_ms(2000);  // where X swings through 0
    hall.insert(bench.query32(0xF3));
    gyro.insert(bench.query32(0xF7) >> 16);
    EXPECT_EQ(bench.query32(0xF3), bench.query32(0xF3)) << "at one moment it is one value";
  }
  EXPECT_EQ(hall, (std::set<std::uint32_t>{0x07FE, 0x07FF, 0x0800, 0x0801, 0x0802}));
  EXPECT_EQ(*gyro.rbegin() - *gyro.begin(), 6u);
}

TEST(Loops, KeepTheIrisTargetAndTheHeater) {
  for (const int module : {7, 8, 9}) {
    Bench bench;
    bench.boot(module);
    bench.command16(97, 0x1234);
    bench.command(7, 0, 0, 0, 80);
    EXPECT_EQ(bench.camera.lens_summary().iris_target, 0x1234);
    EXPECT_EQ(bench.camera.lens_summary().heater, 80);
    EXPECT_EQ(bench.violation_count(), 0u);
  }
}

}  // namespace
