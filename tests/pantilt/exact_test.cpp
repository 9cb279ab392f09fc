// The reference that the position scale and the gains are compared with.
#include "pantilt/exact.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace kelvo::test {
namespace {

double value_of(Exact number) {
  double value = static_cast<double>(number.significand);
  for (int i = 0; i < number.exponent; ++i) value *= 2;
  for (int i = 0; i > number.exponent; --i) value /= 2;
  return value;
}

TEST(ExactNumbers, KnowTheirFactors) {
  EXPECT_EQ(value_of(thousandth), 0.001);
  EXPECT_EQ(value_of(hundredth), 0.01);
  EXPECT_EQ(value_of(fiftieth), 0.02);
}

TEST(ExactNumbers, RoundToTheEvenOneOfTwoNeighbours) {
  const std::int64_t step = 2;  // of single precision above 2^24
  for (const std::int64_t odd : {(1 << 24) + 1, (1 << 24) + 3, (1 << 24) + 5}) {
    const std::int64_t below = odd - 1;
    EXPECT_EQ(truncated(to_single({odd})), below % (2 * step) == 0 ? below : below + step);
    EXPECT_EQ(truncated(to_single({-odd})), below % (2 * step) == 0 ? -below : -below - step);
  }
  EXPECT_EQ(truncated(to_single({(1 << 25) + 3})), (1 << 25) + 4);
  EXPECT_EQ(truncated(to_single({(1 << 25) + 1})), 1 << 25);
  EXPECT_EQ(truncated(to_single({(1 << 25) - 1})), 1 << 25);
}

TEST(ExactNumbers, RoundAsTheMachineDoes) {
  for (std::int64_t i = 1; i < 20'000; ++i) {
    const std::int64_t number = i * 104'729 * 7'919;
    EXPECT_EQ(value_of(to_single({number})), static_cast<double>(static_cast<float>(number)));
    EXPECT_EQ(value_of(to_double(over({number}, 65535))), static_cast<double>(number) / 65535.0);
    EXPECT_EQ(value_of(to_double(over({-number}, 17'999))),
              static_cast<double>(-number) / 17'999.0);
  }
}

TEST(ExactNumbers, AreCutTowardZero) {
  EXPECT_EQ(truncated({7, -1}), 3);
  EXPECT_EQ(truncated({-7, -1}), -3);
  EXPECT_EQ(truncated({-7, 2}), -28);
  EXPECT_EQ(truncated(minus({3}, {7, -1})), 0);
  EXPECT_EQ(truncated(minus({1, 3}, {9, -1})), 3);
}

TEST(ExactNumbers, GiveTheKnownPositions) {
  EXPECT_EQ(exact_tilt_count(0, 18'000), 3500);
  EXPECT_EQ(exact_tilt_count(65'535, 18'000), 3500);
  EXPECT_EQ(exact_tilt_count(32'768, 18'000), 12'500);
  EXPECT_EQ(truncated(exact_remainder(9000, 18'000)), 32'767);
  EXPECT_EQ(truncated(exact_remainder(1, 18'000)), 3);
  EXPECT_EQ(exact_gain(27, thousandth, 22'000), 4);
}

}  // namespace
}  // namespace kelvo::test
