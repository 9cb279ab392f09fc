// The position counters of the lens motors: how they are read.
#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "lens/module_case.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::calling;
using kelvo::test::expect_cases;
using kelvo::test::locks_and_opening;
using kelvo::test::ModuleCase;
using kelvo::test::Script;
using kelvo::test::set_latch;

TEST(PositionCounter, IsReadByTheModulesOwnQuery) {
  const ModuleCase rows[] = {
      {7, calling<GetZoom1Count>, "spi_renesas: C7 00 00 00 01 C8 00 00 00 00 00 00\n", 0},
      {8, calling<GetZoom1Count>, "spi_renesas: 87 00 00 00 01 88 00 00 00 00 00 00\n", 0},
      {9, calling<GetZoom1Count>, "spi_renesas: 8F 00 34 00 01 C4 00 00 00 00 00 00\n", 16383},
      {7, calling<GetZoom2Count>, "spi_renesas: 8F 00 34 00 01 C4 00 00 00 00 00 00\n", 16383},
      {8, calling<GetZoom3Count>, "spi_renesas: 3A 00 00 00 01 3B 00 00 00 00 00 00\n", 0},
      {7, calling<GetFocusCount>, "spi_renesas: 8F 00 14 00 01 A4 00 00 00 00 00 00\n", 16383},
      {8, calling<GetFocusCount>, "spi_renesas: 8C 00 14 00 01 A1 00 00 00 00 00 00\n", 0},
  };
  expect_cases(rows);
}

TEST(PositionCounter, IsNoughtWithoutAQueryOnAModuleThatLacksIt) {
  for (const int32_t variant : {6, 10, 0, -1}) {
    const ModuleCase rows[] = {
        {variant, calling<GetZoom1Count>, ""},
        {variant, calling<GetZoom2Count>, ""},
        {variant, calling<GetZoom3Count>, ""},
        {variant, calling<GetFocusCount>, ""},
    };
    expect_cases(rows);
  }
  const ModuleCase rows[] = {
      {8, calling<GetZoom2Count>, ""}, {9, calling<GetZoom2Count>, ""},
      {7, calling<GetZoom3Count>, ""}, {9, calling<GetZoom3Count>, ""},
      {9, calling<GetFocusCount>, ""},
  };
  expect_cases(rows);
}

TEST(PositionCounter, TakesNoLock) {
  Script script;
  SetLensType(8);
  GetZoom3Count();
  EXPECT_EQ(script.transcript(),
            "open /dev/spi_renesas\nspi_renesas: 3A 00 00 00 01 3B 00 00 00 00 00 00\n");
}

/// A reply and what the counter's function makes of it.
struct CounterReading {
  int32_t variant;
  uint32_t (*read)();
  std::uint8_t query;
  Bytes reply;
  std::uint32_t count;
};

template <std::size_t count>
void expect_readings(const CounterReading (&rows)[count]) {
  for (const CounterReading& row : rows) {
    Script script;
    SetLensType(row.variant);
    script.query_reply(row.query, row.reply);
    EXPECT_EQ(row.read(), row.count) << "variant " << row.variant << ", query " << int{row.query}
                                     << ", reply " << testing::PrintToString(row.reply);
  }
}

TEST(WholeCounter, IsHighByteFirstAndWithoutItsSign) {
  const CounterReading rows[] = {
      {7, GetZoom1Count, 0xC7, {0x01, 0x02, 0x03, 0x04}, 0x01020304},
      {7, GetZoom1Count, 0xC7, {0xFF, 0xFF, 0xFF, 0xFB}, 5},
      {7, GetZoom1Count, 0xC7, {0x7F, 0xFF, 0xFF, 0xFF}, 0x7FFFFFFF},
      {7, GetZoom1Count, 0xC7, {0x80, 0x00, 0x00, 0x01}, 0x7FFFFFFF},
      {7, GetZoom1Count, 0xC7, {0x80, 0x00, 0x00, 0x00}, 0x80000000},
      {8, GetZoom1Count, 0x87, {0x81, 0x02, 0x03, 0x04}, 0x7EFDFCFC},
      {8, GetZoom1Count, 0x87, {0xFF, 0xFF, 0xFF, 0xFB}, 5},
      {8, GetZoom3Count, 0x3A, {0xA1, 0xB2, 0xC3, 0xD4}, 0x5E4D3C2C},
      {8, GetZoom3Count, 0x3A, {0x00, 0x00, 0x12, 0x34}, 0x1234},
      {8, GetZoom3Count, 0x3A, {0xFF, 0xFF, 0xFF, 0xFB}, 5},
  };
  expect_readings(rows);
}

