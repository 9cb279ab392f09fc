// The register path: counts, periods and failures.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

/// The writes of this register in what was sent since the last look, one a line.
std::string writes(Script& script, const std::string& reg) {
  const std::string text = script.transcript();
  std::string found;
  for (std::size_t at = 0; at < text.size(); at = text.find('\n', at) + 1) {
    const std::string line = text.substr(at, text.find('\n', at) - at);
    const std::string device = "spi_renesas: ";
    if (line.substr(0, device.size()) != device) continue;
    const std::string frame = line.substr(device.size());
    if (frame.substr(6, 2) == reg) found += frame + "\n";
  }
  return found;
}

/// The frames of a count's two halves, which go to these registers.
std::string count(Script& script, const std::string& low_register,
                  const std::string& high_register) {
  const std::string text = script.transcript();
  const std::size_t low = text.find(" 00 " + low_register + " ");
  const std::size_t high = text.find(" 00 " + high_register + " ", low);
  if (low == std::string::npos || high == std::string::npos) return text;
  return text.substr(low - 2, 20) + ", " + text.substr(high - 2, 20);
}

TEST(RegisterCount, OfFocusIsEightfoldAndLosesWhatLiesAboveBitNineteen) {
  struct Row {
    uint32_t steps;
    const char* sent;
  };
  constexpr Row rows[] = {
      {0, "0F 00 02 00 00 11 00, 0F 00 04 00 00 13 00"},
      {1, "0F 00 02 00 08 19 00, 0F 00 04 00 00 13 00"},
      {127, "0F 00 02 03 F8 0C 00, 0F 00 04 00 00 13 00"},
      {128, "0F 00 02 00 00 11 00, 0F 00 04 00 01 14 00"},
      {200, "0F 00 02 02 40 53 00, 0F 00 04 00 01 14 00"},
      {131071, "0F 00 02 03 F8 0C 00, 0F 00 04 03 FF 15 00"},
      {131072, "0F 00 02 00 00 11 00, 0F 00 04 00 00 13 00"},
      {0x20000001, "0F 00 02 00 08 19 00, 0F 00 04 00 00 13 00"},
      {0xFFFFFFFF, "0F 00 02 03 F8 0C 00, 0F 00 04 03 FF 15 00"},
  };
  Script script;
  SetLensType(7);
  for (const Row& row : rows) {
    setFocusForward(0, row.steps);
    EXPECT_EQ(count(script, "02", "04"), row.sent) << row.steps;
  }
}

TEST(RegisterCount, OfFocusOnT5391IsNotScaled) {
  struct Row {
    uint32_t steps;
    const char* sent;
  };
  constexpr Row rows[] = {
      {0, "0C 00 02 00 00 0E 00, 0C 00 04 00 00 10 00"},
      {1023, "0C 00 02 03 FF 10 00, 0C 00 04 00 00 10 00"},
      {1024, "0C 00 02 00 00 0E 00, 0C 00 04 00 01 11 00"},
      {1048575, "0C 00 02 03 FF 10 00, 0C 00 04 03 FF 12 00"},
      {1048576, "0C 00 02 00 00 0E 00, 0C 00 04 00 00 10 00"},
      {0xFFFFFFFF, "0C 00 02 03 FF 10 00, 0C 00 04 03 FF 12 00"},
  };
  Script script;
  SetLensType(9);
  for (const Row& row : rows) {
    setFocusBackward(0, row.steps);
    EXPECT_EQ(count(script, "02", "04"), row.sent) << row.steps;
  }
}

