// An axis that speeds up and slows down.
#include <gtest/gtest.h>

#include "sim/head/axis.h"
#include "sim/head/head_bench.h"

namespace {

using kelvo::sim::camera::Arc;
using kelvo::sim::camera::Axis;
using kelvo::sim::camera::Way;
using kelvo::test::ms;
using kelvo::test::pan;
using kelvo::test::TasmereBench;
using kelvo::test::tilt;
using kelvo::test::up;
using kelvo::test::VetraBench;

/// A circle of 1000 counts, 500 a second at full speed: there in 500 ms and 125 counts, at rest again in
/// 250 ms and 62.5 counts.
class Ramps : public testing::Test {
 protected:
  Ramps() { axis.set_ramp({1000, 2000}); }

  Axis axis{1000, 0};
};

TEST_F(Ramps, TakeTheirTimeToFullSpeed) {
  axis.run(ms(0), Way::up, {1, 1});
  EXPECT_EQ(axis.position(ms(100)), 5u);
  EXPECT_EQ(axis.position(ms(500)), 125u);
  EXPECT_EQ(axis.position(ms(1000)), 375u);
  EXPECT_EQ(axis.position(ms(2000)), 875u);
  EXPECT_TRUE(axis.moving(ms(1'000'000)));
}

TEST_F(Ramps, TakeTheirTimeToRest) {
  axis.run(ms(0), Way::up, {1, 1});
  axis.halt(ms(1000));
  EXPECT_EQ(axis.position(ms(1125)), 421u);  // 375 + 46.875
  EXPECT_TRUE(axis.moving(ms(1249)));
  EXPECT_FALSE(axis.moving(ms(1250)));
  EXPECT_EQ(axis.position(ms(1250)), 437u);
  EXPECT_EQ(axis.position(ms(9000)), 437u);
}

TEST_F(Ramps, EndAtTheTarget) {
  axis.reach(ms(0), Way::up, {1, 1}, 500);
  EXPECT_EQ(axis.position(ms(500)), 125u);
  EXPECT_EQ(axis.position(ms(1125)), 437u);
  EXPECT_TRUE(axis.moving(ms(1374)));
  EXPECT_FALSE(axis.moving(ms(1375)));
  EXPECT_EQ(axis.position(ms(1375)), 500u);
}

TEST_F(Ramps, MeetOnAShortWay) {
  axis.reach(ms(0), Way::up, {1, 1}, 75);  // at most 316.2 counts a second
  EXPECT_EQ(axis.position(ms(300)), 45u);
  EXPECT_TRUE(axis.moving(ms(474)));
  EXPECT_FALSE(axis.moving(ms(475)));
  EXPECT_EQ(axis.position(ms(475)), 75u);
}

TEST_F(Ramps, TurnAnAxisThatGoesTheOtherWay) {
  axis.run(ms(0), Way::up, {1, 1});
  axis.reach(ms(1000), Way::down, {1, 1}, 300);
  EXPECT_EQ(axis.position(ms(1250)), 437u);
  EXPECT_TRUE(axis.moving(ms(1892)));
  EXPECT_FALSE(axis.moving(ms(1893)));
  EXPECT_EQ(axis.position(ms(1893)), 300u);
}

TEST_F(Ramps, BringAnAxisBackThatCannotStopInTime) {
  axis.run(ms(0), Way::up, {1, 1});
  axis.reach(ms(1000), Way::up, {1, 1}, 400);
  EXPECT_EQ(axis.position(ms(1250)), 437u);
  EXPECT_TRUE(axis.moving(ms(1585)));
  EXPECT_FALSE(axis.moving(ms(1586)));
  EXPECT_EQ(axis.position(ms(1586)), 400u);
}

TEST_F(Ramps, SlowAnAxisDown) {
  axis.run(ms(0), Way::up, {1, 1});
  axis.run(ms(1000), Way::up, {1, 5});
  EXPECT_EQ(axis.position(ms(1200)), 435u);
  EXPECT_EQ(axis.position(ms(2200)), 535u);
}

TEST_F(Ramps, HoldAtTheEndOfAnArc) {
  axis.bind(ms(0), Arc{0, 400});
  axis.run(ms(0), Way::up, {1, 1});
  EXPECT_TRUE(axis.moving(ms(1174)));
  EXPECT_FALSE(axis.moving(ms(1175)));
  EXPECT_EQ(axis.position(ms(1175)), 400u);
}

TEST_F(Ramps, AreSteeperWhereALimitComesTooNear) {
  axis.run(ms(0), Way::up, {1, 1});
  axis.bind(ms(1000), Arc{0, 400});
  EXPECT_EQ(axis.position(ms(1050)), 393u);
  EXPECT_EQ(axis.position(ms(1100)), 400u);
  EXPECT_FALSE(axis.moving(ms(1100)));
  EXPECT_EQ(axis.position(ms(9000)), 400u);
}

TEST_F(Ramps, AreSteeperForAStopBeforeALimit) {
  axis.bind(ms(0), Arc{0, 400});
  axis.run(ms(0), Way::up, {1, 1});
  axis.set_ramp({1000, 100});  // it would need 1250 counts
  axis.halt(ms(900));          // 325 counts
  EXPECT_EQ(axis.position(ms(9000)), 400u);
  EXPECT_TRUE(axis.moving(ms(1199)));
  EXPECT_FALSE(axis.moving(ms(1201)));
}

TEST_F(Ramps, AreNotWaitedForByAFreeze) {
  axis.run(ms(0), Way::up, {1, 1});
  axis.freeze(ms(1000));
  EXPECT_FALSE(axis.moving(ms(1000)));
  EXPECT_EQ(axis.position(ms(1000)), 375u);
  EXPECT_EQ(axis.position(ms(9000)), 375u);
}

TEST_F(Ramps, GoOnWhenTheAxisIsPushed) {
  axis.reach(ms(0), Way::up, {1, 1}, 500);
  axis.push(ms(600), 100);  // at 175 counts
  EXPECT_EQ(axis.position(ms(600)), 275u);
  EXPECT_EQ(axis.position(ms(700)), 325u);
  EXPECT_EQ(axis.position(ms(1175)), 500u);
  EXPECT_FALSE(axis.moving(ms(1175)));
}

TEST(Axis, DoesNotStandStillUnderAStreamOfCommands) {
  Axis axis(1000, 0);
  for (int i = 0; i <= 1000; ++i) axis.run(ms(i), Way::down, {1, 100});  // 5 counts a second
  EXPECT_EQ(axis.position(ms(1001)), 995u);
}

TEST(Vetra, HasARampOfItsOwn) {
  VetraBench bench;
  bench.continuous(pan, up, 7200);  // in half a second, 18000 counts a second each second
  bench.wait_ms(250);
  EXPECT_EQ(bench.position(pan), 9000 + 562);
  bench.wait_ms(250);
  EXPECT_EQ(bench.position(pan), 9000 + 2250);
  bench.write(pan, {6});
  EXPECT_FALSE(bench.at_rest(pan));
  bench.wait_ms(499);
  EXPECT_FALSE(bench.at_rest(pan));
  bench.wait_ms(1);
  EXPECT_TRUE(bench.at_rest(pan));
  EXPECT_EQ(bench.position(pan), 9000 + 4500);
}

TEST(Vetra, TakesItsRampFromTwoRegisters) {
  VetraBench bench;
  bench.write(pan, {19, 0, 0, 0x9C, 0x40});     // 40000: 4000 units of speed each second
  bench.write(pan, {21, 0, 0x0A, 0xFC, 0x80});  // 720000
  bench.continuous(pan, up, 7200);
  bench.wait_ms(1800);
  EXPECT_EQ(bench.position(pan), 9000 + 8100);
  bench.write(pan, {6});
  bench.wait_ms(99);
  EXPECT_FALSE(bench.at_rest(pan));
  bench.wait_ms(1);
  EXPECT_TRUE(bench.at_rest(pan));
  EXPECT_EQ(bench.position(pan), 9000 + 8550);
}

TEST(Vetra, HasARampForEachAxis) {
  VetraBench bench;
  bench.write(pan, {19, 0, 0, 0x9C, 0x40});
  bench.continuous(tilt, up, 7200);
  bench.wait_ms(500);
  EXPECT_EQ(bench.position(tilt), 12'500 + 2250);
}

TEST(Vetra, HasItsOwnRampAgainAfterARestart) {
  VetraBench bench;
  bench.write(pan, {19, 0, 0, 0x9C, 0x40});
  bench.write(pan, {34});
  bench.continuous(pan, up, 7200);
  bench.wait_ms(500);
  EXPECT_EQ(bench.position(pan), 9000 + 2250);
}

TEST(Tasmere, HasOneRamp) {
  TasmereBench bench;
  bench.set(pan, 7, 32'767);  // in half a second
  bench.wait_ms(500);
  EXPECT_EQ(bench.position(pan), 32'768 + 8192);
  bench.set(pan, 7, 0);
  bench.wait_ms(499);
  EXPECT_FALSE(bench.at_rest(pan));
  bench.wait_ms(1);
  EXPECT_TRUE(bench.at_rest(pan));
  EXPECT_EQ(bench.position(pan), 32'768 + 16'384);
}

}  // namespace
