// The argument of a Tasmere's current is no current: it chooses one of two profiles.
#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "pantilt/head.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

constexpr const char* pan_profile_a = R"(i2c 40: w 0C 10 00
i2c 40: w 0E 00 01
i2c 40: w 10 40 00
i2c 40: w 08 00 C0
i2c 40: w 4C 04
i2c 40: w 43 00
i2c 40: w 46 01 00
i2c 40: w 58 00 F3 33 33
i2c 40: w 97 01
i2c 40: w 95 01 00 01 00
i2c 40: w 51 07 00
i2c 40: w 56 01
i2c 40: w 83 01
i2c 40: w 53 01
)";
constexpr const char* pan_profile_b = R"(i2c 40: w 0C 08 00
i2c 40: w 0E 00 0B
i2c 40: w 10 28 00
i2c 40: w 08 00 C0
i2c 40: w 4C 01
i2c 40: w 43 00
i2c 40: w 46 02 66
i2c 40: w 58 00 F3 33 33
i2c 40: w 97 01
i2c 40: w 95 01 00 01 00
i2c 40: w 51 07 00
i2c 40: w 56 01
i2c 40: w 83 01
i2c 40: w 53 01
)";
constexpr const char* tilt_profile_a = R"(i2c 41: w 0C 10 00
i2c 41: w 0E 00 01
i2c 41: w 10 40 00
i2c 41: w 08 00 C0
i2c 41: w 4C 04
i2c 41: w 43 00
i2c 41: w 46 01 00
i2c 41: w 58 00 F3 33 33
i2c 41: w 97 01
i2c 41: w 95 01 00 01 00
i2c 41: w 51 07 00
i2c 41: w 56 01
i2c 41: w 83 01
i2c 41: w 53 01
)";
constexpr const char* tilt_profile_b = R"(i2c 41: w 0C 08 00
i2c 41: w 0E 00 01
i2c 41: w 10 18 00
i2c 41: w 08 00 C0
i2c 41: w 4C 01
i2c 41: w 43 00
i2c 41: w 46 02 66
i2c 41: w 58 00 F3 33 33
i2c 41: w 97 01
i2c 41: w 95 01 00 01 00
i2c 41: w 51 03 80
i2c 41: w 56 01
i2c 41: w 83 01
i2c 41: w 53 01
)";

TEST(CurrentProfile, IsAForOneAndBForAnythingElse) {
  Script script;
  tasmere_head(script);
  const HeadCall rows[] = {
      {"pan 1", [] { return SetPanCurrent(1); }, pan_profile_a},
      {"pan 0", [] { return SetPanCurrent(0); }, pan_profile_b},
      {"pan 2", [] { return SetPanCurrent(2); }, pan_profile_b},
      {"pan -1", [] { return SetPanCurrent(-1); }, pan_profile_b},
      {"pan 257", [] { return SetPanCurrent(257); }, pan_profile_b},
      {"tilt 1", [] { return SetTILTCurrent(1); }, tilt_profile_a},
      {"tilt 0", [] { return SetTILTCurrent(0); }, tilt_profile_b},
      {"tilt 2", [] { return SetTILTCurrent(2); }, tilt_profile_b},
      {"tilt 257", [] { return SetTILTCurrent(257); }, tilt_profile_b},
      {"tilt the last", [] { return SetTILTCurrent(UINT32_MAX); }, tilt_profile_b},
  };
  expect_on_tasmere(script, rows);
}

TEST(CurrentProfile, IsSentToItsEndThoughAWriteFails) {
  for (int nth = 1; nth <= 14; ++nth) {
    Script script;
    tasmere_head(script);
    script.fail(Call::i2c, nth, 1, ENXIO);
    EXPECT_EQ(SetPanCurrent(1), 0);
    EXPECT_TRUE(script.transcript().ends_with(nth == 14 ? "53 01 -> ENXIO\n" : "53 01\n"));
    EXPECT_EQ(script.count(Call::i2c), nth == 1 ? 15 : 14);  // the first one asked for the family
  }
}

TEST(CurrentProfile, IsSentAnewOnEveryCall) {
  Script script;
  tasmere_head(script);
  SetPanCurrent(1);
  SetPanCurrent(1);
  EXPECT_EQ(script.transcript(), std::string(pan_profile_a) + pan_profile_a);
}

}  // namespace
}  // namespace kelvo::test
