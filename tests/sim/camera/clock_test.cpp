#include "sim/common/clock.h"

#include <gtest/gtest.h>

namespace {

using kelvo::sim::camera::Clock;
using kelvo::sim::camera::Time;
using namespace std::chrono_literals;

TEST(Clock, BeginsAtZero) { EXPECT_EQ(Clock{}.now(), 0ns); }

TEST(Clock, AdvancesByWhatItIsTold) {
  Clock clock;
  clock.advance(500ms);
  clock.advance(1ns);
  EXPECT_EQ(clock.now(), Time(500'000'001));
}

TEST(Clock, ReachesATimeThatLiesAhead) {
  Clock clock;
  clock.reach(20ms);
  EXPECT_EQ(clock.now(), 20ms);
}

TEST(Clock, NeverGoesBack) {
  Clock clock;
  clock.advance(20ms);
  clock.reach(19ms);
  EXPECT_EQ(clock.now(), 20ms);
  clock.advance(-5ms);
  EXPECT_EQ(clock.now(), 20ms);
}

}  // namespace