TEST(RawCounter, IsTheTwoLastBytes) {
  const CounterReading rows[] = {
      {8, GetFocusCount, 0x8C, {0x11, 0x22, 0x00, 0x00}, 0},
      {8, GetFocusCount, 0x8C, {0x11, 0x22, 0x33, 0x44}, 0x3344},
      {8, GetFocusCount, 0x8C, {0x11, 0x22, 0xFF, 0xFB}, 0xFFFB},
  };
  expect_readings(rows);
}

TEST(FoldedCounter, CountsDownFromTheMiddleOfItsRange) {
  struct Fold {
    Bytes reply;
    std::uint32_t count;
    std::uint32_t without_sign;
  };
  const Fold folds[] = {
      {{0, 0, 0x3F, 0xFF}, 0, 0},
      {{0, 0, 0x3F, 0xFE}, 1, 1},
      {{0, 0, 0x00, 0x01}, 16382, 16382},
      {{0, 0, 0x00, 0x00}, 16383, 16383},
      {{0, 0, 0x7F, 0xFF}, 16384, 16384},
      {{0, 0, 0x7F, 0xFE}, 16385, 16385},
      {{0, 0, 0x40, 0x00}, 32767, 32767},
      {{0x12, 0x34, 0x3F, 0x00}, 255, 255},
      // Beyond 15 bits: with bit 14 clear it wraps, with bit 14 set it does not.
      {{0, 0, 0x80, 0x00}, 0xFFFFBFFF, 16385},
      {{0, 0, 0xBF, 0xFF}, 0xFFFF8000, 32768},
      {{0, 0, 0xC0, 0x00}, 65535, 65535},
      {{0, 0, 0xFF, 0xFF}, 49152, 49152},
  };
  for (const Fold& fold : folds) {
    const CounterReading rows[] = {
        {7, GetZoom2Count, 0x8F, fold.reply, fold.count},
        {7, GetFocusCount, 0x8F, fold.reply, fold.count},
        {9, GetZoom1Count, 0x8F, fold.reply, fold.without_sign},
    };
    expect_readings(rows);
  }
}

/// Every counter that has a query, and what zeros read as.
const CounterReading zeros[] = {
    {7, GetZoom1Count, 0xC7, {}, 0},     {8, GetZoom1Count, 0x87, {}, 0},
    {9, GetZoom1Count, 0x8F, {}, 16383}, {7, GetZoom2Count, 0x8F, {}, 16383},
    {8, GetZoom3Count, 0x3A, {}, 0},     {7, GetFocusCount, 0x8F, {}, 16383},
    {8, GetFocusCount, 0x8C, {}, 0},
};

TEST(PositionCounter, ReadsZerosWhenTheQueryFails) {
  for (const CounterReading& row : zeros) {
    Script script;
    SetLensType(row.variant);
    script.query_reply(row.query, {1, 2, 3, 4});
    row.read();
    script.fail(Call::transfer, 1, 1, EIO);
    EXPECT_EQ(row.read(), row.count) << "query " << int{row.query};
    EXPECT_EQ(GetLensType(), -1);
  }
}

TEST(PositionCounter, ReadsZerosWhileTheLatchIsSet) {
  for (const CounterReading& row : zeros) {
    Script script;
    SetLensType(row.variant);
    script.query_reply(row.query, {1, 2, 3, 4});
    row.read();
    set_latch(script);
    EXPECT_EQ(row.read(), row.count) << "query " << int{row.query};
    EXPECT_EQ(script.transcript_without(locks_and_opening), "");
  }
}

}  // namespace
