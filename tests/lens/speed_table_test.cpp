#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"

namespace {

TEST(SpeedTable, HoldsTheRowsThatTheMovesRead) {
  constexpr struct {
    int row;
    int divider;
    int period;
  } rows[39] = {
      {217, 448, 657}, {218, 448, 675}, {219, 448, 694}, {220, 448, 714}, {221, 448, 735},
      {222, 448, 757}, {223, 448, 781}, {224, 448, 806}, {225, 448, 833}, {226, 448, 862},
      {227, 448, 892}, {228, 448, 925}, {229, 448, 961}, {230, 384, 500}, {231, 384, 520},
      {232, 384, 543}, {233, 384, 568}, {234, 384, 595}, {235, 384, 625}, {236, 384, 657},
      {237, 384, 694}, {238, 384, 735}, {239, 384, 781}, {240, 384, 833}, {241, 384, 892},
      {242, 384, 961}, {243, 320, 520}, {244, 320, 568}, {245, 320, 625}, {246, 320, 694},
      {247, 320, 781}, {248, 320, 892}, {249, 256, 520}, {250, 256, 625}, {251, 256, 781},
      {252, 192, 520}, {253, 192, 781}, {254, 128, 781}, {255, 0, 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(SpeedTable[row.row][0], row.divider) << "row " << row.row;
    EXPECT_EQ(SpeedTable[row.row][2], row.period) << "row " << row.row;
  }
}

/// Rows of one divider, between the periods of the first and of the last.
struct Step {
  int first;
  int last;
  int divider;
  int first_period;
  int last_period;
};
constexpr Step steps[9] = {
    {0, 54, 640, 784, 995},    {55, 154, 576, 500, 990},  {155, 204, 512, 500, 980},
    {205, 229, 448, 500, 961}, {230, 242, 384, 500, 961}, {243, 248, 320, 520, 892},
    {249, 251, 256, 520, 781}, {252, 253, 192, 520, 781}, {254, 254, 128, 781, 781},
};

TEST(SpeedTable, KeepsOneDividerThroughEachOfItsSteps) {
  int covered = 0;
  for (const Step& step : steps) {
    EXPECT_EQ(step.first, covered);
    for (int row = step.first; row <= step.last; ++row) {
      EXPECT_EQ(SpeedTable[row][0], step.divider) << "row " << row;
    }
    covered = step.last + 1;
  }
  EXPECT_EQ(covered, 255);
}

TEST(SpeedTable, RaisesThePeriodWithinEachStepAndDropsItAtTheNext) {
  for (const Step& step : steps) {
    EXPECT_EQ(SpeedTable[step.first][2], step.first_period) << "row " << step.first;
    EXPECT_EQ(SpeedTable[step.last][2], step.last_period) << "row " << step.last;
    for (int row = step.first + 1; row <= step.last; ++row) {
      EXPECT_GT(SpeedTable[row][2], SpeedTable[row - 1][2]) << "row " << row;
    }
    // The last step is one row, with the period of the row before it.
    if (step.first > 0 && step.first < 254) {
      EXPECT_LT(SpeedTable[step.first][2], SpeedTable[step.first - 1][2]) << "row " << step.first;
    }
  }
}

TEST(SpeedTable, FollowsTheStepClockInEveryRow) {
  // The highest level of each divider, 64 times 2 to 10.
  constexpr int highest[9] = {1, 3, 6, 12, 25, 50, 100, 200, 255};
  for (int row = 0; row <= 254; ++row) {
    const int level = 255 - row;
    int power = 0;
    while (level > highest[power]) ++power;
    EXPECT_EQ(SpeedTable[row][0], 64 * (power + 2)) << "row " << row;
    // 781.25 doubled `power` times, over the level.
    EXPECT_EQ(SpeedTable[row][2], (78125 << power) / (100 * level)) << "row " << row;
  }
}

TEST(SpeedTable, HasNothingInItsOtherFields) {
  for (int row = 0; row <= 255; ++row) {
    EXPECT_EQ(SpeedTable[row][1], 0) << "row " << row;
    EXPECT_EQ(SpeedTable[row][3], 0) << "row " << row;
  }
}

TEST(SpeedTable, FitsTheTenBitsOfAWord) {
  for (int row = 0; row <= 255; ++row) {
    EXPECT_LT(SpeedTable[row][0], 1024) << "row " << row;
    EXPECT_LT(SpeedTable[row][2], 1024) << "row " << row;
  }
}

TEST(SpeedTable, EndsWithARowOfZeros) {
  for (int field = 0; field < 4; ++field) EXPECT_EQ(SpeedTable[255][field], 0);
}

}  // namespace
