#include "sim/lens/reset_line.h"

#include <gtest/gtest.h>

namespace {

using kelvo::sim::camera::ResetLine;

constexpr char export_line[] = "echo 33 > /sys/class/gpio/export";
constexpr char make_output[] = "echo \"out\" > /sys/class/gpio/gpio33/direction";
constexpr char set_low[] = "echo 0 > /sys/class/gpio/gpio33/value";
constexpr char set_high[] = "echo 1 > /sys/class/gpio/gpio33/value";

TEST(ResetLine, IsPulledUpUntilItIsDriven) {
  ResetLine line;
  EXPECT_TRUE(line.high());
  line.run(export_line);
  EXPECT_TRUE(line.high());
}

TEST(ResetLine, IsDrivenLowAndHigh) {
  ResetLine line;
  EXPECT_EQ(line.run(export_line), 0);
  EXPECT_EQ(line.run(make_output), 0);
  EXPECT_EQ(line.run(set_low), 0);
  EXPECT_FALSE(line.high());
  EXPECT_EQ(line.run(set_high), 0);
  EXPECT_TRUE(line.high());
}

TEST(ResetLine, GoesLowAsSoonAsItIsAnOutput) {
  ResetLine line;
  line.run(export_line);
  line.run(make_output);
  EXPECT_FALSE(line.high());
}

TEST(ResetLine, IsExportedOnlyOnce) {
  ResetLine line;
  EXPECT_EQ(line.run(export_line), 0);
  EXPECT_EQ(line.run(export_line), 256);
  EXPECT_EQ(line.run(make_output), 0);
}

TEST(ResetLine, HasNoFilesBeforeItIsExported) {
  ResetLine line;
  EXPECT_EQ(line.run(make_output), 256);
  EXPECT_EQ(line.run(set_low), 256);
  EXPECT_TRUE(line.high());
}

TEST(ResetLine, TakesNoValueWhileItIsAnInput) {
  ResetLine line;
  line.run(export_line);
  EXPECT_EQ(line.run(set_low), 256);
  EXPECT_TRUE(line.high());
}

TEST(ResetLine, IsPulledUpAgainAsAnInput) {
  ResetLine line;
  line.run(export_line);
  line.run(make_output);
  EXPECT_EQ(line.run("echo in > /sys/class/gpio/gpio33/direction"), 0);
  EXPECT_TRUE(line.high());
}

TEST(ResetLine, CanBecomeAnOutputWithALevel) {
  ResetLine line;
  line.run(export_line);
  EXPECT_EQ(line.run("echo high > /sys/class/gpio/gpio33/direction"), 0);
  EXPECT_TRUE(line.high());
  EXPECT_EQ(line.run("echo low > /sys/class/gpio/gpio33/direction"), 0);
  EXPECT_FALSE(line.high());
}

TEST(ResetLine, RefusesADirectionThatThereIsNot) {
  ResetLine line;
  line.run(export_line);
  EXPECT_EQ(line.run("echo up > /sys/class/gpio/gpio33/direction"), 256);
  EXPECT_TRUE(line.high());
}

TEST(ResetLine, TakesAnyNumberButZeroAsHigh) {
  ResetLine line;
  line.run(export_line);
  line.run(make_output);
  EXPECT_EQ(line.run("echo 7 > /sys/class/gpio/gpio33/value"), 0);
  EXPECT_TRUE(line.high());
}

TEST(ResetLine, RefusesAValueThatIsNoNumber) {
  ResetLine line;
  line.run(export_line);
  line.run(make_output);
  line.run(set_high);
  EXPECT_EQ(line.run("echo low > /sys/class/gpio/gpio33/value"), 256);
  EXPECT_EQ(line.run("echo 0x > /sys/class/gpio/gpio33/value"), 256);
  EXPECT_EQ(line.run("echo > /sys/class/gpio/gpio33/value"), 256);
  EXPECT_TRUE(line.high());
}

TEST(ResetLine, CanExportNoOtherLine) {
  ResetLine line;
  EXPECT_EQ(line.run("echo 34 > /sys/class/gpio/export"), 256);
  EXPECT_EQ(line.run(make_output), 256);
}

TEST(ResetLine, DoesNotMindBlanksAndQuotes) {
  ResetLine line;
  EXPECT_EQ(line.run("echo  \"33\"  >/sys/class/gpio/export "), 0);
  EXPECT_EQ(line.run(export_line), 256);
}

TEST(ResetLine, KnowsNoOtherShellCommand) {
  ResetLine line;
  EXPECT_EQ(line.run("cat /sys/class/gpio/gpio33/value"), std::nullopt);
  EXPECT_EQ(line.run("echo 33 > /sys/class/gpio/unexport"), std::nullopt);
  EXPECT_EQ(line.run("printf 33 > /sys/class/gpio/export"), std::nullopt);
  EXPECT_EQ(line.run("echo 33"), std::nullopt);
  EXPECT_EQ(line.run(""), std::nullopt);
}

}  // namespace
