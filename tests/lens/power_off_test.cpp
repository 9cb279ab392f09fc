// Cutting the power of the lens motors.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "kelvo.h"
#include "lens/module_case.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::calling;
using kelvo::test::expect_cases;
using kelvo::test::forever;
using kelvo::test::ModuleCase;
using kelvo::test::Script;
using kelvo::test::set_latch;

TEST(MotorPowerOff, WritesTheModulesHoldingCurrent) {
  const ModuleCase rows[] = {
      {8, calling<setZoom1PowerOff>, "spi_renesas: 2F 02 35 C0 00 26 00\n"},
      {9, calling<setZoom1PowerOff>, "spi_renesas: 0C 00 38 03 DF 26 00\n"},
      {7, calling<setZoom2PowerOff>, "spi_renesas: 0F 00 38 03 DF 29 00\n"},
      {8, calling<setZoom2PowerOff>, "spi_renesas: 0C 00 38 01 DF 24 00\n"},
      {8, calling<setZoom3PowerOff>, "spi_renesas: 1A 00 00 00 22 3C 00\n"},
      {7, calling<setFocusPowerOff>, "spi_renesas: 0F 00 18 03 DF 09 00\n"},
      {8, calling<setFocusPowerOff>, "spi_renesas: 0C 00 18 01 DF 04 00\n"},
      {9, calling<setFocusPowerOff>, "spi_renesas: 0C 00 18 03 DF 06 00\n"},
  };
  expect_cases(rows);
}

TEST(MotorPowerOff, LowersZoom1OfDe015BetweenTwoWaits) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(setZoom1PowerOff(), 0U);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_renesas
lock
spi_renesas: 3E 00 00 00 00 3E 00
unlock
usleep 10000
lock
spi_renesas: 3D 00 00 00 14 51 00
unlock
usleep 10000
lock
spi_renesas: 3E 00 00 00 01 3F 00
unlock
)");
}

TEST(MotorPowerOff, SendsNothingOnAModuleThatLacksTheMotor) {
  for (const int32_t variant : {6, 10, 0, -1}) {
    const ModuleCase rows[] = {
        {variant, calling<setZoom1PowerOff>, ""},
        {variant, calling<setZoom2PowerOff>, ""},
        {variant, calling<setZoom3PowerOff>, ""},
        {variant, calling<setFocusPowerOff>, ""},
    };
    expect_cases(rows);
  }
  const ModuleCase rows[] = {
      {9, calling<setZoom2PowerOff>, ""},
      {7, calling<setZoom3PowerOff>, ""},
      {9, calling<setZoom3PowerOff>, ""},
  };
  expect_cases(rows);
}

TEST(MotorPowerOff, OfIrisAndFilterHandsItsArgumentBack) {
  for (const int32_t variant : {7, 8, 9, 6}) {
    const ModuleCase rows[] = {
        {variant, calling<setIrisPowerOff, 0U>, "", 0},
        {variant, calling<setIrisPowerOff, 0xDEADBEEFU>, "", 0xDEADBEEF},
        {variant, calling<setICRPowerOff, 0U>, "", 0},
        {variant, calling<setICRPowerOff, 0xDEADBEEFU>, "", 0xDEADBEEF},
    };
    expect_cases(rows);
  }
}

/// Every power-off that sends something, and its result when nothing gets through.
const ModuleCase power_offs[] = {
    {7, calling<setZoom1PowerOff>, "lock\nunlock\nusleep 10000\nlock\nunlock\nusleep 10000\n",
     0xFF},
    // What becomes of a word for the driver chip is not passed on.
    {8, calling<setZoom1PowerOff>, "", 0},
    {9, calling<setZoom1PowerOff>, "", 0xFF},
    {7, calling<setZoom2PowerOff>, "", 0xFF},
    {8, calling<setZoom2PowerOff>, "", 0xFF},
    {8, calling<setZoom3PowerOff>, "", 0xFF},
    {7, calling<setFocusPowerOff>, "", 0xFF},
    {8, calling<setFocusPowerOff>, "", 0xFF},
    {9, calling<setFocusPowerOff>, "", 0xFF},
};

TEST(MotorPowerOff, ReturnsTheStatusOfItsLastWrite) {
  for (const ModuleCase& row : power_offs) {
    Script script;
    SetLensType(row.variant);
    script.fail(Call::transfer, 1, forever, EIO);
    EXPECT_EQ(row.call(), row.result) << "variant " << row.variant;
    EXPECT_EQ(GetLensType(), -1);
  }
}

