#include "sim/lens/command_motor.h"

#include <gtest/gtest.h>

#include "sim/camera/bench.h"

namespace {

using kelvo::sim::camera::Output;
using kelvo::sim::camera::Time;
using kelvo::test::Bench;

void move_zoom1(Bench& bench, int direction, int rate, int count) {
  bench.command16(56, direction);
  bench.command16(57, 1);
  bench.command16(58, rate);
  bench.command(59, 0, 0, 25, 0);
  bench.command16(60, count);
  bench.command16(61, 100);
  bench.command16(62, 1);
  bench.command16(63, 1);
}

void move_zoom3(Bench& bench, int direction, int rate, int count) {
  bench.command16(22, direction);
  bench.command16(23, 3);
  bench.command16(24, rate);
  bench.command(29, 0, 0, 25, 0);
  bench.command16(25, count);
  bench.command16(26, 100);
  bench.command16(27, 1);
  bench.command16(28, 1);
}

TEST(Zoom1Block, MovesAtItsRateInStepsASecond) {
  Bench bench;
  bench.boot(7);
  move_zoom1(bench, 0, 960, 1200);
  bench.camera.clock.advance(Time(1'041'666));
  EXPECT_EQ(bench.position(Output::zoom1_block), 0);
  bench.camera.clock.advance(Time(1));
  EXPECT_EQ(bench.position(Output::zoom1_block), 1);
  bench.camera.clock.advance(Time(1'250'000'000 - 1'041'667 - 1));
  EXPECT_EQ(bench.position(Output::zoom1_block), 1199);
  bench.camera.clock.advance(Time(1));
  EXPECT_EQ(bench.position(Output::zoom1_block), 1200);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(Output::zoom1_block), 1200);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Zoom1Block, MovesBackwardWithDirectionOne) {
  Bench bench;
  bench.boot(7);
  move_zoom1(bench, 1, 100, 30);
  bench.wait_ms(100);
  EXPECT_EQ(bench.position(Output::zoom1_block), -10);
}

TEST(Zoom1Block, DoesNotMoveAtRateZero) {
  Bench bench;
  bench.boot(7);
  move_zoom1(bench, 0, 0, 30);
  bench.wait_ms(100'000);
  EXPECT_EQ(bench.position(Output::zoom1_block), 0);
}

TEST(Zoom1Block, StopsAtTheEndOfItsTravel) {
  Bench bench;
  bench.boot(7);
  move_zoom1(bench, 0, 960, 65535);
  bench.wait_ms(100'000);
  EXPECT_EQ(bench.position(Output::zoom1_block), 2000);
}

TEST(Zoom1Block, DoesNotMoveWithoutItsCoils) {
  Bench bench;
  bench.boot(7);
  bench.command16(58, 100);
  bench.command16(60, 30);
  bench.command16(63, 1);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(Output::zoom1_block), 0);
}

TEST(Zoom1Block, StopsWhenItsCoilsLosePower) {
  Bench bench;
  bench.boot(7);
  move_zoom1(bench, 0, 100, 30);
  bench.wait_ms(100);
  bench.command16(62, 0);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(Output::zoom1_block), 10);
}

TEST(Zoom1Block, StopsWhenTheStartIsTakenBack) {
  Bench bench;
  bench.boot(7);
  move_zoom1(bench, 0, 100, 30);
  bench.wait_ms(100);
  bench.command16(63, 0);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(Output::zoom1_block), 10);
}

TEST(Zoom1Block, KeepsMovingWhileTheNextMoveIsPrepared) {
  Bench bench;
  bench.boot(7);
  move_zoom1(bench, 0, 100, 30);
  bench.wait_ms(100);
  bench.command16(56, 1);
  bench.command16(60, 5);
  bench.wait_ms(200);
  EXPECT_EQ(bench.position(Output::zoom1_block), 30);
  bench.command16(63, 1);
  bench.wait_ms(200);
  EXPECT_EQ(bench.position(Output::zoom1_block), 25);
}

TEST(Zoom3Block, MovesAtItsRateInEighthStepsASecond) {
  Bench bench;
  bench.boot(8);
  // 10560 eighth steps a second are 1320 steps a second.
  move_zoom3(bench, 0, 10560, 660);
  bench.camera.clock.advance(Time(757'575));
  EXPECT_EQ(bench.position(Output::zoom3_block), 0);
  bench.camera.clock.advance(Time(1));
  EXPECT_EQ(bench.position(Output::zoom3_block), 1);
  bench.camera.clock.advance(Time(500'000'000 - 757'576 - 1));
  EXPECT_EQ(bench.position(Output::zoom3_block), 659);
  bench.camera.clock.advance(Time(1));
  EXPECT_EQ(bench.position(Output::zoom3_block), 660);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Zoom3Block, MovesBackwardWithDirectionOne) {
  Bench bench;
  bench.boot(8);
  move_zoom3(bench, 1, 800, 30);
  bench.wait_ms(100);
  EXPECT_EQ(bench.position(Output::zoom3_block), -10);
  EXPECT_EQ(bench.position(Output::zoom1_block), 0);
}

TEST(Zoom1Block, StopsAndStaysWithTheCurrentThatHolds) {
  Bench bench;
  bench.boot(7);
  move_zoom1(bench, 0, 100, 30);
  bench.wait_ms(100);
  bench.command16(61, 20);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(Output::zoom1_block), 10);
  bench.command16(63, 1);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(Output::zoom1_block), 10);
  bench.command16(61, 100);
  bench.command16(63, 1);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(Output::zoom1_block), 40);
}

TEST(Zoom3Block, StopsAndStaysWithTheCurrentThatHolds) {
  Bench bench;
  bench.boot(8);
  move_zoom3(bench, 0, 800, 30);
  bench.wait_ms(100);
  bench.command16(26, 34);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(Output::zoom3_block), 10);
  bench.command16(28, 1);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(Output::zoom3_block), 10);
  move_zoom3(bench, 0, 800, 30);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(Output::zoom3_block), 40);
}

}  // namespace
