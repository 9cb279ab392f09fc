#include "sim/lens/pt5111.h"

#include <gtest/gtest.h>

#include "sim/camera/bench.h"

namespace {

using kelvo::sim::camera::Output;
using kelvo::sim::camera::Pt5111;
using kelvo::sim::camera::Time;
using kelvo::test::Bench;

constexpr auto de015 = kelvo::wire::LensModule::de015;
constexpr auto df033 = kelvo::wire::LensModule::df033;

/// A chip with power and motors that have a long way to go.
Pt5111 powered_chip() {
  Pt5111 chip;
  chip.fit(df033);
  chip.receive(Time(0), 0xCFC0);
  return chip;
}

void send(Pt5111& chip, Time now, std::initializer_list<std::uint16_t> words) {
  for (const std::uint16_t word : words) chip.receive(now, word);
}

TEST(Pt5111, TakesAWordAsARegisterAndItsValue) {
  Pt5111 chip;
  chip.receive(Time(0), 0xD578);
  EXPECT_EQ(chip.read(53), 0x178);
  chip.receive(Time(0), 0x05DC);
  EXPECT_EQ(chip.read(1), 0x1DC);
}

TEST(Pt5111, MovesMotorAFromTheRunWord) {
  Pt5111 chip = powered_chip();
  // 1500 steps backward, divider 7, period 657: a step each 204.8 us * 657 / 32 = 4.2048 ms.
  send(chip, Time(0), {0x3400, 0x7400, 0x0280, 0x05DC, 0x0801, 0x0E91, 0x11C0, 0x3E80});
  EXPECT_EQ(chip.motor_a().position(Time(4'204'799)), 0);
  EXPECT_EQ(chip.motor_a().position(Time(4'204'800)), -1);
  EXPECT_EQ(chip.motor_a().position(Time(1'500 * 4'204'800LL - 1)), -1499);
  EXPECT_EQ(chip.motor_a().position(Time(1'500 * 4'204'800LL)), -1500);
  EXPECT_FALSE(chip.motor_a().running(Time(1'500 * 4'204'800LL)));
  EXPECT_EQ(chip.motor_b().position(Time(1'500 * 4'204'800LL)), 0);
}

TEST(Pt5111, MovesMotorBWithTheSameWordsFromItsOwnBlock) {
  Pt5111 chip;
  chip.fit(de015);
  // 40 steps forward, divider 6, period 781: a step each 204.8 us * 781 / 16 = 9.9968 ms.
  send(chip, Time(0), {0xCFC0, 0x3400, 0x7400, 0x4080, 0x4428, 0x4800, 0x4F0D, 0x5180, 0x7E80});
  EXPECT_EQ(chip.motor_b().position(Time(9'996'799)), 0);
  EXPECT_EQ(chip.motor_b().position(Time(9'996'800)), 1);
  EXPECT_EQ(chip.motor_b().position(Time(40 * 9'996'800LL)), 40);
  EXPECT_EQ(chip.motor_a().position(Time(40 * 9'996'800LL)), 0);
}

TEST(Pt5111, MovesAlikeInTheOtherSteppingMode) {
  Pt5111 chip = powered_chip();
  send(chip, Time(0), {0x0000, 0x0402, 0x0800, 0x0E91, 0x11C0, 0x3E80});
  EXPECT_EQ(chip.motor_a().position(Time(2 * 4'204'800LL)), 2);
}

TEST(Pt5111, CountsTheStepClockAsItIsWithDividerTwo) {
  Pt5111 chip = powered_chip();
  // Divider 2, period 781: a step each 159.9488 ms.
  send(chip, Time(0), {0x0080, 0x0405, 0x0800, 0x0F0D, 0x1080, 0x3E80});
  EXPECT_EQ(chip.motor_a().position(Time(159'948'799)), 0);
  EXPECT_EQ(chip.motor_a().position(Time(159'948'800)), 1);
}

TEST(Pt5111, CountsTheStepClockSlowerWithASmallerDivider) {
  Pt5111 chip = powered_chip();
  // Divider 0, period 1: a step each 4 * 204.8 us.
  send(chip, Time(0), {0x0080, 0x0405, 0x0800, 0x0C01, 0x1000, 0x3E80});
  EXPECT_EQ(chip.motor_a().position(Time(819'199)), 0);
  EXPECT_EQ(chip.motor_a().position(Time(819'200)), 1);
}

TEST(Pt5111, DoesNotMoveWithPeriodZero) {
  Pt5111 chip = powered_chip();
  send(chip, Time(0), {0x0080, 0x0405, 0x0800, 0x0C00, 0x1000, 0x3E80});
  EXPECT_EQ(chip.motor_a().position(Time(60'000'000'000)), 0);
}

TEST(Pt5111, DoesNotMoveWithoutPower) {
  Pt5111 chip;
  chip.fit(df033);
  EXPECT_FALSE(chip.powered());
  send(chip, Time(0), {0x0080, 0x0405, 0x0800, 0x0E91, 0x11C0, 0x3E80});
  EXPECT_EQ(chip.motor_a().position(Time(60'000'000'000)), 0);
}

TEST(Pt5111, StopsBothMotorsWhenItsPowerGoes) {
  Pt5111 chip;
  chip.fit(de015);
  send(chip, Time(0), {0xCFC0, 0x0080, 0x0464, 0x0800, 0x0E91, 0x11C0, 0x3E80});
  send(chip, Time(0), {0x4280, 0x4464, 0x4800, 0x4E91, 0x51C0, 0x7E80});
  chip.receive(Time(10 * 4'204'800LL), 0xCC00);
  EXPECT_EQ(chip.motor_a().position(Time(60'000'000'000)), 10);
  EXPECT_EQ(chip.motor_b().position(Time(60'000'000'000)), -10);
}

TEST(Pt5111, StopsOneMotorByItsOwnWord) {
  Pt5111 chip;
  chip.fit(de015);
  send(chip, Time(0), {0xCFC0, 0x0080, 0x0464, 0x0800, 0x0E91, 0x11C0, 0x3E80});
  send(chip, Time(0), {0x4280, 0x4464, 0x4800, 0x4E91, 0x51C0, 0x7E80});
  chip.receive(Time(10 * 4'204'800LL), 0x3C00);
  EXPECT_EQ(chip.motor_a().position(Time(60'000'000'000)), 10);
  EXPECT_EQ(chip.motor_b().position(Time(60'000'000'000)), -100);
  chip.receive(Time(60'000'000'000), 0x7E80);
  chip.receive(Time(60'000'000'000 + 5 * 4'204'800LL), 0x7C00);
  EXPECT_EQ(chip.motor_b().position(Time(120'000'000'000)), -105);
}

TEST(Pt5111, DoesNotTakeAFilterPulseForAMove) {
  Pt5111 chip = powered_chip();
  send(chip, Time(0), {0x4140, 0x73EF, 0x4464, 0x4C64, 0x51C0, 0x7E00});
  EXPECT_FALSE(chip.motor_b().running(Time(0)));
}

TEST(Pt5111, HasADeviceOfItsOwnOnDe015) {
  Bench bench;
  bench.boot(7);
  for (const auto& word : std::vector<kelvo::test::Frame>{
           {0xCF, 0xC0}, {0x40, 0x80}, {0x44, 0x28}, {0x48, 0x00}, {0x4F, 0x0D}, {0x51, 0x80}}) {
    EXPECT_EQ(bench.send_word(word), (kelvo::test::Frame{0x00, 0x00}));
  }
  bench.send_word({0x7E, 0x80});
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(Output::pt5111_b), 40);
  EXPECT_EQ(bench.camera.pt5111_words(), 7u);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Pt5111, StandsBehindTheLensControllerOnDf033) {
  Bench bench;
  bench.boot(8);
  for (const int word : {0xCFC0, 0x3400, 0x7400, 0x0280, 0x05DC, 0x0801, 0x0E91, 0x11C0, 0x3E80}) {
    bench.command(47, 2, static_cast<std::uint8_t>(word >> 8), static_cast<std::uint8_t>(word), 0);
  }
  bench.wait_ms(6308);
  EXPECT_EQ(bench.position(Output::pt5111_a), -1500);
  EXPECT_EQ(bench.camera.pt5111_words(), 0u);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Pt5111, IsNotReachedOnItsOwnDeviceOnDf033) {
  Bench bench;
  bench.boot(8);
  EXPECT_EQ(bench.send_word({0xD5, 0x78}), (kelvo::test::Frame{0x00, 0x00}));
  EXPECT_EQ(bench.violations(),
            (std::vector<std::string>{
                "PT5111 | D5 78 | this module has no PT5111 on a device of its own"}));
  EXPECT_EQ(bench.camera.pt5111().read(53), 0);
}

TEST(Pt5111, TakesWordsOfTwoBytesOnly) {
  Bench bench;
  bench.send_word({0xD5});
  bench.send_word({0xD5, 0x78, 0x00});
  EXPECT_EQ(bench.violations(),
            (std::vector<std::string>{"PT5111 | D5 | a word of 1 bytes, must be 2",
                                      "PT5111 | D5 78 00 | a word of 3 bytes, must be 2"}));
  EXPECT_EQ(bench.camera.pt5111().read(53), 0);
}

}  // namespace
