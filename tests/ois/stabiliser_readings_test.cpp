// What is read of the stabiliser.
#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "lens/module_case.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::calling;
using kelvo::test::expect_cases;
using kelvo::test::ModuleCase;
using kelvo::test::Script;

struct Value {
  uint32_t (*read)();
  std::uint8_t code;
};
const Value values[] = {
    {Read_OIS_Pause, 0x8A},
    {Read_X_GyroGain, 0xE8},
    {Read_Y_GyroGain, 0xE9},
    {Read_Coma, 0xA2},
    {Read_Stationary_detection, 0x91},
    {Read_Gyro_stability, 0x92},
    {Get_gyro_stable_flag, 0xF9},
};

TEST(StabiliserValue, IsOneQueryOnEveryModule) {
  for (const int32_t variant : {7, 8, 9, 6, 10}) {
    const ModuleCase rows[] = {
        {variant, calling<Read_X_GyroGain>, "spi_renesas: E8 00 00 00 01 E9 00 00 00 00 00 00\n"},
        {variant, calling<Read_Y_GyroGain>, "spi_renesas: E9 00 00 00 01 EA 00 00 00 00 00 00\n"},
        {variant, calling<Read_Coma>, "spi_renesas: A2 00 00 00 01 A3 00 00 00 00 00 00\n"},
        {variant, calling<Read_Stationary_detection>,
         "spi_renesas: 91 00 00 00 01 92 00 00 00 00 00 00\n"},
        {variant, calling<Read_Gyro_stability>,
         "spi_renesas: 92 00 00 00 01 93 00 00 00 00 00 00\n"},
        {variant, calling<Get_gyro_stable_flag>,
         "spi_renesas: F9 00 00 00 01 FA 00 00 00 00 00 00\n"},
    };
    expect_cases(rows);
  }
}

TEST(StabiliserPauseValue, IsKnownToDe015Alone) {
  const ModuleCase rows[] = {
      {7, calling<Read_OIS_Pause>, "spi_renesas: 8A 00 00 00 01 8B 00 00 00 00 00 00\n"},
      {8, calling<Read_OIS_Pause>, ""},
      {9, calling<Read_OIS_Pause>, ""},
      {6, calling<Read_OIS_Pause>, ""},
      {10, calling<Read_OIS_Pause>, ""},
  };
  expect_cases(rows);
}

TEST(StabiliserValue, IsHighByteFirst) {
  for (const Value& value : values) {
    Script script;
    SetLensType(7);
    script.query_reply_once(value.code, {0x01, 0x02, 0x03, 0x04});
    script.query_reply_once(value.code, {0xF1, 0xE2, 0xD3, 0xC4});
    EXPECT_EQ(value.read(), 0x01020304U) << "query " << int{value.code};
    EXPECT_EQ(value.read(), 0xF1E2D3C4U) << "query " << int{value.code};
  }
}

TEST(StabiliserValue, IsNoughtWhenNothingIsReceived) {
  for (const Value& value : values) {
    Script script;
    SetLensType(7);
    script.query_reply(value.code, {1, 2, 3, 4});
    value.read();
    script.fail(Call::transfer, 1, 1, EIO);
    EXPECT_EQ(value.read(), 0U) << "query " << int{value.code};
    EXPECT_EQ(GetLensType(), -1);
    script.transcript();
    EXPECT_EQ(value.read(), 0U) << "query " << int{value.code};
    EXPECT_EQ(script.transcript(), "");
  }
}

// ---- values of both axes -----------------------------------------------------------------------

constexpr std::uint32_t untouched = 0xEEEEEEEE;

/// A caller's two words.
struct Pair {
  std::uint32_t x = untouched;
  std::uint32_t y = untouched;
};

TEST(GyroValues, AreTwoWordsOfOneReply) {
  for (const int32_t variant : {7, 8, 9, 6}) {
    Script script;
    SetLensType(variant);
    script.query_reply(0xF7, {0x01, 0x02, 0xF3, 0xF4});
    Pair pair;
    EXPECT_EQ(Get_XY_Data(&pair.x, &pair.y), 0);
    EXPECT_EQ(pair.x, 0x0102U);
    EXPECT_EQ(pair.y, 0xF3F4U);
    EXPECT_EQ(script.transcript_without({"open"}),
              "spi_renesas: F7 00 00 00 01 F8 00 00 00 00 00 00\n");
  }
}

