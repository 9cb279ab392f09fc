// The offsets that a calibration of the photo-interrupters has found.
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
using kelvo::test::set_latch;

TEST(InterrupterOffset, IsReadByTheModulesOwnQuery) {
  const ModuleCase rows[] = {
      {7, calling<GetFocusOffset>, "spi_renesas: CD 00 00 00 01 CE 00 00 00 00 00 00\n"},
      {8, calling<GetFocusOffset>, "spi_renesas: 91 00 00 00 01 92 00 00 00 00 00 00\n"},
      {9, calling<GetFocusOffset>, "spi_renesas: 91 00 00 00 01 92 00 00 00 00 00 00\n"},
      {6, calling<GetFocusOffset>, ""},
      {10, calling<GetFocusOffset>, ""},
      {7, calling<GetZoom2Offset>, "spi_renesas: CE 00 00 00 01 CF 00 00 00 00 00 00\n"},
      {8, calling<GetZoom2Offset>, ""},
      {9, calling<GetZoom2Offset>, ""},
      {6, calling<GetZoom2Offset>, ""},
      {10, calling<GetZoom2Offset>, ""},
  };
  expect_cases(rows);
}

struct Offset {
  int32_t variant;
  uint32_t (*read)();
  std::uint8_t query;
};
const Offset offsets[] = {
    {7, GetFocusOffset, 0xCD},
    {8, GetFocusOffset, 0x91},
    {9, GetFocusOffset, 0x91},
    {7, GetZoom2Offset, 0xCE},
};

TEST(InterrupterOffset, IsHighByteFirstAndKeepsItsSign) {
  for (const Offset& offset : offsets) {
    Script script;
    SetLensType(offset.variant);
    script.query_reply_once(offset.query, {0x01, 0x02, 0x03, 0x04});
    script.query_reply_once(offset.query, {0xFF, 0xFF, 0xFF, 0xFB});
    EXPECT_EQ(offset.read(), 0x01020304U) << "variant " << offset.variant;
    EXPECT_EQ(offset.read(), 0xFFFFFFFBU) << "variant " << offset.variant;
  }
}

TEST(InterrupterOffset, IsNoughtWhenNothingIsReceived) {
  for (const Offset& offset : offsets) {
    Script script;
    SetLensType(offset.variant);
    script.query_reply(offset.query, {1, 2, 3, 4});
    offset.read();
    script.fail(Call::transfer, 1, 1, EIO);
    EXPECT_EQ(offset.read(), 0U) << "variant " << offset.variant;
    EXPECT_EQ(GetLensType(), -1);
    script.transcript();
    EXPECT_EQ(offset.read(), 0U) << "variant " << offset.variant;
    EXPECT_EQ(script.transcript(), "");
  }
}

}  // namespace