TEST(RegisterCount, OfZoom1OnT5391IsTwofold) {
  struct Row {
    uint32_t steps;
    const char* sent;
  };
  constexpr Row rows[] = {
      {0, "0C 00 22 00 00 2E 00, 0C 00 24 00 00 30 00"},
      {511, "0C 00 22 03 FE 2F 00, 0C 00 24 00 00 30 00"},
      {512, "0C 00 22 00 00 2E 00, 0C 00 24 00 01 31 00"},
      {524287, "0C 00 22 03 FE 2F 00, 0C 00 24 03 FF 32 00"},
      {524288, "0C 00 22 00 00 2E 00, 0C 00 24 00 00 30 00"},
      {0x80000001, "0C 00 22 00 02 30 00, 0C 00 24 00 00 30 00"},
      {0xFFFFFFFF, "0C 00 22 03 FE 2F 00, 0C 00 24 03 FF 32 00"},
  };
  Script script;
  SetLensType(9);
  for (const Row& row : rows) {
    setZoom1Forward(0, row.steps);
    EXPECT_EQ(count(script, "22", "24"), row.sent) << row.steps;
  }
}

TEST(RegisterCount, InMicroStepsMayBeNegativeAndKeepsTwentyBits) {
  struct Row {
    int32_t steps;
    const char* sent;
  };
  constexpr Row rows[] = {
      {1048575, "0F 00 22 03 FF 33 00, 0F 00 24 03 FF 35 00"},
      {-1, "0F 00 22 03 FF 33 00, 0F 00 24 03 FF 35 00"},
      {-1024, "0F 00 22 00 00 31 00, 0F 00 24 03 FF 35 00"},
      {-2147483647 - 1, "0F 00 22 00 00 31 00, 0F 00 24 00 00 33 00"},
  };
  Script script;
  SetLensType(7);
  for (const Row& row : rows) {
    setZoom2Forward512(0, row.steps);
    EXPECT_EQ(count(script, "22", "24"), row.sent) << row.steps;
    setZoom2Backward512(0, row.steps);
    EXPECT_EQ(count(script, "22", "24"), row.sent) << row.steps;
  }
}

TEST(RegisterPeriod, OfZoom1OnT5391ComesFromTheTwoTwoPhaseTable) {
  Script script;
  SetLensType(9);
  setZoom1Forward(0, 1);
  setZoom1Backward(39, 1);
  setZoom1Backward2_2(40, 1);
  setZoom1Forward(255, 1);
  EXPECT_EQ(writes(script, "26"),
            "0C 00 26 03 0D 42 00\n"
            "0C 00 26 00 14 46 00\n"
            "0C 00 26 16 62 AA 00\n"
            "0C 00 26 1D 87 D6 00\n");
}

TEST(RegisterPeriod, OfFocusOnT5391ComesFromTheOneTwoPhaseTable) {
  Script script;
  SetLensType(9);
  setFocusForward(0, 1);
  setFocusBackward(255, 1);
  EXPECT_EQ(writes(script, "06"), "0C 00 06 04 00 16 00\n0C 00 06 1F 0D 3E 00\n");
}

TEST(RegisterPeriod, OfFocusOnDe015ComesFromTheMicroStepTable) {
  Script script;
  SetLensType(7);
  setFocusForward(0, 1);
  setFocusBackward(255, 1);
  EXPECT_EQ(writes(script, "06"), "0F 00 06 16 88 B3 00\n0F 00 06 28 5A 97 00\n");
}

TEST(RegisterPeriod, OfZoom2ComesFromTheMicroStepTable) {
  Script script;
  SetLensType(8);
  setZoom2Forward(0, 1);
  setZoom2Backward(255, 1);
  setZoom2Forward512(0, 1);
  setZoom2Backward512(255, 1);
  EXPECT_EQ(writes(script, "26"),
            "0C 00 26 16 88 D0 00\n"
            "0C 00 26 28 5A B4 00\n"
            "0C 00 26 16 88 D0 00\n"
            "0C 00 26 28 5A B4 00\n");
}

TEST(RegisterPeriod, IsWhatTheApplicationWroteIntoTheTable) {
  Script script;
  PPS_2_2Phase[5] = 0x5678;
  PPS_512uStepPhase[6] = 0xBEEF;
  PPS_1_2Phase_800[7] = 0x0102;
  SetLensType(9);
  setZoom1Forward(5, 1);
  EXPECT_EQ(writes(script, "26"), "0C 00 26 56 78 00 00\n");
  setFocusForward(7, 1);
  EXPECT_EQ(writes(script, "06"), "0C 00 06 01 02 15 00\n");
  SetLensType(7);
  setFocusForward(6, 1);
  EXPECT_EQ(writes(script, "06"), "0F 00 06 BE EF C2 00\n");
}

