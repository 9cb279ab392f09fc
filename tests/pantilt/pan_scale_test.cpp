// The pan axis has no conversion of its own to call: its counts are seen on the wire.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "kelvo.h"
#include "pantilt/exact.h"
#include "pantilt/head.h"
#include "script/script.h"
#include "script/transcript.h"

namespace kelvo::test {
namespace {

/// Two bytes, high byte first.
std::string word(std::int32_t number) {
  return format("%02X %02X", static_cast<unsigned>(number) >> 8 & 0xFF,
                static_cast<unsigned>(number) & 0xFF);
}

std::string pan_move(std::int64_t position) {
  return paced("i2c 40: w 01 01 " + word(exact_pan_count(position, 18'000)) + " 00 64\n");
}

TEST(PanScale, IsExactForEveryMove) {
  Script script;
  vetra_head(script);
  Debug_PID_En(1);
  for (std::uint32_t pos = 0; pos <= 66'000; ++pos) {
    PanABSMove(0, 100, pos);
    ASSERT_EQ(script.transcript(), pan_move(pos)) << pos;
  }
}

TEST(PanScale, RunsAgainstTheCounts) {
  Script script;
  vetra_head(script);
  Debug_PID_En(1);
  PanABSMove(0, 100, 0);
  PanABSMove(0, 100, 2);
  PanABSMove(0, 100, 32768);
  PanABSMove(0, 100, 65535);
  PanABSMove(0, 100, 70000);
  EXPECT_EQ(script.transcript(), paced(R"(i2c 40: w 01 01 46 50 00 64
i2c 40: w 01 01 46 4F 00 64
i2c 40: w 01 01 23 28 00 64
i2c 40: w 01 01 00 00 00 64
i2c 40: w 01 01 FB 37 00 64
)"));
}

TEST(PanScale, TakesAMovesPositionForUnsigned) {
  Script script;
  vetra_head(script);
  Debug_PID_En(1);
  for (const std::uint32_t pos :
       {131'071U, 0x01000001U, 0x7FFFFFFFU, 0x80000000U, 0xFFFF0001U, 0xFFFFFFFFU}) {
    PanABSMove(0, 100, pos);
    EXPECT_EQ(script.transcript(), pan_move(pos)) << pos;
  }
}

TEST(PanScale, IsExactForEveryLimit) {
  Script script;
  vetra_head(script);
  for (std::int32_t pos = 0; pos <= 65'535; ++pos) {
    PanLimitSet(pos, 65'535 - pos);
    ASSERT_EQ(script.transcript(), paced("i2c 40: w 05 " + word(exact_pan_count(pos, 18'000)) +
                                         " " + word(exact_pan_count(65'535 - pos, 18'000)) + "\n"))
        << pos;
  }
}

TEST(PanScale, TakesALimitForSigned) {
  Script script;
  vetra_head(script);
  for (const std::int32_t pos : {-1, -2, -65'535, INT32_MIN, INT32_MAX, 70'000}) {
    PanLimitSet(pos, 2);
    EXPECT_EQ(script.transcript(),
              paced("i2c 40: w 05 " + word(exact_pan_count(pos, 18'000)) + " 46 4F\n"))
        << pos;
  }
}

TEST(PanScale, IsExactForTheDistanceOfEveryMove) {
  Script script;
  vetra_head(script);
  word_register(script, 0x32, 0);
  for (std::int32_t pos = 0; pos <= 65'535; ++pos) {
    iPanVETRA_Motor_Reg[1] = -1;  // the gains count as changed
    Pan_Setup_PID(1, 2000, pos);
    const std::int32_t target = exact_pan_count(pos, 18'000);
    const std::string line = format("iDiff_Pos:%d = iPos_data:0 - i_step:%d P:", target, target);
    ASSERT_NE(script.transcript().find(line), std::string::npos) << pos;
  }
}

}  // namespace
}  // namespace kelvo::test