TEST(HallValues, AreTwoWordsOfOneReplyAndTheSecondIsTheResult) {
  for (const int32_t variant : {7, 8, 9, 6}) {
    Script script;
    SetLensType(variant);
    script.query_reply_once(0xF2, {0x01, 0x02, 0x03, 0x04});
    script.query_reply_once(0xF2, {0xFF, 0xFE, 0xFD, 0xFC});
    Pair pair;
    EXPECT_EQ(Get_HallXY_Data(&pair.x, &pair.y), 0x0304U);
    EXPECT_EQ(pair.x, 0x0102U);
    EXPECT_EQ(pair.y, 0x0304U);
    EXPECT_EQ(Get_HallXY_Data(&pair.x, &pair.y), 0xFDFCU);
    EXPECT_EQ(pair.x, 0xFFFEU);
    EXPECT_EQ(pair.y, 0xFDFCU);
    EXPECT_EQ(script.transcript_without({"open"}),
              "spi_renesas: F2 00 00 00 01 F3 00 00 00 00 00 00\n"
              "spi_renesas: F2 00 00 00 01 F3 00 00 00 00 00 00\n");
  }
}

TEST(HallValue, OfOneAxisIsTheSecondWordAndTheResultIsTheStatus) {
  for (const int32_t variant : {7, 8, 9, 6}) {
    Script script;
    SetLensType(variant);
    script.query_reply(0xF3, {0x01, 0x02, 0xF3, 0x04});
    script.query_reply(0xF4, {0x11, 0x12, 0x13, 0x14});
    Pair pair;
    EXPECT_EQ(Get_HallX_Data(&pair.x), 0);
    EXPECT_EQ(Get_HallY_Data(&pair.y), 0);
    EXPECT_EQ(pair.x, 0xF304U);
    EXPECT_EQ(pair.y, 0x1314U);
    EXPECT_EQ(script.transcript_without({"open"}),
              "spi_renesas: F3 00 00 00 01 F4 00 00 00 00 00 00\n"
              "spi_renesas: F4 00 00 00 01 F5 00 00 00 00 00 00\n");
  }
}

/// Each function that stores; its result, and what the caller holds, when nothing is received.
struct Storing {
  std::uint8_t code;
  std::uint32_t (*read)(Pair&);
  std::uint32_t result;
  Pair stored;
};
const Storing storing[] = {
    {0xF7,
     [](Pair& pair) { return static_cast<std::uint32_t>(Get_XY_Data(&pair.x, &pair.y)); },
     0,
     {0, 0}},
    {0xF2, [](Pair& pair) { return Get_HallXY_Data(&pair.x, &pair.y); }, 0, {0, 0}},
    {0xF3, [](Pair& pair) { return std::uint32_t{Get_HallX_Data(&pair.x)}; }, 0xFF, {0, untouched}},
    {0xF4, [](Pair& pair) { return std::uint32_t{Get_HallY_Data(&pair.y)}; }, 0xFF, {untouched, 0}},
};

TEST(SensorValues, AreStoredAsZerosWhenNothingIsReceived) {
  for (const Storing& row : storing) {
    Script script;
    SetLensType(7);
    script.query_reply(row.code, {1, 2, 3, 4});
    Pair pair;
    row.read(pair);
    script.fail(Call::transfer, 1, 1, EIO);
    for (const int transfers : {2, 2}) {  // the one that fails, and none while the latch is set
      pair = {};
      EXPECT_EQ(row.read(pair), row.result) << "query " << int{row.code};
      EXPECT_EQ(pair.x, row.stored.x) << "query " << int{row.code};
      EXPECT_EQ(pair.y, row.stored.y) << "query " << int{row.code};
      EXPECT_EQ(script.count(Call::transfer), transfers);
    }
  }
}

}  // namespace
