#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kelvo.h"

namespace {

struct StepRateRow {
  int index;
  std::uint32_t value;
};

void expect_rows(const std::uint32_t (&table)[256], const std::vector<StepRateRow>& rows) {
  for (const StepRateRow& row : rows)
    EXPECT_EQ(table[row.index], row.value) << "index " << row.index;
}

TEST(StepRates, OfMicroStepsAt1320HaveTheirTellingRows) {
  expect_rows(PPS_512uStepPhase1320, {{0, 7091},
                                      {1, 6617},
                                      {8, 6249},
                                      {9, 8571},
                                      {36, 8294},
                                      {37, 10639},
                                      {50, 10537},
                                      {100, 10390},
                                      {128, 10357},
                                      {200, 10315},
                                      {254, 10299},
                                      {255, 10299}});
}

TEST(StepRates, OfMicroStepsHaveTheirTellingRows) {
  expect_rows(PPS_512uStepPhase, {{0, 5768},
                                  {1, 5444},
                                  {2, 5336},
                                  {3, 6468},
                                  {7, 7492},
                                  {15, 7330},
                                  {16, 8497},
                                  {50, 9419},
                                  {51, 10639},
                                  {100, 10445},
                                  {128, 10400},
                                  {200, 10343}});
}

TEST(StepRates, OfMicroStepsStayAtTheirLastValue) {
  EXPECT_NE(PPS_512uStepPhase[227], 10330U);
  for (int index = 228; index <= 255; ++index) {
    EXPECT_EQ(PPS_512uStepPhase[index], 10330U) << "index " << index;
  }
}

TEST(StepRates, OfOneTwoPhaseHaveTheirTellingRows) {
  expect_rows(PPS_1_2Phase, {{0, 1296},
                             {1, 648},
                             {2, 432},
                             {3, 324},
                             {4, 1542},
                             {6, 1394},
                             {7, 2696},
                             {33, 3377},
                             {34, 4688},
                             {102, 5522},
                             {103, 6942},
                             {137, 6745},
                             {138, 8362},
                             {161, 8192},
                             {200, 7993},
                             {254, 7819},
                             {255, 7819}});
}

TEST(StepRates, OfTwoTwoPhaseHaveTheirTellingRows) {
  expect_rows(PPS_2_2Phase,
              {{0, 781},    {1, 391},    {2, 260},    {3, 195},   {4, 156},    {5, 130},
               {6, 112},    {7, 98},     {8, 87},     {9, 78},    {10, 71},    {11, 65},
               {38, 20},    {39, 20},    {40, 5730},  {41, 5715}, {128, 5314}, {199, 5245},
               {200, 7666}, {201, 7663}, {254, 7560}, {255, 7559}});
}

TEST(StepRates, OfOneTwoPhaseAt800HaveTheirTellingRows) {
  expect_rows(PPS_1_2Phase_800,
              {{0, 1024},   {1, 781},    {2, 521},    {3, 391},    {4, 313},    {5, 260},
               {6, 223},    {7, 195},    {8, 174},    {9, 156},    {10, 4208},  {11, 4114},
               {12, 4034},  {50, 3317},  {100, 3196}, {126, 3170}, {127, 3170}, {128, 8718},
               {129, 8706}, {194, 8194}, {195, 8188}, {200, 8163}, {254, 7952}, {255, 7949}});
}

/// Where a table jumps upward; everywhere else it falls or stays.
std::vector<int> jumps(const std::uint32_t (&table)[256]) {
  std::vector<int> found;
  for (int index = 1; index < 256; ++index) {
    if (table[index] > table[index - 1]) found.push_back(index);
  }
  return found;
}

TEST(StepRates, JumpWhereARunBeginsAndFallEverywhereElse) {
  EXPECT_EQ(jumps(PPS_512uStepPhase1320), (std::vector<int>{9, 37}));
  EXPECT_EQ(jumps(PPS_512uStepPhase), (std::vector<int>{3, 7, 16, 36, 51}));
  EXPECT_EQ(jumps(PPS_1_2Phase), (std::vector<int>{4, 7, 14, 34, 57, 103, 138}));
  EXPECT_EQ(jumps(PPS_2_2Phase), (std::vector<int>{40, 200}));
  EXPECT_EQ(jumps(PPS_1_2Phase_800), (std::vector<int>{10, 128}));
}

TEST(StepRates, FitSixteenBits) {
  for (int index = 0; index < 256; ++index) {
    EXPECT_LT(PPS_512uStepPhase1320[index], 65536U);
    EXPECT_LT(PPS_512uStepPhase[index], 65536U);
    EXPECT_LT(PPS_1_2Phase[index], 65536U);
    EXPECT_LT(PPS_2_2Phase[index], 65536U);
    EXPECT_LT(PPS_1_2Phase_800[index], 65536U);
  }
}

TEST(StepRates, MayBeWrittenAndChangeNoNeighbour) {
  std::uint32_t* const tables[5] = {PPS_512uStepPhase1320, PPS_512uStepPhase, PPS_1_2Phase,
                                    PPS_2_2Phase, PPS_1_2Phase_800};
  for (std::uint32_t* const table : tables) {
    const std::uint32_t before = table[254];
    volatile std::uint32_t* const entry = &table[255];
    *entry = 0xFFFF0001;
    EXPECT_EQ(*entry, 0xFFFF0001U);
    EXPECT_EQ(table[254], before);
  }
  EXPECT_EQ(PPS_512uStepPhase[0], 5768U);
  EXPECT_EQ(PPS_1_2Phase[0], 1296U);
  EXPECT_EQ(PPS_2_2Phase[0], 781U);
  EXPECT_EQ(PPS_1_2Phase_800[0], 1024U);
}

// ---- every value by its rule: range * 1024 + the step clock in that range over the rate ----------
//
// The step clock is 5 MHz / 1024 = 78125 / 16 Hz, doubled by each range.

struct RangeStart {
  int first;
  int range;
};

int range_of(const std::vector<RangeStart>& runs, int index) {
  int range = -1;
  for (const RangeStart& run : runs) {
    if (index >= run.first) range = run.range;
  }
  return range;
}

struct Fraction {
  std::uint64_t over;
  std::uint64_t under;
};

std::uint64_t halves_up(const Fraction& f) { return (2 * f.over + f.under) / (2 * f.under); }
std::uint64_t cut(const Fraction& f) { return f.over / f.under; }

TEST(StepRates, OfMicroStepsAt1320FollowTheStepClock) {
  const std::vector<RangeStart> runs = {{0, 6}, {9, 8}, {37, 10}};
  for (int i = 0; i < 256; ++i) {
    const int r = range_of(runs, i);
    const auto n = static_cast<std::uint64_t>(i + 1);
    const Fraction period = {(std::uint64_t{78125} * 256) << r, std::uint64_t{16} * 64 * 1320 * n};
    EXPECT_EQ(PPS_512uStepPhase1320[i], static_cast<unsigned>(r) * 1024 + halves_up(period)) << i;
  }
}

TEST(StepRates, OfMicroStepsFollowTheStepClock) {
  const std::vector<RangeStart> runs = {{0, 5}, {3, 6}, {7, 7}, {16, 8}, {36, 9}, {51, 10}};
  for (int i = 0; i < 256; ++i) {
    const int r = range_of(runs, i);
    const auto n = static_cast<std::uint64_t>(i < 229 ? i + 1 : 229);
    const Fraction period = {(std::uint64_t{78125} * 255) << r, std::uint64_t{16} * 64 * 960 * n};
    EXPECT_EQ(PPS_512uStepPhase[i], static_cast<unsigned>(r) * 1024 + cut(period)) << i;
  }
}

TEST(StepRates, OfOneTwoPhaseFollowTheStepClock) {
  const std::vector<RangeStart> runs = {{0, 0},  {4, 1},  {7, 2},   {14, 3},
                                        {34, 4}, {57, 5}, {103, 6}, {138, 7}};
  for (int i = 0; i < 256; ++i) {
    const int r = range_of(runs, i);
    const auto n = static_cast<std::uint64_t>(i < 255 ? i + 1 : 255);
    const Fraction period = {(std::uint64_t{78125} * 255) << r, std::uint64_t{16} * 960 * n};
    EXPECT_EQ(PPS_1_2Phase[i], static_cast<unsigned>(r) * 1024 + cut(period)) << i;
  }
}

TEST(StepRates, OfTwoTwoPhaseFollowTheStepClock) {
  const std::vector<RangeStart> runs = {{0, 0}, {40, 5}, {200, 7}};
  for (int i = 0; i < 256; ++i) {
    const int r = range_of(runs, i);
    const auto n = static_cast<std::uint64_t>(i + 1);
    const Fraction period = {std::uint64_t{78125} << r, 100 * n};
    EXPECT_EQ(PPS_2_2Phase[i], static_cast<unsigned>(r) * 1024 + halves_up(period)) << i;
  }
}

TEST(StepRates, OfOneTwoPhaseAt800FollowTheStepClockButForTheFirst) {
  const std::vector<RangeStart> runs = {{0, 0}, {10, 3}, {128, 7}};
  EXPECT_EQ(PPS_1_2Phase_800[0], 1024U);
  for (int i = 1; i < 256; ++i) {
    const int r = range_of(runs, i);
    const auto n = static_cast<std::uint64_t>(i + 1);
    const Fraction period = {std::uint64_t{15625} << r, 10 * n};
    EXPECT_EQ(PPS_1_2Phase_800[i], static_cast<unsigned>(r) * 1024 + halves_up(period)) << i;
  }
}

}  // namespace