TEST(RegisterPeriod, IsCutToSixteenBits) {
  Script script;
  PPS_2_2Phase[5] = 0x12345678;
  SetLensType(9);
  setZoom1Forward(5, 1);
  EXPECT_EQ(writes(script, "26"), "0C 00 26 56 78 00 00\n");
}

/// One operation of each channel and variant.
struct Move {
  int32_t variant;
  uint32_t (*run)();
};
constexpr Move moves[] = {
    {7, [] { return setFocusForward(100, 200); }},
    {8, [] { return setFocusBackward(100, 200); }},
    {9, [] { return setFocusForward(100, 200); }},
    {9, [] { return setZoom1Backward2_2(100, 200); }},
    {7, [] { return setZoom2Backward(100, 200); }},
    {8, [] { return setZoom2Forward512(100, 200); }},
};

TEST(RegisterFailure, OfOneWriteIsMendedByItsRetry) {
  for (const Move& move : moves) {
    for (int nth = 1; nth <= 11; ++nth) {
      Script script;
      SetLensType(move.variant);
      script.fail(Call::transfer, nth, 1, EIO);
      EXPECT_EQ(move.run(), 0U) << nth;
      EXPECT_EQ(script.count(Call::transfer), 12) << nth;
      EXPECT_EQ(GetLensType(), move.variant) << nth;
    }
  }
}

TEST(RegisterFailure, OfARetryEndsTheMoveAndShowsInItsResult) {
  for (const Move& move : moves) {
    for (int nth = 1; nth <= 11; ++nth) {
      Script script;
      SetLensType(move.variant);
      script.fail(Call::transfer, nth, 2, EIO);
      EXPECT_EQ(move.run(), 255U) << nth;
      EXPECT_EQ(script.count(Call::transfer), nth + 1) << nth;
      EXPECT_EQ(GetLensType(), -1) << nth;
    }
  }
}

TEST(RegisterFailure, LeavesTheLockStepsAndTheWaitInPlace) {
  Script script;
  EXPECT_EQ(setFocusForward(100, 200), 255U);
  EXPECT_EQ(script.transcript(),
            "open /dev/spi_renesas\n"
            "lock\nunlock\nlock\nunlock\nlock\nunlock\nlock\nunlock\nlock\nunlock\n"
            "lock\nunlock\nlock\nunlock\nlock\nunlock\nlock\nunlock\nlock\nunlock\n"
            "usleep 50000\n"
            "lock\nunlock\n");
}

TEST(RegisterFailure, OfTheLastWriteShowsTheLowByteOfTheLatch) {
  Script script;
  SetLensType(9);
  script.result(Call::transfer, 11, 0x105);
  script.result(Call::transfer, 12, 0x207);
  EXPECT_EQ(setZoom1Forward(1, 1), 7U);
}

TEST(RegisterFailure, ToOpenTheDeviceFailsTheMove) {
  Script script;
  SetLensType(8);
  script.fail(Call::open, 1, forever, ENOENT);
  EXPECT_EQ(setZoom2Forward(1, 1), 255U);
  EXPECT_EQ(script.count(Call::open), 11);
  EXPECT_EQ(script.count(Call::transfer), 2);
}

TEST(RegisterFailure, ToSleepIsIgnored) {
  Script script;
  SetLensType(9);
  script.fail(Call::usleep, 1, forever, EINTR);
  EXPECT_EQ(setFocusForward(1, 1), 0U);
  EXPECT_EQ(script.count(Call::usleep), 1);
  EXPECT_EQ(setFocusForward(1, 1), 0U);
  EXPECT_EQ(script.count(Call::usleep), 1);
}

}  // namespace
