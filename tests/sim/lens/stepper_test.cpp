#include "sim/lens/stepper.h"

#include <gtest/gtest.h>

namespace {

using kelvo::sim::camera::Direction;
using kelvo::sim::camera::step_rate;
using kelvo::sim::camera::Stepper;
using kelvo::sim::camera::TickRate;
using kelvo::sim::camera::Time;

constexpr TickRate thousand_a_second{1'000, 1'000'000'000};

Stepper motor_with_travel(std::int32_t end_stop) {
  Stepper motor;
  motor.fit(end_stop);
  return motor;
}

TEST(StepRate, IsTheStepClockForPeriodOneInRangeZero) {
  // 4882.8125 Hz: one tick each 204800 ns.
  EXPECT_EQ(step_rate(0, 1).ticks, 1u);
  EXPECT_EQ(step_rate(0, 1).nanoseconds, 204'800u);
}

TEST(StepRate, IsDividedByThePeriodAndDoubledByEachRange) {
  EXPECT_EQ(step_rate(0, 781).nanoseconds, 204'800u * 781);
  EXPECT_EQ(step_rate(10, 90).ticks, 1024u);
  EXPECT_EQ(step_rate(10, 90).nanoseconds, 18'432'000u);
}

TEST(StepRate, DoesNotMoveWithPeriodZero) { EXPECT_FALSE(step_rate(3, 0).moves()); }

TEST(Stepper, StandsInTheMiddleOfItsTravelAtFirst) {
  const Stepper motor = motor_with_travel(100);
  EXPECT_EQ(motor.position(Time(0)), 0);
  EXPECT_FALSE(motor.running(Time(0)));
}

TEST(Stepper, MakesItsFirstTickOnePeriodAfterTheStart) {
  Stepper motor = motor_with_travel(100);
  motor.start(Time(500), {Direction::forward, 10, 1, thousand_a_second});
  EXPECT_EQ(motor.position(Time(500)), 0);
  EXPECT_EQ(motor.position(Time(1'000'499)), 0);
  EXPECT_EQ(motor.position(Time(1'000'500)), 1);
}

TEST(Stepper, MakesItsLastTickAtTheEndAndNoMore) {
  Stepper motor = motor_with_travel(100);
  motor.start(Time(0), {Direction::forward, 10, 1, thousand_a_second});
  EXPECT_EQ(motor.position(Time(9'999'999)), 9);
  EXPECT_TRUE(motor.running(Time(9'999'999)));
  EXPECT_EQ(motor.position(Time(10'000'000)), 10);
  EXPECT_FALSE(motor.running(Time(10'000'000)));
  EXPECT_EQ(motor.position(Time(1'000'000'000'000)), 10);
}

TEST(Stepper, RoundsTheTimeOfATickUpAndNeverDrifts) {
  Stepper motor = motor_with_travel(100);
  // Three ticks in ten nanoseconds: after 4, 7 and 10.
  motor.start(Time(0), {Direction::forward, 3, 1, {3, 10}});
  EXPECT_EQ(motor.position(Time(3)), 0);
  EXPECT_EQ(motor.position(Time(4)), 1);
  EXPECT_EQ(motor.position(Time(6)), 1);
  EXPECT_EQ(motor.position(Time(7)), 2);
  EXPECT_EQ(motor.position(Time(9)), 2);
  EXPECT_EQ(motor.position(Time(10)), 3);
}

TEST(Stepper, CountsSeveralTicksAsOneWhenItIsMicroStepped) {
  Stepper motor = motor_with_travel(100);
  motor.start(Time(0), {Direction::forward, 2, 8, thousand_a_second});
  EXPECT_EQ(motor.position(Time(7'999'999)), 0);
  EXPECT_EQ(motor.position(Time(8'000'000)), 1);
  EXPECT_EQ(motor.position(Time(15'999'999)), 1);
  EXPECT_EQ(motor.position(Time(16'000'000)), 2);
  EXPECT_FALSE(motor.running(Time(16'000'000)));
}

TEST(Stepper, MovesBackward) {
  Stepper motor = motor_with_travel(100);
  motor.start(Time(0), {Direction::backward, 5, 1, thousand_a_second});
  EXPECT_EQ(motor.position(Time(2'000'000)), -2);
  EXPECT_EQ(motor.position(Time(5'000'000)), -5);
}

TEST(Stepper, GoesOnFromWhereItStands) {
  Stepper motor = motor_with_travel(100);
  motor.start(Time(0), {Direction::forward, 5, 1, thousand_a_second});
  motor.start(Time(8'000'000), {Direction::backward, 2, 1, thousand_a_second});
  EXPECT_EQ(motor.position(Time(8'000'000)), 5);
  EXPECT_EQ(motor.position(Time(10'000'000)), 3);
}

TEST(Stepper, LeavesAMoveForTheNextOne) {
  Stepper motor = motor_with_travel(100);
  motor.start(Time(0), {Direction::forward, 50, 1, thousand_a_second});
  motor.start(Time(3'500'000), {Direction::forward, 1, 1, thousand_a_second});
  EXPECT_EQ(motor.position(Time(3'500'000)), 3);
  EXPECT_EQ(motor.position(Time(60'000'000)), 4);
}

TEST(Stepper, HaltsWhereItIs) {
  Stepper motor = motor_with_travel(100);
  motor.start(Time(0), {Direction::forward, 50, 1, thousand_a_second});
  motor.halt(Time(3'500'000));
  EXPECT_FALSE(motor.running(Time(3'500'000)));
  EXPECT_EQ(motor.position(Time(60'000'000)), 3);
}

TEST(Stepper, StopsAtEitherEndOfItsTravel) {
  Stepper motor = motor_with_travel(100);
  motor.start(Time(0), {Direction::forward, 150, 1, thousand_a_second});
  EXPECT_EQ(motor.position(Time(100'000'000)), 100);
  EXPECT_EQ(motor.position(Time(120'000'000)), 100);
  EXPECT_TRUE(motor.running(Time(120'000'000)));
  EXPECT_EQ(motor.position(Time(150'000'000)), 100);
  motor.start(Time(150'000'000), {Direction::backward, 500, 1, thousand_a_second});
  EXPECT_EQ(motor.position(Time(151'000'000)), 99);
  EXPECT_EQ(motor.position(Time(900'000'000)), -100);
}

TEST(Stepper, TellsWhatWasDrivenWhereItCouldNotFollow) {
  Stepper motor = motor_with_travel(100);
  motor.start(Time(0), {Direction::forward, 150, 1, thousand_a_second});
  EXPECT_EQ(motor.driven(Time(120'000'000)), 120u);
  motor.start(Time(130'000'000), {Direction::backward, 200, 1, thousand_a_second});
  EXPECT_EQ(motor.driven(Time(130'000'000)), 130u);
  EXPECT_EQ(motor.driven(Time(400'000'000)), 0u - 70);
  EXPECT_EQ(motor.position(Time(400'000'000)), -100);
  motor.halt(Time(400'000'000));
  EXPECT_EQ(motor.driven(Time(500'000'000)), 0u - 70);
}

TEST(Stepper, DoesNotMoveWithoutARate) {
  Stepper motor = motor_with_travel(100);
  motor.start(Time(0), {Direction::forward, 10, 1, {0, 1'000}});
  EXPECT_FALSE(motor.running(Time(0)));
  EXPECT_EQ(motor.position(Time(1'000'000'000)), 0);
  motor.start(Time(0), {Direction::forward, 10, 1, {1, 0}});
  EXPECT_EQ(motor.position(Time(1'000'000'000)), 0);
}

TEST(Stepper, DoesNotMoveByNothing) {
  Stepper motor = motor_with_travel(100);
  motor.start(Time(0), {Direction::forward, 0, 1, thousand_a_second});
  EXPECT_FALSE(motor.running(Time(0)));
  EXPECT_EQ(motor.position(Time(1'000'000'000)), 0);
}

TEST(Stepper, StaysWhereItIsWhenThereIsNoMotor) {
  Stepper motor;
  motor.start(Time(0), {Direction::forward, 10, 1, thousand_a_second});
  EXPECT_EQ(motor.position(Time(10'000'000)), 0);
}

TEST(Stepper, CanMakeItsLongestMoveAtItsSlowestRate) {
  Stepper motor = motor_with_travel(2'000'000);
  // 20 bits of counts, eight ticks each, 1023 periods of the step clock a tick: 20.4 days.
  motor.start(Time(0), {Direction::forward, 1'048'575, 8, step_rate(0, 1023)});
  const Time end(std::int64_t{1'048'575} * 8 * 204'800 * 1023);
  EXPECT_EQ(motor.position(end - Time(1)), 1'048'574);
  EXPECT_EQ(motor.position(end), 1'048'575);
}

TEST(Stepper, CanMakeItsLongestMoveAtTheHighestRange) {
  Stepper motor = motor_with_travel(2'000'000);
  motor.start(Time(0), {Direction::forward, 1'048'575, 8, step_rate(63, 1)});
  EXPECT_EQ(motor.position(Time(0)), 0);
  EXPECT_EQ(motor.position(Time(1)), 1'048'575);
}

}  // namespace
