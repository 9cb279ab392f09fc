#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "kelvo.h"
#include "pantilt/exact.h"
#include "pantilt/head.h"
#include "pantilt/tuning.h"
#include "script/script.h"
#include "script/transcript.h"

namespace kelvo::test {
namespace {

TEST(TiltAbsoluteMove, OfAVetraKeepsItsDirection) {
  Script script;
  vetra_head(script);
  Debug_PID_En(1);
  const AbsoluteMove rows[] = {
      {0, 7200, 32768, "00 30 D4 1C 20", "0 32768->30d4 7200"},
      {1, 7200, 32768, "01 30 D4 1C 20", "1 32768->30d4 7200"},
      {1, 7201, 0, "01 0D AC 1C 20", "1 0->0dac 7200"},
      {1, 9000, 65535, "01 0D AC 1C 20", "1 65535->0dac 7200"},
      {0, 1, 12742, "00 00 00 00 01", "0 12742->0000 1"},
      {0, 0, 2, "00 0D AB 00 00", "0 2->0dab 0"},
      {0, -1, 2, "00 0D AB FF FF", "0 2->0dab -1"},
      {2, 5, 2, "02 0D AB 00 05", "2 2->0dab 5"},
      {-1, 5, 2, "FF 0D AB 00 05", "-1 2->0dab 5"},
      {257, 5, 70'000, "01 08 E3 00 05", "257 70000->08e3 5"},
      {0, 5, 131'071, "00 C7 5D 00 05", "0 131071->ffffc75d 5"},
      {0, -100'000, 0xFFFFFFFE, "00 0D AD 79 60", "0 -2->0dad -100000"},
  };
  for (const AbsoluteMove& row : rows) {
    EXPECT_EQ(TiltABSMove(row.dir, row.speed, row.pos), 0);
    EXPECT_EQ(script.transcript(), paced(std::string("i2c 41: w 01 ") + row.bytes + "\n") +
                                       "out \"ABS Tilt:" + row.printed + "\\n\"\n");
  }
}

/// Limits, a position, and the count that goes out.
struct Target {
  const char* why;
  TiltLimits limits;
  std::uint32_t pos;
  std::int32_t count;
};

constexpr TiltLimits on = {60000, 40000, 1};  // counts 5020 to 10514
constexpr TiltLimits off = {60000, 40000, 0};

const Target targets[] = {
    {"below the start", on, 0, 3500},
    {"the start", on, 60000, 5020},
    {"above the start", on, 59708, 5020},
    {"below the middle", on, 50002, 5020},
    {"the middle", on, 49998, 7767},
    {"above the middle", on, 49994, 10514},
    {"below the end", on, 40001, 10514},
    {"the end", on, 39997, 10514},
    {"above the end", on, 39993, 10515},
    {"off, near the start", off, 59708, 5100},
    {"off, near the end", off, 45509, 9000},
    {"another setting, near the start", {60000, 40000, 2}, 59708, 5100},
    {"another setting, near the end", {60000, 40000, -1}, 45509, 9000},
    {"no start, near the start", {0, 40000, 1}, 56432, 6000},
    {"no start, near the end", {0, 40000, 1}, 45509, 9000},
    {"no end", {1819, 0, 1}, 300, 3418},
    {"neither", {0, 0, 1}, 32768, 12500},
    {"a start next to none", {1, 40000, 1}, 56432, 3500},
    {"an end next to none", {1819, 1, 1}, 300, 3500},
    {"the other way round", {40000, 60000, 1}, 56432, 6000},
};

TEST(TiltAbsoluteMove, OfAVetraIsPulledToTheNearerLimit) {
  Script script;
  vetra_head(script);
  Debug_PID_En(1);
  for (const Target& row : targets) {
    set(script, row.limits);
    EXPECT_EQ(TiltABSMove(0, 100, row.pos), 0);
    EXPECT_EQ(script.transcript(), format("i2c 41: w 01 00 %02X %02X 00 64\nusleep 2000\n"
                                          "out \"ABS Tilt:0 %u->%04x 100\\n\"\n",
                                          row.count >> 8, row.count & 0xFF, row.pos, row.count))
        << row.why;
  }
}

TEST(TiltAbsoluteMove, OfAVetraIsExactForEveryPosition) {
  Script script;
  vetra_head(script);
  Debug_PID_En(1);
  for (std::uint32_t pos = 0; pos <= 65'535; ++pos) {
    TiltABSMove(0, 100, pos);
    const std::int32_t count = exact_tilt_count(pos, 18'000);
    ASSERT_EQ(script.transcript(), format("i2c 41: w 01 00 %02X %02X 00 64\nusleep 2000\n"
                                          "out \"ABS Tilt:0 %u->%04x 100\\n\"\n",
                                          count >> 8, count & 0xFF, pos, count));
  }
}

TEST(TiltAbsoluteMove, RetunesAVetraFirst) {
  Script script;
  vetra_head(script);
  load(plain_tuning());
  word_register(script, 0x32, 12600);
  EXPECT_EQ(TiltABSMove(1, 9000, 32768), 0);
  const std::string question = R"(i2c 41: w 32 r 2
out "@@@@@@@@@@@@@@@@@11111 iStart:3500 iEnd:3500 istep:32768\n"
)";
  const std::string move = R"(i2c 41: w 01 01 30 D4 1C 20
usleep 2000
out "ABS Tilt:1 32768->30d4 7200\n"
)";
  EXPECT_EQ(script.transcript(), paced(question + R"(out "pos 1************Tilt P:0x21 I:0x14e\n"
i2c 41: w 10 00 21 01 4E
out "cur 1************Tilt :0x151\n"
i2c 41: w 12 01 51
out "spd 1************Tilt P:0x14f I:0x150\n"
i2c 41: w 11 01 4F 01 50
out "gain 1************Tilt Acc:0x120152 Dec:0x120153\n"
i2c 41: w 13 00 12 01 52
i2c 41: w 15 00 12 01 53
)") + move);
  EXPECT_EQ(TiltABSMove(1, 9000, 32768), 0);
  EXPECT_EQ(script.transcript(), paced(question) + move);
}

}  // namespace
}  // namespace kelvo::test
