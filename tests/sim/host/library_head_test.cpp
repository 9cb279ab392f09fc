// What the real library commands the simulated head it reads back, on the scale of both families.
#include "sim/host/library_head.h"

#include <gtest/gtest.h>
#include <kelvo.h>

#include <cstdint>

#include "sim/host/library_calls.h"

namespace {

using kelvo::test::apart;
using kelvo::test::LibraryHead;
using kelvo::test::one_count;
using kelvo::test::pan_position;
using kelvo::test::pass_ms;
using kelvo::test::tilt_position;
using kelvo::test::travel_limits;

INSTANTIATE_TEST_SUITE_P(Families, LibraryHead, kelvo::test::both_families(),
                         kelvo::test::family_name);

TEST_P(LibraryHead, IsOfTheFamilyThatTheLibraryDetects) {
  EXPECT_EQ(GetMotorType(), GetParam().number);
  EXPECT_EQ(GetPanVersion(), vetra() ? 0x15 : 0x300);
  EXPECT_EQ(GetTiltVersion(), vetra() ? 0 : 0x300);
}

TEST_P(LibraryHead, StandsInTheMiddleCalibratedAndAtRest) {
  GetMotorType();
  EXPECT_EQ(pan_position(), 32'768);
  EXPECT_EQ(tilt_position(), vetra() ? 32'767 : 32'768);
  EXPECT_EQ(PanGetCaliStatus(), 0);
  EXPECT_EQ(TiltGetCaliStatus(), 0);
  EXPECT_EQ(GetPanStatus(), 0);
  EXPECT_EQ(GetTiltStatus(), 0);
}

TEST_P(LibraryHead, PansToWhereItIsTold) {
  for (const std::uint32_t target : {0u, 1u, 1000u, 32'768u, 50'000u, 65'534u, 65'535u, 12'345u}) {
    for (const std::int32_t direction : {0, 1}) {
      PanABSMove(direction, 7200, target);
      pass_ms(2600);
      EXPECT_EQ(GetPanStatus(), 0);
      EXPECT_LE(apart(pan_position(), target), one_count) << target << ' ' << pan_position();
    }
  }
}

TEST_P(LibraryHead, TiltsToWhereItIsTold) {
  for (const std::uint32_t target : {0u, 1u, 1000u, 32'768u, 50'000u, 65'534u, 65'535u, 12'345u}) {
    for (const std::int32_t direction : {0, 1}) {
      TiltABSMove(direction, 7200, target);
      pass_ms(2600);
      EXPECT_EQ(GetTiltStatus(), 0);
      EXPECT_LE(apart(tilt_position(), target), one_count) << target << ' ' << tilt_position();
    }
  }
}

TEST_P(LibraryHead, MovesUntilTheTargetIsReached) {
  // A quarter of the range at half speed takes 1 s, and the ramps as much as a quarter of a second more.
  PanABSMove(0, 3600, 32'768 + 16'384);
  pass_ms(1150);
  EXPECT_EQ(GetPanStatus(), -1);
  EXPECT_EQ(GetTiltStatus(), 0);
  pass_ms(110);
  EXPECT_EQ(GetPanStatus(), 0);
}

TEST_P(LibraryHead, RunsUpInDirectionZeroAndDownInOne) {
  GetMotorType();
  PanContinuousMove(0, 720);
  TiltContinuousMove(0, 720);
  EXPECT_EQ(GetPanStatus(), -1);
  EXPECT_EQ(GetTiltStatus(), -1);
  pass_ms(1000);
  EXPECT_NEAR(pan_position(), 32'768 + 3195, 60);
  EXPECT_NEAR(tilt_position(), 32'768 + 3195, 60);
  PanContinuousMove(1, 720);
  TiltContinuousMove(1, 1440);
  pass_ms(1000);
  EXPECT_NEAR(pan_position(), 32'768 + 246, 120);
  EXPECT_NEAR(tilt_position(), 32'768 - 2621, 120);
  PanStop();
  TiltStop();
  pass_ms(110);
  EXPECT_EQ(GetPanStatus(), 0);
  EXPECT_EQ(GetTiltStatus(), 0);
  const std::int64_t pan = pan_position();
  const std::int64_t tilt = tilt_position();
  pass_ms(1000);
  EXPECT_EQ(pan_position(), pan);
  EXPECT_EQ(tilt_position(), tilt);
}

TEST_P(LibraryHead, PansBetweenItsLimits) {
  for (const auto [start, end] : travel_limits) {
    PanLimitEn(0);
    PanABSMove(0, 7200, start);
    pass_ms(2600);
    PanLimitSet(static_cast<std::int32_t>(start), static_cast<std::int32_t>(end));
    PanLimitEn(1);
    EXPECT_EQ(GetPanLimitEn(), 1);
    PanContinuousMove(0, 7200);
    pass_ms(2600);
    EXPECT_EQ(GetPanStatus(), 0);
    EXPECT_LE(apart(pan_position(), end), one_count);
    PanContinuousMove(1, 7200);
    pass_ms(2600);
    EXPECT_LE(apart(pan_position(), start), one_count);
  }
  PanLimitEn(0);
  EXPECT_EQ(GetPanLimitEn(), 0);
}

TEST_P(LibraryHead, TiltsBetweenItsLimits) {
  for (const auto [start, end] : travel_limits) {
    TiltLimitEn(0);
    TiltABSMove(0, 7200, start);
    pass_ms(2600);
    TiltLimit(start, end);
    TiltLimitEn(1);
    EXPECT_EQ(GetTiltLimitEn(), 1);
    TiltContinuousMove(0, 7200);
    pass_ms(2600);
    EXPECT_EQ(GetTiltStatus(), 0);
    EXPECT_LE(apart(tilt_position(), end), one_count)
        << start << ' ' << end << ' ' << tilt_position();
    TiltContinuousMove(1, 7200);
    pass_ms(2600);
    EXPECT_LE(apart(tilt_position(), start), one_count);
  }
}

TEST_P(LibraryHead, StopsAtALimitOnTheWayToATargetBeyond) {
  PanLimitSet(20'000, 40'000);
  PanLimitEn(1);
  TiltLimit(20'000, 40'000);
  TiltLimitEn(1);
  PanABSMove(0, 7200, 45'000);
  TiltABSMove(0, 7200, 15'000);
  pass_ms(2600);
  EXPECT_LE(apart(pan_position(), 40'000), one_count);
  EXPECT_LE(apart(tilt_position(), 20'000), one_count);
}

TEST_P(LibraryHead, GivesItsLimitsBack) {
  PanLimitSet(20'000, 40'000);
  TiltLimit(20'000, 40'000);
  std::uint32_t start = 0;
  std::uint32_t end = 0;
  GetPanLimitPos(&start, &end);
  EXPECT_EQ(start, vetra() ? 12'507u : 20'000u);
  EXPECT_EQ(end, vetra() ? 7014u : 40'000u);
  GetTiltLimitPos(&start, &end);
  EXPECT_EQ(start, vetra() ? 10'514u : 20'000u);
  EXPECT_EQ(end, vetra() ? 16'007u : 20'000u);
}

TEST_P(LibraryHead, RestartsWithoutItsLimitsWhereItIs) {
  PanLimitSet(20'000, 40'000);
  PanLimitEn(1);
  PanContinuousMove(0, 7200);
  pass_ms(2600);
  PanReset();
  EXPECT_EQ(GetPanLimitEn(), 0);
  EXPECT_LE(apart(pan_position(), 40'000), one_count);
  PanABSMove(0, 7200, 60'000);
  pass_ms(2600);
  EXPECT_LE(apart(pan_position(), 60'000), one_count);
}

}  // namespace
