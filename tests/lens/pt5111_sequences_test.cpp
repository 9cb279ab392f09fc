// The PT5111's initialisation, filter and stop.
#include <gtest/gtest.h>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

TEST(PT5111Stop, SendsThreeWordsAndClearsTheMotorPower) {
  Script script;
  SetLensType(7);
  cMotorPower = 1;
  EXPECT_EQ(stop(), 0);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_pt5111
spi_pt5111: CC 00
spi_pt5111: 3C 00
spi_pt5111: 7C 00
)");
  EXPECT_EQ(cMotorPower, 0);
}

TEST(PT5111Stop, ClearsTheMotorPowerWhereNothingIsSent) {
  Script script;
  SetLensType(9);
  cMotorPower = 1;
  EXPECT_EQ(stop(), 9);
  EXPECT_EQ(cMotorPower, 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(MotorPower, IsOffAtLoadAndOnAfterEachKindOfMove) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(cMotorPower, 0);
  SteppingMove(0, 0, 1, 1);
  EXPECT_EQ(cMotorPower, 1);
  stop();
  EXPECT_EQ(cMotorPower, 0);
  uSteppingMove(0x2000, 0, 1, 1);
  EXPECT_EQ(cMotorPower, 1);
}

TEST(MotorPower, FollowsMovesAndStopsThatFail) {
  Script script;
  SetLensType(7);
  script.fail(Call::open, 1, forever, ENOENT);
  SteppingMove(0, 0, 1, 1);
  EXPECT_EQ(cMotorPower, 1);
  stop();
  EXPECT_EQ(cMotorPower, 0);
}

TEST(IcrFilter, IsSteppedOnDe015) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(ICR_ON(20), 0);
  EXPECT_EQ(ICR_OFF(20), 0);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_pt5111
spi_pt5111: CF C0
spi_pt5111: 34 00
spi_pt5111: 74 00
spi_pt5111: 00 80
spi_pt5111: 04 14
spi_pt5111: 08 00
spi_pt5111: 0F 0D
spi_pt5111: 11 80
spi_pt5111: 3E 80
spi_pt5111: CF C0
spi_pt5111: 34 00
spi_pt5111: 74 00
spi_pt5111: 02 80
spi_pt5111: 04 14
spi_pt5111: 08 00
spi_pt5111: 0F 0D
spi_pt5111: 11 80
spi_pt5111: 3E 80
)");
  EXPECT_EQ(cMotorPower, 1);
}

TEST(IcrFilter, IsPulsedOnDf033WhateverTheSteps) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(ICR_ON(20), 0);
  EXPECT_EQ(ICR_OFF(70000), 0);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_renesas
lock
spi_renesas: 2F 02 CF C0 00 C0 00
unlock
lock
spi_renesas: 2F 02 41 40 00 B2 00
unlock
lock
spi_renesas: 2F 02 73 EF 00 93 00
unlock
lock
spi_renesas: 2F 02 7E 00 00 AF 00
unlock
usleep 200000
lock
spi_renesas: 2F 02 7C 00 00 AD 00
unlock
lock
spi_renesas: 2F 02 CF C0 00 C0 00
unlock
lock
spi_renesas: 2F 02 41 40 00 B2 00
unlock
lock
spi_renesas: 2F 02 71 EF 00 91 00
unlock
lock
spi_renesas: 2F 02 7E 00 00 AF 00
unlock
usleep 200000
lock
spi_renesas: 2F 02 7C 00 00 AD 00
unlock
)");
  EXPECT_EQ(cMotorPower, 0);
}

TEST(IcrFilter, OnlyWaitsOnOtherModules) {
  Script script;
  SetLensType(9);
  EXPECT_EQ(ICR_ON(20), 9);
  EXPECT_EQ(ICR_OFF(20), 9);
  SetLensType(-4);
  EXPECT_EQ(ICR_ON(20), -4);
  EXPECT_EQ(script.transcript(), "usleep 200000\nusleep 200000\nusleep 200000\n");
}

TEST(IcrFilter, EndsItsPulseThoughTheWaitIsInterrupted) {
  Script script;
  SetLensType(8);
  script.fail(Call::usleep, 1, 1, EINTR);
  EXPECT_EQ(ICR_OFF(0), 0);
  EXPECT_EQ(script.count(Call::transfer), 5);
}

TEST(PT5111_Initialize, SetsUpDe015AndStops) {
  Script script;
  SetLensType(7);
  cMotorPower = 1;
  EXPECT_EQ(PT5111_Initialize(), 0);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_pt5111
spi_pt5111: E3 80
spi_pt5111: C4 00
spi_pt5111: 28 00
spi_pt5111: 2C 00
spi_pt5111: 34 00
spi_pt5111: 74 00
spi_pt5111: C4 00
spi_pt5111: CF C0
spi_pt5111: CA 80
spi_pt5111: 3C 00
spi_pt5111: 81 80
spi_pt5111: D5 78
spi_pt5111: CA 00
usleep 500000
spi_pt5111: CA 80
spi_pt5111: CC 00
spi_pt5111: 3C 00
spi_pt5111: 7C 00
)");
  EXPECT_EQ(cMotorPower, 0);
}

TEST(PT5111_Initialize, SetsUpDf033AndSwitchesTheFilterOn) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(PT5111_Initialize(), 0);
  EXPECT_EQ(script.transcript_without({"lock", "unlock"}), R"(open /dev/spi_renesas
spi_renesas: 2F 02 E3 80 00 94 00
spi_renesas: 2F 02 C4 00 00 F5 00
spi_renesas: 2F 02 28 00 00 59 00
spi_renesas: 2F 02 2C 00 00 5D 00
spi_renesas: 2F 02 34 00 00 65 00
spi_renesas: 2F 02 74 00 00 A5 00
spi_renesas: 2F 02 C4 00 00 F5 00
spi_renesas: 2F 02 CF C0 00 C0 00
spi_renesas: 2F 02 3C 00 00 6D 00
spi_renesas: 2F 02 41 40 00 B2 00
spi_renesas: 2F 02 70 1F 00 C0 00
spi_renesas: 2F 02 CF C0 00 C0 00
spi_renesas: 2F 02 41 40 00 B2 00
spi_renesas: 2F 02 73 EF 00 93 00
spi_renesas: 2F 02 7E 00 00 AF 00
usleep 200000
spi_renesas: 2F 02 7C 00 00 AD 00
)");
}

TEST(PT5111_Initialize, LeavesTheMotorPowerAloneOnDf033) {
  Script script;
  SetLensType(8);
  cMotorPower = 1;
  PT5111_Initialize();
  EXPECT_EQ(cMotorPower, 1);
}

TEST(PT5111_Initialize, OnlyWaitsForThePulseOnOtherModules) {
  Script script;
  SetLensType(9);
  EXPECT_EQ(PT5111_Initialize(), 9);
  SetLensType(6);
  EXPECT_EQ(PT5111_Initialize(), 6);
  EXPECT_EQ(script.transcript(), "usleep 200000\nusleep 200000\n");
}

}  // namespace