TEST(MotorPowerOff, SendsNothingButWaitsWhileTheLatchIsSet) {
  for (const ModuleCase& row : power_offs) {
    Script script;
    SetLensType(row.variant);
    set_latch(script);
    EXPECT_EQ(row.call(), row.result) << "variant " << row.variant;
    EXPECT_EQ(script.transcript(), std::string(row.transcript) + "lock\nunlock\n");
  }
}

TEST(MotorPowerOff, OfZoom1OnDe015GoesOnAfterAWriteOrWaitThatFailed) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 2, 1, EIO);  // made good by its retry
  script.fail(Call::usleep, 1, forever, EINTR);
  EXPECT_EQ(setZoom1PowerOff(), 0U);
  EXPECT_EQ(script.transcript_without({"open", "lock", "unlock"}),
            R"(spi_renesas: 3E 00 00 00 00 3E 00
usleep 10000 -> EINTR
spi_renesas: 3D 00 00 00 14 51 00 -> EIO
spi_renesas: 3D 00 00 00 14 51 00
usleep 10000 -> EINTR
spi_renesas: 3E 00 00 00 01 3F 00
)");
}

TEST(MotorPowerOff, LeavesTheSwitchOfTheDriverChipAlone) {
  Script script;
  SetLensType(8);
  cMotorPower = 1;
  setZoom1PowerOff();
  EXPECT_EQ(cMotorPower, 1);
}

/// The waits of one move.
std::string waits(Script& script, uint32_t (*move)()) {
  script.transcript();
  move();
  return script.transcript_without({"lock", "unlock", "spi_renesas", "open"});
}

struct Motor {
  int32_t variant;
  uint32_t (*move)();
  uint32_t (*power_off)();
  const char* settling;
};
const Motor motors[] = {
    {7, [] { return setZoom1Forward(9, 9); }, setZoom1PowerOff, "usleep 50000\n"},
    {7, [] { return setZoom1uForward(9, 9); }, setZoom1PowerOff, "usleep 50000\nusleep 50000\n"},
    {9, [] { return setZoom1Backward(9, 9); }, setZoom1PowerOff, "usleep 5000\n"},
    {7, [] { return setZoom2Forward(9, 9); }, setZoom2PowerOff, "usleep 50000\n"},
    {8, [] { return setZoom2Backward512(9, 9); }, setZoom2PowerOff, "usleep 5000\n"},
    {8, [] { return setZoom3Forward(9, 9); }, setZoom3PowerOff, "usleep 5000\n"},
    {7, [] { return setFocusForward(9, 9); }, setFocusPowerOff, "usleep 50000\n"},
    {8, [] { return setFocusBackward(9, 9); }, setFocusPowerOff, "usleep 10000\n"},
    {9, [] { return setFocusForward(9, 9); }, setFocusPowerOff, "usleep 10000\n"},
};

void power_off_everything() {
  for (const auto power_off :
       {setZoom1PowerOff, setZoom2PowerOff, setZoom3PowerOff, setFocusPowerOff}) {
    power_off();
  }
}

TEST(MotorPowerOff, MakesTheMotorsNextMoveWaitAgain) {
  for (const Motor& motor : motors) {
    Script script;
    SetLensType(motor.variant);
    power_off_everything();
    EXPECT_EQ(waits(script, motor.move), motor.settling) << "variant " << motor.variant;
    EXPECT_EQ(waits(script, motor.move), "") << "variant " << motor.variant;
    motor.power_off();
    EXPECT_EQ(waits(script, motor.move), motor.settling) << "variant " << motor.variant;
  }
}

TEST(MotorPowerOff, MakesNoOtherMotorWait) {
  for (const Motor& motor : motors) {
    for (const auto power_off :
         {setZoom1PowerOff, setZoom2PowerOff, setZoom3PowerOff, setFocusPowerOff}) {
      if (power_off == motor.power_off) continue;
      Script script;
      SetLensType(motor.variant);
      motor.move();
      power_off();
      EXPECT_EQ(waits(script, motor.move), "") << "variant " << motor.variant;
    }
  }
}

TEST(MotorPowerOff, MakesTheNextMoveWaitThoughNothingWasSent) {
  for (const Motor& motor : motors) {
    Script script;
    SetLensType(motor.variant);
    motor.move();
    set_latch(script);
    motor.power_off();
    SetLensType(motor.variant);
    EXPECT_EQ(waits(script, motor.move), motor.settling) << "variant " << motor.variant;
    SetLensType(6);
    motor.power_off();
    SetLensType(motor.variant);
    EXPECT_EQ(waits(script, motor.move), motor.settling) << "variant " << motor.variant;
  }
}

}  // namespace
