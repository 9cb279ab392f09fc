// Everything else that the real library sends to the simulated head, and what is held against a program.
#include <gtest/gtest.h>
#include <kelvo.h>

#include <array>
#include <cstdint>

#include "sim/host/library_calls.h"
#include "sim/host/library_head.h"

namespace {

using kelvo::test::apart;
using kelvo::test::InstalledCamera;
using kelvo::test::one_count;
using kelvo::test::pan_position;
using kelvo::test::pass_ms;
using kelvo::test::tilt_position;
using kelvo::test::travel_limits;
using namespace std::chrono_literals;

class LibraryHeadSettings : public kelvo::test::LibraryHead {};
INSTANTIATE_TEST_SUITE_P(Families, LibraryHeadSettings, kelvo::test::both_families(),
                         kelvo::test::family_name);

using Table = std::array<std::int32_t, 84>;

/// Each word is its own place.
Table places() {
  Table table{};
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<std::int32_t>(i);
  return table;
}

TEST_P(LibraryHeadSettings, IsRetunedForEveryMove) {
  const Table table = places();
  Init_Setup_PID(reinterpret_cast<const std::uint8_t*>(table.data()));
  for (const std::int32_t speed : {0, 10, 50, 140, 1000, 1510, 7200}) {
    for (const std::int32_t direction : {0, 1}) {
      PanABSMove(direction, speed, 40'000);
      TiltABSMove(direction, speed, 40'000);
      pass_ms(50);
      PanContinuousMove(direction, speed);
      TiltContinuousMove(direction, speed);
      pass_ms(50);
    }
  }
  Set_stop_PID();
}

TEST_P(LibraryHeadSettings, TakesEveryOtherCommandAndQuery) {
  std::uint32_t a = 7;
  std::uint32_t b = 7;
  PanLimitstep(200);
  TiltLimitstep(200);
  PanTurboMode(1);
  TiltTurboMode(0);
  for (const std::int32_t current : {0, 1, 500}) {
    SetPanCurrent(current);
    SetTILTCurrent(static_cast<std::uint32_t>(current));
  }
  SetPanWakeUp();
  SetTiltWakeUp();
  PanReset();
  TiltReset();
  SetVetraPanPID(16, 1, 2);
  SetVetraTiltPID(17, 1, 2);
  for (const std::uint32_t reg : {16u, 17u, 18u, 19u, 21u}) {
    GetVetraPanPID(reg, &a, &b);
    GetVetraTiltPID(reg, &a, &b);
  }
  PanPosPIDsetup(1, 2);
  TiltPosPIDsetup(1, 2);
  PanPIDsetup(1, 2, 3);
  TiltPIDsetup(1, 2, 3);
  GetPanHallSetting();
  GetTiltHallSetting();
  EXPECT_EQ(GetPanSleepMode(), 0);
  EXPECT_EQ(GetTiltSleepMode(), 0);
  EXPECT_EQ(GetPanProgState(), vetra() ? 0 : 1);
  EXPECT_EQ(GetTiltProgState(), vetra() ? 0 : 1);
  EXPECT_EQ(GetPanTemp(), vetra() ? 0 : 35);
  EXPECT_EQ(GetTiltTemp(), vetra() ? 0 : 35);
}

TEST_P(LibraryHeadSettings, IsSetUpByTheFactorySequence) {
  PanInitParam();
  TiltInitParam();
  EXPECT_EQ(GetPanLimitEn(), 0);
  EXPECT_EQ(GetPanHallSetting(), vetra() ? 0 : 1);
  EXPECT_EQ(GetTiltHallSetting(), vetra() ? 1 : 0);
  PanABSMove(0, 7200, 60'000);
  pass_ms(2600);
  EXPECT_LE(apart(pan_position(), 60'000), one_count);
  EXPECT_EQ(camera.now() > std::chrono::seconds(6), !vetra());
}

TEST_P(LibraryHeadSettings, IsOpenedByABoot) {
  ASSERT_EQ(Init30516_DF033(), 0);
  PanABSMove(0, 7200, 40'000);
  pass_ms(2600);
  EXPECT_LE(apart(pan_position(), 40'000), one_count);
}

TEST(LibraryVetraHead, GivesItsGainsBack) {
  InstalledCamera camera("clock=sleep head=vetra");
  Init_I2C();
  std::uint32_t a = 0;
  std::uint32_t b = 0;
  SetVetraPanPID(17, 0x1234, 0x56);
  GetVetraPanPID(17, &a, &b);
  EXPECT_EQ(a, 0x1234u);
  EXPECT_EQ(b, 0x56u);
  Pan_AccDec_setup(4'000'000, 40'000);
  GetVetraPanPID(19, &a, &b);
  EXPECT_EQ(a, 0x3Du);
  EXPECT_EQ(b, 0x900u);
  Tilt_AccDec_setup(4'000'000, 40'000);
  GetVetraTiltPID(21, &a, &b);
  EXPECT_EQ(a, 0u);
  EXPECT_EQ(b, 40'000u);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

TEST(LibraryVetraHead, GetsItsPauseBehindEveryTransfer) {
  InstalledCamera camera("clock=sleep head=vetra");
  Init_I2C();
  GetMotorType();
  const auto before = camera.now();
  const std::uint8_t data[2] = {0, 5};
  for (int i = 0; i < 10; ++i) SendI2C(41, 10, data, 3);
  // Start, four bytes of nine clocks, stop: 38 clocks of 2.5 us.
  EXPECT_EQ(camera.now() - before, 10 * (2ms + 95us));
  EXPECT_EQ(camera.state().violations().total(), 0u);
}

TEST(LibraryVetraHead, IsNotReadRightBeforeItsFamilyIsKnown) {
  InstalledCamera camera("clock=sleep head=vetra");
  Init_I2C();
  // As if the range had 3600 counts: position 9000 lies below it.
  pan_position();
  pan_position();
  EXPECT_EQ(GetMotorType(), 1);
  EXPECT_EQ(pan_position(), 32'768);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

TEST(LibraryTasmereHead, IsReadWithTheWrongRegisterBeforeItsFamilyIsKnown) {
  InstalledCamera camera("clock=sleep head=tasmere");
  Init_I2C();
  pan_position();
  ASSERT_EQ(camera.state().violations().total(), 1u);
  EXPECT_STREQ(camera.state().violations().listed()[0].reason.data(), "there is no register 50");
}

TEST(LibraryTasmereHead, HasNoRamps) {
  InstalledCamera camera("clock=sleep head=tasmere");
  Init_I2C();
  Pan_AccDec_setup(40'000, 40'000);
  const auto state = camera.state();
  ASSERT_EQ(state.violations().total(), 2u);
  EXPECT_STREQ(state.violations().listed()[0].reason.data(),
               "4 bytes for register 19 (set_limit_length), must be 2");
  EXPECT_STREQ(state.violations().listed()[1].reason.data(), "there is no register 21");
}

TEST(LibraryTasmereHead, SleepsUntilItIsWokenUp) {
  InstalledCamera camera("clock=sleep");
  Init_I2C();
  EXPECT_EQ(GetMotorType(), 2);
  Pan_SendI2C_Advanced(29, 1, 1);
  SendI2C(40, 35, nullptr, 1);
  PanReset();
  EXPECT_EQ(GetPanSleepMode(), 1);
  PanContinuousMove(0, 7200);
  pass_ms(500);
  EXPECT_EQ(pan_position(), 32'768);
  EXPECT_EQ(GetPanStatus(), 0);
  EXPECT_EQ(SetPanWakeUp(), -1);
  EXPECT_EQ(GetPanSleepMode(), 0);
  PanContinuousMove(0, 7200);
  pass_ms(500);
  // 8192 counts by its ramp in the 500 ms, and 3 in the 120 us that it takes to read them.
  EXPECT_EQ(pan_position(), 40'963);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

class HallTilt : public testing::Test {
 protected:
  HallTilt() {
    Init_I2C();
    Tilt_SendI2C_Advanced(78, 1, 1);
    EXPECT_EQ(GetTiltHallSetting(), 1);
  }
  ~HallTilt() override { EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report(); }

  InstalledCamera camera{"clock=sleep head=tasmere"};
};

TEST_F(HallTilt, TiltsToWhereItIsTold) {
  for (const std::uint32_t target : {0u, 1u, 1000u, 32'768u, 37'682u, 37'683u, 50'000u, 65'534u}) {
    for (const std::int32_t direction : {0, 1}) {
      TiltABSMove(direction, 7200, target);
      pass_ms(2600);
      EXPECT_LE(apart(tilt_position(), target), 1) << target << ' ' << tilt_position();
    }
  }
}

TEST_F(HallTilt, TiltsBetweenItsLimits) {
  for (const auto [start, end] : travel_limits) {
    TiltLimitEn(0);
    TiltABSMove(0, 7200, start);
    pass_ms(2600);
    TiltLimit(start, end);
    TiltLimitEn(1);
    TiltContinuousMove(0, 7200);
    pass_ms(2600);
    EXPECT_LE(apart(tilt_position(), end), 2) << start << ' ' << end << ' ' << tilt_position();
    TiltContinuousMove(1, 7200);
    pass_ms(2600);
    EXPECT_LE(apart(tilt_position(), start), 2) << start << ' ' << end << ' ' << tilt_position();
  }
}

TEST(LibraryHeadBus, HasNobodyAtAnotherAddress) {
  InstalledCamera camera;
  Init_I2C();
  const std::uint8_t data[1] = {0};
  EXPECT_EQ(SendI2C(42, 4, data, 2), -1);
  std::uint8_t bytes[2] = {9, 9};
  EXPECT_EQ(ReadI2C(39, 4, bytes, 2), -1);
  EXPECT_EQ(bytes[0], 0);
  ASSERT_EQ(camera.state().violations().total(), 2u);
  EXPECT_STREQ(camera.state().violations().listed()[1].reason.data(), "there is no slave 39");
}

TEST(LibraryHeadBus, KnowsNoIndexOfTwoBytes) {
  InstalledCamera camera;
  Init_I2C();
  const std::uint8_t more[1] = {0};
  std::uint8_t bytes[2] = {9, 9};
  EXPECT_EQ(ReadI2C_M(40, 4, more, 2, bytes, 2), 0);
  EXPECT_EQ(bytes[0], 0);
  EXPECT_EQ(camera.state().violations().total(), 1u);
}

}  // namespace
