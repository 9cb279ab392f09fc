#include "tools/kelvoctl/lens/motor_table.h"

#include <gtest/gtest.h>

#include <string>

namespace kelvo::ctl {
namespace {

constexpr LensModule modules[] = {LensModule::de015, LensModule::df033, LensModule::t5391};

TEST(FoldedCount, RunsDownInTwoHalves) {
  EXPECT_EQ(folded_count(0), 0x3FFFU);
  EXPECT_EQ(folded_count(16383), 0U);
  EXPECT_EQ(folded_count(16384), 0x7FFFU);
  EXPECT_EQ(folded_count(32767), 0x4000U);
}

TEST(FoldedCount, MakesTheOtherOfEitherAndNeverTheSame) {
  for (std::uint32_t count = 0; count <= greatest_count(Preset::folded); ++count) {
    ASSERT_EQ(folded_count(folded_count(count)), count);
    ASSERT_NE(folded_count(count), count);
  }
}

TEST(GreatestCount, IsWhatTheCounterHolds) {
  EXPECT_EQ(greatest_count(Preset::none), 0U);
  EXPECT_EQ(greatest_count(Preset::zero), 0U);
  EXPECT_EQ(greatest_count(Preset::word), 65535U);
  EXPECT_EQ(greatest_count(Preset::folded), 32767U);
  EXPECT_EQ(greatest_count(Preset::whole), 2147483647U);
}

TEST(MotorTable, HasTheMotorsOfEachModule) {
  const auto fitted = [](LensModule module) {
    std::string names;
    for (const Motor& motor : motor_table) {
      if (motor.is_on(module)) names += std::string(motor.name) + " ";
    }
    return names;
  };
  EXPECT_EQ(fitted(LensModule::de015), "zoom1 zoom2 focus ");
  EXPECT_EQ(fitted(LensModule::df033), "zoom1 zoom2 zoom3 focus ");
  EXPECT_EQ(fitted(LensModule::t5391), "zoom1 focus ");
}

TEST(MotorTable, HasWhatHomingNeedsForEveryMotorThatIsFitted) {
  for (const LensModule module : modules) {
    for (const Motor& motor : motor_table) {
      EXPECT_EQ(motor.is_on(module), motor.sensor.on(module) != no_sensor) << motor.name;
      EXPECT_EQ(motor.is_on(module), motor.slow.on(module) != 0) << motor.name;
    }
  }
}

TEST(MotorTable, GivesEachPhotoInterrupterToOneMotor) {
  for (const LensModule module : modules) {
    unsigned seen = 0;
    for (const Motor& motor : motor_table) {
      if (!motor.is_on(module)) continue;
      const unsigned bit = 1U << motor.sensor.on(module);
      EXPECT_EQ(seen & bit, 0U) << motor.name;
      seen |= bit;
    }
  }
}

}  // namespace
}  // namespace kelvo::ctl
