// The position gain of an absolute tilt move falls with the distance, which may lead across the zero.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "kelvo.h"
#include "pantilt/exact.h"
#include "pantilt/head.h"
#include "pantilt/tuning.h"
#include "script/script.h"
#include "script/transcript.h"

namespace kelvo::test {
namespace {

// Positions by their counts.
constexpr std::int32_t count_0 = 12742;
constexpr std::int32_t count_100 = 12378;
constexpr std::int32_t count_3000 = 1819;
constexpr std::int32_t count_3418 = 300;
constexpr std::int32_t count_3500 = 0;
constexpr std::int32_t count_3600 = 65170;
constexpr std::int32_t count_5020 = 60000;
constexpr std::int32_t count_5100 = 59708;
constexpr std::int32_t count_6000 = 56432;
constexpr std::int32_t count_7767 = 49998;
constexpr std::int32_t count_9000 = 45509;
constexpr std::int32_t count_10514 = 39997;
constexpr std::int32_t count_17900 = 13106;

std::int32_t exact_tilt_gain(std::int32_t distance) {
  if (distance > 999 || distance == 0) return 0x14D;  // word 77
  return exact_gain(35, fiftieth, distance);
}

void vetra_tuned_for_tilt(Script& script) {
  vetra_head(script);
  load(plain_tuning());
  Tilt_Setup_PID(1, 100, 0);
  script.transcript();
}

/// A retuning in which nothing but the position gains counts as changed.
void expect_tilt_gain(Script& script, const TiltLimits& limits, std::int32_t from, std::int32_t pos,
                      std::int32_t gain) {
  word_register(script, 0x32, from);
  iTiltVETRA_Motor_Reg[1] = -1;
  Tilt_Setup_PID(1, 100, pos);
  const auto number = static_cast<unsigned>(gain);
  ASSERT_EQ(
      script.transcript(),
      paced(format("i2c 41: w 32 r 2\n"
                   "out \"@@@@@@@@@@@@@@@@@11111 iStart:%d iEnd:%d istep:%d\\n\"\n"
                   "out \"pos 1************Tilt P:0x%x I:0x14e\\n\"\n"
                   "i2c 41: w 10 %02X %02X 01 4E\n",
                   exact_tilt_count(limits.end, 18'000), exact_tilt_count(limits.start, 18'000),
                   pos, number, number >> 8 & 0xFF, number & 0xFF)))
      << from << " to " << pos << ", limits " << limits.start << " " << limits.end << " "
      << limits.enabled;
}

TEST(TiltDistance, IsExactForEveryDistance) {
  Script script;
  vetra_tuned_for_tilt(script);
  // With both limits at count 0 no way leads across it.
  const TiltLimits limits = {count_0, count_0, 0};
  set(script, limits);
  for (std::int32_t distance = 0; distance <= 65'535; ++distance) {
    expect_tilt_gain(script, limits, distance, count_0, exact_tilt_gain(distance));
    if (HasFatalFailure()) return;
  }
}

struct Row {
  const char* why;
  TiltLimits limits;
  std::int32_t from;  // a count
  std::int32_t pos;
  std::int32_t gain;
};

constexpr std::int32_t far = 0x14D;  // word 77, for none and for 1000 and more
constexpr TiltLimits none = {0, 0, 0};
constexpr TiltLimits apart = {count_10514, count_5020, 0};
constexpr TiltLimits forward = {count_5020, count_10514, 0};
constexpr TiltLimits forward_on = {count_5020, count_10514, 1};

const Row distances[] = {
    {"none", none, 12500, 32768, far},
    {"one", none, 12501, 32768, 34},
    {"last of the first step", none, 12450, 32768, 34},
    {"first of the second step", none, 12551, 32768, 33},
    {"a hundred", none, 12600, 32768, 33},
    {"last step", none, 13451, 32768, 15},
    {"before the last step", none, 13450, 32768, 16},
    {"last before the table", none, 13499, 32768, 15},
    {"first of the table", none, 13500, 32768, far},
    {"down", none, 12400, 32768, 33},

    {"up across the end", none, 17900, count_100, 31},
    {"from the end limit there is no way across", none, 3500, count_3000, 25},
    {"to the start limit there is no way across", none, 3600, count_3500, 33},
    {"beyond the range the way across turns", none, 18200, count_100, 37},
    {"none across the end", none, 18100, count_100, far},
    {"far beyond the range", none, 65535, count_0, 985},

    {"down across the zero", none, 100, count_17900, 31},
    {"down from the end limit", apart, 5020, count_5100, far},
    {"not from above the end limit", apart, 10500, count_10514, 34},
    {"not to the end limit", apart, 4920, count_5020, 33},
    {"not from the start limit", none, 3500, count_3600, 33},
};

TEST(TiltDistance, LeadsAcrossTheZeroOutsideTheLimits) {
  Script script;
  vetra_tuned_for_tilt(script);
  for (const Row& row : distances) {
    SCOPED_TRACE(row.why);
    set(script, row.limits);
    expect_tilt_gain(script, row.limits, row.from, row.pos, row.gain);
  }
}

const Row pulled[] = {
    {"off", forward, 5120, count_6000, 17},
    {"to the start", forward_on, 5120, count_6000, 33},
    {"off", forward, 10414, count_9000, far},
    {"to the end", forward_on, 10414, count_9000, 33},
    {"not from the middle", forward_on, 7867, count_7767, 33},
    {"not by another setting", {count_5020, count_10514, 2}, 5120, count_6000, 17},
    {"not by a negative setting", {count_5020, count_10514, -1}, 5120, count_6000, 17},
    {"from the start itself", forward_on, 5120, count_5020, 33},
    {"not from below the start", forward_on, 3600, count_3500, 33},
    // A limit at position 0 is one like any other here.
    {"to a start at zero", {count_3500, count_10514, 1}, 3600, count_6000, 33},
    {"to an end at zero", {count_3000, 0, 1}, 3400, count_3418, 33},
};

TEST(TiltDistance, IsThatToTheLimitThatPullsTheTarget) {
  Script script;
  vetra_tuned_for_tilt(script);
  for (const Row& row : pulled) {
    SCOPED_TRACE(row.why);
    set(script, row.limits);
    expect_tilt_gain(script, row.limits, row.from, row.pos, row.gain);
  }
}

/// The rules for a distance, once more.
std::int32_t distance_by_rule(const TiltLimits& limits, std::int32_t from, std::int32_t pos) {
  const std::int32_t start = exact_tilt_count(limits.start, 18'000);
  const std::int32_t end = exact_tilt_count(limits.end, 18'000);
  const std::int32_t middle = (start + end) / 2;
  std::int32_t to = exact_tilt_count(pos, 18'000);
  if (limits.enabled == 1 && start <= to && to < middle) {
    to = start;
  } else if (limits.enabled == 1 && middle < to && to < end) {
    to = end;
  }
  if (from > end && start > to) return to + (18'000 - from);
  if (end >= std::min(to, from) && end < to && from < start) return 18'000 - to + from;
  return std::abs(from - to);
}

TEST(TiltDistance, FollowsTheRulesEverywhere) {
  Script script;
  vetra_tuned_for_tilt(script);
  const std::int32_t places[] = {0, 2000, count_100, 16000, 30000, 45000, count_5020, 62000, 65535};
  for (const std::int32_t start : places) {
    for (const std::int32_t end : places) {
      for (const std::int32_t enabled : {0, 1}) {
        const TiltLimits limits = {start, end, enabled};
        set(script, limits);
        for (std::int32_t pos = 0; pos < 66'000; pos += 5'021) {
          for (std::int32_t from = 0; from < 19'500; from += 1'711) {
            const std::int32_t distance = distance_by_rule(limits, from, pos);
            expect_tilt_gain(script, limits, from, pos, exact_tilt_gain(distance));
            if (HasFatalFailure()) return;
          }
        }
      }
    }
  }
}

TEST(TiltDistance, GoesBeyondTheRange) {
  Script script;
  vetra_tuned_for_tilt(script);
  for (const std::int32_t pos : {70'000, 131'071, 1'000'000, INT32_MAX, -1, -65'535, INT32_MIN}) {
    const std::int32_t distance = distance_by_rule(none, 2'300, pos);
    expect_tilt_gain(script, none, 2'300, pos, exact_tilt_gain(distance));
  }
}

TEST(TiltDistance, IsThatFromCountZeroWhenThePositionCannotBeRead) {
  Script script;
  vetra_tuned_for_tilt(script);
  word_register(script, 0x32, 9000);
  iTiltVETRA_Motor_Reg[1] = -1;
  script.fail(Call::i2c, 1, 1, ENXIO);
  Tilt_Setup_PID(1, 100, count_100);
  EXPECT_NE(script.transcript().find("Tilt P:0x21 I:0x14e"), std::string::npos);
}

}  // namespace
}  // namespace kelvo::test
