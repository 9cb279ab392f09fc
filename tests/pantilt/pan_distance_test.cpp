// The position gain of a fast absolute pan move falls with the distance.
#include <gtest/gtest.h>

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

std::int32_t exact_pan_gain(std::int32_t distance) {
  if (distance == 0) return 0x13F;  // word 63
  return distance > 999 ? exact_gain(27, thousandth, distance)
                        : exact_gain(36, hundredth, distance);
}

/// A retuning that changes nothing but, perhaps, the position gains.
std::string retuned(std::int32_t from, std::int32_t to, std::int32_t distance, std::int32_t gain) {
  const auto sent = static_cast<unsigned>(gain) & 0xFFFF;
  return paced(
      format("i2c 40: w 32 r 2\n"
             "out \"pos 2@@@@@@@@@@@@@pan iDiff_Pos:%d = iPos_data:%d - i_step:%d P:%d "
             "I:0x140\\n\"\n"
             "i2c 40: w 10 %02X %02X 01 40\n",
             distance, from, to, gain, sent >> 8, sent & 0xFF));
}

void expect_pan_gain(Script& script, std::int32_t from, std::int32_t pos, std::int32_t gain) {
  word_register(script, 0x32, from);
  iPanVETRA_Motor_Reg[1] = -1;  // the position gains count as changed
  const std::int32_t to = exact_pan_count(pos, 18'000);
  Pan_Setup_PID(1, 2000, pos);
  ASSERT_EQ(script.transcript(), retuned(from, to, std::abs(from - to), gain)) << from;
}

void vetra_tuned_for_pan(Script& script) {
  vetra_head(script);
  load(plain_tuning());
  Pan_Setup_PID(1, 2000, 0);
  script.transcript();
}

TEST(PanDistance, GivesItsGain) {
  Script script;
  vetra_tuned_for_pan(script);
  struct Row {
    std::int32_t distance;
    std::int32_t gain;
  };
  const Row rows[] = {{0, 0x13F}, {1, 35},    {100, 35},   {101, 34},   {200, 34},
                      {500, 31},  {501, 30},  {900, 27},   {901, 26},   {999, 26},
                      {1000, 26}, {1001, 25}, {2000, 25},  {2001, 24},  {22000, 4},
                      {27000, 0}, {27999, 0}, {28001, -1}, {65535, -38}};
  for (const Row& row : rows) expect_pan_gain(script, row.distance, 65535, row.gain);
}

TEST(PanDistance, IsExactForEveryDistance) {
  Script script;
  vetra_tuned_for_pan(script);
  for (std::int32_t distance = 0; distance <= 65'535; ++distance) {
    expect_pan_gain(script, distance, 65535, exact_pan_gain(distance));
    if (HasFatalFailure()) return;
  }
}

TEST(PanDistance, CountsInBothDirections) {
  Script script;
  vetra_tuned_for_pan(script);
  for (const std::int32_t from : {0, 7999, 8000, 8001, 8500, 8899, 8900, 8999, 9000, 9001, 9100,
                                  9101, 9999, 10000, 10001, 18000, 65535}) {
    expect_pan_gain(script, from, 32768, exact_pan_gain(std::abs(from - 9000)));
  }
}

TEST(PanDistance, GoesBeyondTheRange) {
  Script script;
  vetra_tuned_for_pan(script);
  for (const std::int32_t pos : {70'000, 131'071, 1'000'000, INT32_MAX, -1, -65'535, INT32_MIN}) {
    expect_pan_gain(script, 17'999, pos,
                    exact_pan_gain(std::abs(17'999 - exact_pan_count(pos, 18'000))));
  }
}

TEST(PanDistance, IsThatFromCountZeroWhenThePositionCannotBeRead) {
  Script script;
  vetra_tuned_for_pan(script);
  word_register(script, 0x32, 9000);
  iPanVETRA_Motor_Reg[1] = -1;
  script.fail(Call::i2c, 1, 1, ENXIO);
  Pan_Setup_PID(1, 2000, 32768);
  EXPECT_NE(script.transcript().find("iDiff_Pos:9000 = iPos_data:0 - i_step:9000 P:18 I:0x140"),
            std::string::npos);
}

}  // namespace
}  // namespace kelvo::test
