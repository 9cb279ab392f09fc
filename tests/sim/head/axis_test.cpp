#include "sim/head/axis.h"

#include <gtest/gtest.h>

#include "sim/head/head_bench.h"

namespace {

using kelvo::sim::camera::Arc;
using kelvo::sim::camera::Axis;
using kelvo::sim::camera::Time;
using kelvo::sim::camera::Way;
using kelvo::test::ms;

// A circle of 1000 counts: at full speed a count takes 2 ms.

TEST(Axis, StandsWhereItWasPut) {
  const Axis axis(1000, 500);
  EXPECT_EQ(axis.position(ms(0)), 500u);
  EXPECT_EQ(axis.position(ms(100'000)), 500u);
  EXPECT_FALSE(axis.moving(ms(100'000)));
}

TEST(Axis, GoesOnceAroundInTwoSecondsAtFullSpeed) {
  Axis axis(1000, 500);
  axis.run(ms(7), Way::up, {5, 5});
  EXPECT_EQ(axis.position(ms(9) - Time(1)), 500u);
  EXPECT_EQ(axis.position(ms(9)), 501u);
  EXPECT_EQ(axis.position(ms(1005)), 999u);
  EXPECT_EQ(axis.position(ms(1007)), 0u);
  EXPECT_EQ(axis.position(ms(2007)), 500u);
  EXPECT_EQ(axis.position(ms(2'000'007)), 500u);
  EXPECT_TRUE(axis.moving(ms(2'000'007)));
}

TEST(Axis, MovesByPartsOfFullSpeed) {
  Axis axis(1000, 0);
  axis.run(ms(0), Way::up, {1, 3});
  EXPECT_EQ(axis.position(ms(6) - Time(1)), 0u);
  EXPECT_EQ(axis.position(ms(6)), 1u);
  EXPECT_EQ(axis.position(ms(3600)), 600u);
}

TEST(Axis, IsNeverFasterThanFullSpeed) {
  Axis axis(1000, 0);
  axis.run(ms(0), Way::up, {9, 3});
  EXPECT_EQ(axis.position(ms(200)), 100u);
}

TEST(Axis, DoesNotDriftInDays) {
  Axis axis(65'536, 0);
  axis.run(ms(0), Way::up, {32'766, 32'767});
  // 30 days: 2592000 s * 32768 counts * 32766 / 32767 = 84932063920.0, modulo 65536.
  EXPECT_EQ(axis.position(ms(2'592'000'000)), 29360u);
}

TEST(Axis, RunsDownThroughZero) {
  Axis axis(1000, 3);
  axis.run(ms(0), Way::down, {1, 1});
  EXPECT_EQ(axis.position(ms(6)), 0u);
  EXPECT_EQ(axis.position(ms(8)), 999u);
}

TEST(Axis, StandsStillAtSpeedZero) {
  Axis axis(1000, 3);
  axis.run(ms(0), Way::down, {0, 1});
  EXPECT_FALSE(axis.moving(ms(1)));
  axis.reach(ms(1), Way::up, {0, 1}, 10);
  EXPECT_FALSE(axis.moving(ms(2)));
  EXPECT_EQ(axis.position(ms(100'000)), 3u);
}

TEST(Axis, HaltsWhereItIs) {
  Axis axis(1000, 0);
  axis.run(ms(0), Way::up, {1, 1});
  axis.halt(ms(21));
  EXPECT_FALSE(axis.moving(ms(21)));
  EXPECT_EQ(axis.position(ms(5000)), 10u);
}

TEST(Axis, ReachesATargetTheWayItIsTold) {
  Axis axis(1000, 100);
  axis.reach(ms(0), Way::up, {1, 1}, 200);
  EXPECT_EQ(axis.position(ms(198)), 199u);
  EXPECT_TRUE(axis.moving(ms(199)));
  EXPECT_EQ(axis.position(ms(200)), 200u);
  EXPECT_FALSE(axis.moving(ms(200)));
  EXPECT_EQ(axis.position(ms(9999)), 200u);
  axis.reach(ms(10'000), Way::up, {1, 1}, 190);  // nearly around
  EXPECT_EQ(axis.position(ms(10'002)), 201u);
  EXPECT_TRUE(axis.moving(ms(11'979)));
  EXPECT_EQ(axis.position(ms(11'980)), 190u);
  EXPECT_FALSE(axis.moving(ms(11'980)));
  axis.reach(ms(12'000), Way::down, {1, 1}, 180);
  EXPECT_EQ(axis.position(ms(12'020)), 180u);
}

TEST(Axis, NeedNotMoveToWhereItIs) {
  Axis axis(1000, 100);
  axis.reach(ms(0), Way::down, {1, 1}, 100);
  EXPECT_FALSE(axis.moving(ms(0)));
  EXPECT_EQ(axis.position(ms(5000)), 100u);
}

TEST(Axis, TakesATargetBeyondTheCircleRoundIt) {
  Axis axis(1000, 100);
  axis.reach(ms(0), Way::down, {1, 1}, 1000);
  EXPECT_EQ(axis.position(ms(5000)), 0u);
}

TEST(Axis, LeavesAMoveForTheNextOne) {
  Axis axis(1000, 100);
  axis.reach(ms(0), Way::up, {1, 1}, 900);
  axis.run(ms(100), Way::down, {1, 2});
  EXPECT_EQ(axis.position(ms(100)), 150u);
  EXPECT_EQ(axis.position(ms(300)), 100u);
}

TEST(BoundAxis, RunsToTheEndsOfItsArc) {
  Axis axis(1000, 950);
  axis.bind(ms(0), Arc{900, 200});
  EXPECT_TRUE(axis.bound());
  axis.run(ms(0), Way::up, {1, 1});
  EXPECT_TRUE(axis.moving(ms(299)));
  EXPECT_EQ(axis.position(ms(300)), 100u);
  EXPECT_FALSE(axis.moving(ms(300)));
  axis.run(ms(1000), Way::up, {1, 1});
  EXPECT_FALSE(axis.moving(ms(1000)));
  axis.run(ms(1000), Way::down, {1, 1});
  EXPECT_EQ(axis.position(ms(1398)), 901u);
  EXPECT_EQ(axis.position(ms(9000)), 900u);
}

TEST(BoundAxis, HasOneWayToATarget) {
  Axis axis(1000, 950);
  axis.bind(ms(0), Arc{900, 200});
  axis.reach(ms(0), Way::down, {1, 1}, 50);
  EXPECT_EQ(axis.position(ms(2)), 951u);
  EXPECT_EQ(axis.position(ms(200)), 50u);
  EXPECT_FALSE(axis.moving(ms(200)));
  axis.reach(ms(1000), Way::up, {1, 1}, 910);
  EXPECT_EQ(axis.position(ms(1002)), 49u);
  EXPECT_EQ(axis.position(ms(1280)), 910u);
}

TEST(BoundAxis, StopsAtTheEndThatIsNearerToATargetOutside) {
  Axis axis(1000, 950);
  axis.bind(ms(0), Arc{900, 200});
  axis.reach(ms(0), Way::up, {1, 1}, 499);
  EXPECT_EQ(axis.position(ms(10'000)), 100u);
  axis.reach(ms(10'000), Way::up, {1, 1}, 501);
  EXPECT_EQ(axis.position(ms(20'000)), 900u);
}

TEST(BoundAxis, ComesInFromOutsideTheWayItIsTold) {
  Axis axis(1000, 400);
  axis.bind(ms(0), Arc{900, 200});
  axis.run(ms(0), Way::up, {1, 1});
  EXPECT_EQ(axis.position(ms(9000)), 100u);  // through the whole arc
  axis.bind(ms(9000), {});
  axis.reach(ms(9000), Way::up, {1, 1}, 400);
  axis.bind(ms(19'000), Arc{900, 200});
  axis.run(ms(19'000), Way::down, {1, 1});
  EXPECT_EQ(axis.position(ms(19'600)), 100u);
  EXPECT_EQ(axis.position(ms(29'000)), 900u);
}

TEST(BoundAxis, ReachesATargetFromOutsideTheWayItIsTold) {
  for (const Way way : {Way::up, Way::down}) {
    Axis axis(1000, 400);
    axis.bind(ms(0), Arc{900, 200});
    axis.reach(ms(0), way, {1, 1}, 20);
    EXPECT_EQ(axis.position(ms(2)), way == Way::up ? 401u : 399u);
    EXPECT_EQ(axis.moving(ms(761)), way == Way::up);
    EXPECT_EQ(axis.position(ms(1240)), 20u);
    EXPECT_FALSE(axis.moving(ms(1240)));
  }
}

TEST(BoundAxis, KeepsToAnArcThatComesDuringAMove) {
  Axis axis(1000, 100);
  axis.run(ms(0), Way::up, {1, 1});
  axis.bind(ms(20), Arc{0, 150});
  EXPECT_EQ(axis.position(ms(40)), 120u);
  EXPECT_EQ(axis.position(ms(9000)), 150u);
  axis.bind(ms(9000), {});
  EXPECT_FALSE(axis.bound());
  EXPECT_EQ(axis.position(ms(19'000)), 150u);  // it had stopped
}

TEST(BoundAxis, GoesOnToItsTargetWhenItIsFreed) {
  Axis axis(1000, 100);
  axis.bind(ms(0), Arc{0, 150});
  axis.reach(ms(0), Way::up, {1, 1}, 300);
  axis.bind(ms(20), {});
  EXPECT_EQ(axis.position(ms(9000)), 300u);
}

TEST(BoundAxis, StaysOnAnArcOfOneCount) {
  Axis axis(1000, 100);
  axis.bind(ms(0), Arc{100, 0});
  axis.run(ms(0), Way::up, {1, 1});
  axis.reach(ms(10), Way::down, {1, 1}, 700);
  EXPECT_EQ(axis.position(ms(9000)), 100u);
}

}  // namespace
