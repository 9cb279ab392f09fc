// The tilt axis's two conversions between a Vetra's counts and the common scale.
#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "pantilt/exact.h"
#include "pantilt/head.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

constexpr std::int32_t wrapped(std::int64_t number) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(number));
}

/// The position of a count; beyond the ends of the result, the end.
std::uint32_t exact_position(std::uint32_t count, std::int32_t range) {
  std::int32_t offset = wrapped(std::int64_t{count} - 3500);
  if (offset < 0) offset = wrapped(std::int64_t{offset} + range);
  const std::int32_t left = wrapped(std::int64_t{range} - offset);
  const std::int64_t position = truncated(exact_remainder(left, range));
  if (position < 0) return 0;
  return position > UINT32_MAX ? UINT32_MAX : static_cast<std::uint32_t>(position);
}

struct Known {
  std::uint32_t from;
  std::int32_t to;
};

TEST(TiltScale, TurnsCountsIntoPositions) {
  Script script;
  vetra_head(script);
  const Known rows[] = {{3500, 65535},  {3499, 3},      {12500, 32767},  {0, 12742},
                        {21499, 3},     {21500, 0},     {21501, 0},      {65535, 0},
                        {17999, 12746}, {18000, 12742}, {0x7FFFFFFF, 0}, {0x80000000, 0}};
  for (const Known& row : rows) {
    EXPECT_EQ(Vetra2Tasmere(row.from), static_cast<std::uint32_t>(row.to)) << row.from;
  }
  EXPECT_EQ(script.transcript(), "");
}

TEST(TiltScale, TurnsPositionsIntoCounts) {
  Script script;
  vetra_head(script);
  const Known rows[] = {{0, 3500},      {1, 3500},     {2, 3499},       {32767, 12500},
                        {32768, 12500}, {65534, 3500}, {65535, 3500},   {12741, 1},
                        {12742, 0},     {70000, 2275}, {131071, -14499}};
  for (const Known& row : rows) {
    EXPECT_EQ(Tasmere2Vetra(static_cast<std::int32_t>(row.from)), row.to) << row.from;
  }
  EXPECT_EQ(script.transcript(), "");
}

TEST(TiltScale, IsExactForEveryPosition) {
  Script script;
  vetra_head(script);
  for (std::int32_t pos = -2'000; pos <= 140'000; ++pos) {
    ASSERT_EQ(Tasmere2Vetra(pos), exact_tilt_count(pos, 18'000)) << pos;
  }
}

TEST(TiltScale, IsExactForEveryCount) {
  Script script;
  vetra_head(script);
  for (std::uint32_t count = 0; count <= 65'535; ++count) {
    ASSERT_EQ(Vetra2Tasmere(count), exact_position(count, 18'000)) << count;
  }
}

TEST(TiltScale, IsExactBeforeTheFamilyIsKnown) {
  for (std::uint32_t number = 0; number <= 65'535; ++number) {
    const auto pos = static_cast<std::int32_t>(number);
    ASSERT_EQ(Tasmere2Vetra(pos), exact_tilt_count(pos, 3'600)) << number;
    ASSERT_EQ(Vetra2Tasmere(number), exact_position(number, 3'600)) << number;
  }
}

TEST(TiltScale, HasTheShortRangeOnATasmere) {
  Script script;
  tasmere_head(script);
  GetTiltVersion();
  EXPECT_EQ(Tasmere2Vetra(32'768), exact_tilt_count(32'768, 3'600));
  EXPECT_EQ(Vetra2Tasmere(3'500), 65'535U);
  EXPECT_EQ(Vetra2Tasmere(5'300), 32'767U);
}

TEST(TiltScale, RoundsPositionsFarBeyondItToSinglePrecision) {
  Script script;
  vetra_head(script);
  for (const std::int32_t pos : {(1 << 24) + 1, (1 << 24) + 3, 123'456'789, INT32_MAX, -65'535,
                                 -(1 << 24) - 1, -123'456'789, INT32_MIN}) {
    EXPECT_EQ(Tasmere2Vetra(pos), exact_tilt_count(pos, 18'000)) << pos;
  }
}

TEST(TiltScale, WrapsCountsFarBeyondItIn32Bits) {
  Script script;
  vetra_head(script);
  // A count just above 2^31 + 3500 is as far below the zero as 32 bits go.
  EXPECT_EQ(Vetra2Tasmere(0x80000DAD), UINT32_MAX);
  for (const std::uint32_t count : {0xFFFFFFFFU, 0xFFFFF000U, 0xFFFF0000U, 0xFF000001U, 0xF0000000U,
                                    0x80000DABU, 0x80000DACU, 0x80000DADU, 0x7FFFFFFFU}) {
    EXPECT_EQ(Vetra2Tasmere(count), exact_position(count, 18'000)) << count;
  }
}

}  // namespace
}  // namespace kelvo::test
