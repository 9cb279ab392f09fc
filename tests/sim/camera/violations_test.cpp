#include "sim/common/violations.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

using kelvo::sim::camera::Time;
using kelvo::sim::camera::Unit;
using kelvo::sim::camera::Violation;
using kelvo::sim::camera::Violations;

TEST(Violations, AreNoneAtFirst) {
  const Violations violations;
  EXPECT_EQ(violations.total(), 0u);
  EXPECT_TRUE(violations.listed().empty());
}

TEST(Violations, KeepTimeUnitFrameAndReason) {
  Violations violations;
  const std::array<std::uint8_t, 3> frame{0x01, 0xA2, 0xFF};
  violations.record(Time(1500), Unit::pt5111, frame, "%d is not %s", 3, "two");
  ASSERT_EQ(violations.listed().size(), 1u);
  const Violation& violation = violations.listed()[0];
  EXPECT_EQ(violation.time.count(), 1500);
  EXPECT_STREQ(name_of(violation.unit), "PT5111");
  EXPECT_EQ(violation.length, 3u);
  EXPECT_EQ(violation.shown, 3);
  EXPECT_EQ(violation.frame[0], 0x01);
  EXPECT_EQ(violation.frame[1], 0xA2);
  EXPECT_EQ(violation.frame[2], 0xFF);
  EXPECT_STREQ(violation.reason.data(), "3 is not two");
}

TEST(Violations, NameTheirUnits) {
  EXPECT_STREQ(name_of(Unit::lens_controller), "lens controller");
  EXPECT_STREQ(name_of(Unit::pt5111), "PT5111");
  EXPECT_STREQ(name_of(Unit::reset_line), "reset line");
  EXPECT_STREQ(name_of(Unit::i2c_bus), "I2C bus");
  EXPECT_STREQ(name_of(Unit::pan_controller), "pan controller");
  EXPECT_STREQ(name_of(Unit::tilt_controller), "tilt controller");
}

TEST(Violations, ShowTheFirstSixteenBytesOfALongFrame) {
  Violations violations;
  std::array<std::uint8_t, 1000> frame{};
  frame[15] = 15;
  frame[16] = 16;
  violations.record(Time(0), Unit::lens_controller, frame, "long");
  EXPECT_EQ(violations.listed()[0].length, 1000u);
  EXPECT_EQ(violations.listed()[0].shown, 16);
  EXPECT_EQ(violations.listed()[0].frame[15], 15);
}

TEST(Violations, CutALongReason) {
  Violations violations;
  violations.record(Time(0), Unit::lens_controller, {}, "%s", std::string(300, 'x').c_str());
  EXPECT_EQ(std::string(violations.listed()[0].reason.data()), std::string(95, 'x'));
}

TEST(Violations, AreCountedWhenTheListIsFull) {
  Violations violations;
  for (int i = 1; i <= 70; ++i) violations.record(Time(i), Unit::reset_line, {}, "number %d", i);
  EXPECT_EQ(violations.total(), 70u);
  ASSERT_EQ(violations.listed().size(), 64u);
  EXPECT_STREQ(violations.listed().front().reason.data(), "number 1");
  EXPECT_STREQ(violations.listed().back().reason.data(), "number 64");
}

}  // namespace
