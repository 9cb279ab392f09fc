#include "tools/kelvoctl/common/numbers.h"

#include <gtest/gtest.h>

namespace kelvo::ctl {
namespace {

using std::chrono::microseconds;

TEST(Number, IsDecimalOrHexadecimal) {
  EXPECT_EQ(parse_number("0"), 0);
  EXPECT_EQ(parse_number("65535"), 65535);
  EXPECT_EQ(parse_number("0x1f"), 31);
  EXPECT_EQ(parse_number("0XFF"), 255);
  EXPECT_EQ(parse_number("-200"), -200);
  EXPECT_EQ(parse_number("-0x10"), -16);
}

TEST(Number, IsNotOctal) { EXPECT_EQ(parse_number("010"), 10); }

TEST(Number, ReachesAsFarAsTheWireDoes) {
  EXPECT_EQ(parse_number("4294967295"), 4294967295);
  EXPECT_EQ(parse_number("4294967296"), std::nullopt);
  EXPECT_EQ(parse_number("0x100000000"), std::nullopt);
}

TEST(Number, IsNothingElse) {
  for (const char* const text :
       {"", "-", "--1", "+1", "0x", "x1", "1x", "1 ", " 1", "1.5", "0x-1"}) {
    EXPECT_EQ(parse_number(text), std::nullopt) << text;
  }
}

TEST(Duration, HasAUnit) {
  EXPECT_EQ(parse_duration("40us"), microseconds(40));
  EXPECT_EQ(parse_duration("250ms"), microseconds(250'000));
  EXPECT_EQ(parse_duration("1.5s"), microseconds(1'500'000));
  EXPECT_EQ(parse_duration("0.25ms"), microseconds(250));
  EXPECT_EQ(parse_duration("2.0000019s"), microseconds(2'000'001));
  EXPECT_EQ(parse_duration("0s"), microseconds(0));
  EXPECT_EQ(parse_duration("86400s"), microseconds(86'400'000'000));
}

TEST(Duration, IsNothingElse) {
  for (const char* const text :
       {"", "5", "s", "ms", "-1s", "1 s", "1e3s", "0x5s", "1m", "86401s", "nans", "infs", "1.s",
        ".5s", "1.2.3s", "1.-2s", "99999999999999999999s"}) {
    EXPECT_EQ(parse_duration(text), std::nullopt) << text;
  }
}

TEST(Duration, IsWrittenInItsLargestUnit) {
  EXPECT_EQ(duration_text(microseconds(0)), "0us");
  EXPECT_EQ(duration_text(microseconds(40)), "40us");
  EXPECT_EQ(duration_text(microseconds(1'500'000)), "1500ms");
  EXPECT_EQ(duration_text(microseconds(2'000'000)), "2s");
}

}  // namespace
}  // namespace kelvo::ctl
