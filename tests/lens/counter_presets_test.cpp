// The position counters of the lens motors: how they are set.
#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "lens/module_case.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::calling;
using kelvo::test::expect_cases;
using kelvo::test::forever;
using kelvo::test::ModuleCase;
using kelvo::test::Script;
using kelvo::test::set_latch;

TEST(CounterPreset, SendsTheModulesOwnCommand) {
  const ModuleCase rows[] = {
      {7, calling<SetZoom1Count, 1234U>, "spi_renesas: 46 00 00 00 00 46 00\n"},
      {8, calling<SetZoom1Count, 1234U>, "spi_renesas: 4E 00 00 04 D2 24 00\n"},
      {9, calling<SetZoom1Count, 1234U>, "spi_renesas: 0C 00 34 04 D2 16 00\n"},
      {7, calling<SetZoom2Count, 1234U>, "spi_renesas: 0F 00 34 04 D2 19 00\n"},
      {8, calling<SetZoom3Count, 1234U>, "spi_renesas: 23 00 00 00 00 23 00\n"},
      {7, calling<SetFocusCount, 1234U>, "spi_renesas: 0F 00 14 04 D2 F9 00\n"},
      {8, calling<SetFocusCount, 1234U>, "spi_renesas: 0C 00 14 04 D2 F6 00\n"},
      {9, calling<SetFocusCount, 1234U>, "spi_renesas: 0C 00 14 04 D2 F6 00\n"},
  };
  expect_cases(rows);
}

TEST(CounterPreset, CarriesAllOfTheCountOnlyForZoom1OfDf033) {
  const ModuleCase rows[] = {
      {7, calling<SetZoom1Count, 0x12345678U>, "spi_renesas: 46 00 00 00 00 46 00\n"},
      {8, calling<SetZoom1Count, 0x12345678U>, "spi_renesas: 4E 12 34 56 78 62 00\n"},
      {8, calling<SetZoom1Count, 0xFFFFFFFBU>, "spi_renesas: 4E FF FF FF FB 46 00\n"},
      {9, calling<SetZoom1Count, 0x12345678U>, "spi_renesas: 0C 00 34 56 78 0E 00\n"},
      {9, calling<SetZoom1Count, 0xFFFF8001U>, "spi_renesas: 0C 00 34 80 01 C1 00\n"},
      {7, calling<SetZoom2Count, 0x12345678U>, "spi_renesas: 0F 00 34 56 78 11 00\n"},
      {8, calling<SetZoom3Count, 0x12345678U>, "spi_renesas: 23 00 00 00 00 23 00\n"},
      {7, calling<SetFocusCount, 0x12345678U>, "spi_renesas: 0F 00 14 56 78 F1 00\n"},
      {8, calling<SetFocusCount, 0x0000FFFFU>, "spi_renesas: 0C 00 14 FF FF 1E 00\n"},
      {9, calling<SetFocusCount, 0x00010000U>, "spi_renesas: 0C 00 14 00 00 20 00\n"},
  };
  expect_cases(rows);
}

TEST(CounterPreset, SendsNothingOnAModuleThatLacksTheCounter) {
  for (const int32_t variant : {6, 10, 0, -1}) {
    const ModuleCase rows[] = {
        {variant, calling<SetZoom1Count, 1234U>, ""},
        {variant, calling<SetZoom2Count, 1234U>, ""},
        {variant, calling<SetZoom3Count, 1234U>, ""},
        {variant, calling<SetFocusCount, 1234U>, ""},
    };
    expect_cases(rows);
  }
  const ModuleCase rows[] = {
      {8, calling<SetZoom2Count, 1234U>, ""},
      {9, calling<SetZoom2Count, 1234U>, ""},
      {7, calling<SetZoom3Count, 1234U>, ""},
      {9, calling<SetZoom3Count, 1234U>, ""},
  };
  expect_cases(rows);
}

/// Every preset that sends something.
const ModuleCase presets[] = {
    {7, calling<SetZoom1Count, 1U>, ""}, {8, calling<SetZoom1Count, 1U>, ""},
    {9, calling<SetZoom1Count, 1U>, ""}, {7, calling<SetZoom2Count, 1U>, ""},
    {8, calling<SetZoom3Count, 1U>, ""}, {7, calling<SetFocusCount, 1U>, ""},
    {8, calling<SetFocusCount, 1U>, ""}, {9, calling<SetFocusCount, 1U>, ""},
};

TEST(CounterPreset, ReturnsTheStatusOfItsWrite) {
  for (const ModuleCase& preset : presets) {
    Script script;
    SetLensType(preset.variant);
    script.fail(Call::transfer, 1, 1, EIO);
    EXPECT_EQ(preset.call(), 0) << "the retry succeeds, variant " << preset.variant;
    script.fail(Call::transfer, 1, forever, EIO);
    EXPECT_EQ(preset.call(), 0xFF) << "variant " << preset.variant;
    EXPECT_EQ(GetLensType(), -1);
  }
}

TEST(CounterPreset, SendsNothingWhileTheLatchIsSet) {
  for (const ModuleCase& preset : presets) {
    Script script;
    SetLensType(preset.variant);
    set_latch(script);
    EXPECT_EQ(preset.call(), 0xFF) << "variant " << preset.variant;
    EXPECT_EQ(script.transcript(), "lock\nunlock\n");
  }
}

TEST(CounterPreset, TakesTheLock) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(SetFocusCount(0), 0);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_renesas
lock
spi_renesas: 0F 00 14 00 00 23 00
unlock
)");
}

}  // namespace
