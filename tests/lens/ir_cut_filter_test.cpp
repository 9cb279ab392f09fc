// The IR-cut filter of each lens module.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

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

TEST(IrCutFilter, IsSteppedOnDe015AtItsOwnSpeed) {
  const char* const on = R"(spi_pt5111: CF C0
spi_pt5111: 34 00
spi_pt5111: 74 00
spi_pt5111: 00 80
spi_pt5111: 04 14
spi_pt5111: 08 00
spi_pt5111: 0F 0D
spi_pt5111: 11 80
spi_pt5111: 3E 80
)";
  const char* const off = R"(spi_pt5111: CF C0
spi_pt5111: 34 00
spi_pt5111: 74 00
spi_pt5111: 02 80
spi_pt5111: 04 14
spi_pt5111: 08 00
spi_pt5111: 0F 0D
spi_pt5111: 11 80
spi_pt5111: 3E 80
)";
  const ModuleCase rows[] = {
      {7, calling<setICRon, 0, 20U>, on},
      {7, calling<setICRon, 255, 20U>, on},
      {7, calling<setICRoff, 0, 20U>, off},
      {7, calling<setICRoff, 255, 20U>, off},
  };
  expect_cases(rows);
}

TEST(IrCutFilter, IsPulsedThroughTheDriverChipOnDf033) {
  const char* const on = R"(spi_renesas: 2F 02 CF C0 00 C0 00
spi_renesas: 2F 02 41 40 00 B2 00
spi_renesas: 2F 02 73 EF 00 93 00
spi_renesas: 2F 02 7E 00 00 AF 00
usleep 200000
spi_renesas: 2F 02 7C 00 00 AD 00
)";
  const char* const off = R"(spi_renesas: 2F 02 CF C0 00 C0 00
spi_renesas: 2F 02 41 40 00 B2 00
spi_renesas: 2F 02 71 EF 00 91 00
spi_renesas: 2F 02 7E 00 00 AF 00
usleep 200000
spi_renesas: 2F 02 7C 00 00 AD 00
)";
  const ModuleCase rows[] = {
      {8, calling<setICRon, 100, 20U>, on},
      {8, calling<setICRoff, 100, 70000U>, off},
  };
  expect_cases(rows);
}

// The two differ in the line and in one value.
const char* const t5391_on = R"(out "T5391 ICR on\n"
spi_renesas: 0C 00 FC 01 F0 F9 00
spi_renesas: 0C 00 82 00 00 8E 00
spi_renesas: 0C 00 90 01 93 30 00
spi_renesas: 0C 00 A0 00 00 AC 00
spi_renesas: 0C 00 B6 00 00 C2 00
spi_renesas: 0C 00 BA 00 FF C5 00
spi_renesas: 0C 00 BE 00 08 D2 00
spi_renesas: 0C 00 FC 01 F3 FC 00
spi_renesas: 0C 00 82 00 03 91 00
usleep 500000
spi_renesas: 0C 00 82 00 01 8F 00
usleep 10000
spi_renesas: 0C 00 82 00 00 8E 00
)";
const char* const t5391_off = R"(out "T5391 ICR off\n"
spi_renesas: 0C 00 FC 01 F0 F9 00
spi_renesas: 0C 00 82 00 00 8E 00
spi_renesas: 0C 00 90 01 93 30 00
spi_renesas: 0C 00 A0 00 00 AC 00
spi_renesas: 0C 00 B6 00 00 C2 00
spi_renesas: 0C 00 BA 02 FF C7 00
spi_renesas: 0C 00 BE 00 08 D2 00
spi_renesas: 0C 00 FC 01 F3 FC 00
spi_renesas: 0C 00 82 00 03 91 00
usleep 500000
spi_renesas: 0C 00 82 00 01 8F 00
usleep 10000
spi_renesas: 0C 00 82 00 00 8E 00
)";

TEST(IrCutFilter, IsDrivenByRegistersOnT5391) {
  const ModuleCase rows[] = {
      {9, calling<setICRon, 0, 0U>, t5391_on},
      {9, calling<setICRon, 255, 70000U>, t5391_on},
      {9, calling<setICRoff, 0, 0U>, t5391_off},
      {9, calling<setICRoff, 255, 70000U>, t5391_off},
  };
  expect_cases(rows);
}

TEST(IrCutFilter, TakesTheLockForEachRegisterAndNotForTheWaits) {
  Script script;
  SetLensType(9);
  EXPECT_EQ(setICRon(0, 0), 0U);
  const std::string transcript = script.transcript();
  EXPECT_EQ(transcript.substr(transcript.find("lock\nspi_renesas: 0C 00 82 00 03")),
            R"(lock
spi_renesas: 0C 00 82 00 03 91 00
unlock
usleep 500000
lock
spi_renesas: 0C 00 82 00 01 8F 00
unlock
usleep 10000
lock
spi_renesas: 0C 00 82 00 00 8E 00
unlock
)");
}

TEST(IrCutFilter, IsLeftAloneOnOtherModules) {
  for (const int32_t variant : {6, 10, 0, -1}) {
    const ModuleCase rows[] = {
        {variant, calling<setICRon, 100, 20U>, ""},
        {variant, calling<setICRoff, 100, 20U>, ""},
    };
    expect_cases(rows);
  }
}

TEST(IrCutFilter, GoesThroughItsStepsWhileTheLatchIsSet) {
  Script script;
  SetLensType(9);
  set_latch(script);
  EXPECT_EQ(setICRoff(0, 0), 0U);
  EXPECT_EQ(script.transcript_without({"lock", "unlock"}),
            "out \"T5391 ICR off\\n\"\nusleep 500000\nusleep 10000\n");
}

TEST(IrCutFilter, IsZeroWhateverFails) {
  for (const int32_t variant : {7, 8, 9}) {
    for (const int failing : {1, 2, 5, 9}) {
      Script script;
      SetLensType(variant);
      script.fail(Call::transfer, failing, forever, EIO);
      EXPECT_EQ(setICRon(0, 0), 0U) << "variant " << variant;
      EXPECT_EQ(setICRoff(0, 0), 0U) << "variant " << variant;
    }
  }
}

TEST(IrCutFilter, IsZeroThoughTheDriverCannotBeOpened) {
  Script script;
  SetLensType(7);
  script.fail(Call::open, 1, forever, ENOENT);
  EXPECT_EQ(setICRon(0, 20), 0U);
  EXPECT_EQ(setICRoff(0, 20), 0U);
  EXPECT_EQ(script.count(Call::transfer), 0);
}

TEST(IrCutFilter, IsReleasedThoughAWaitFails) {
  Script script;
  SetLensType(9);
  script.fail(Call::usleep, 1, forever, EINTR);
  EXPECT_EQ(setICRon(0, 0), 0U);
  EXPECT_EQ(script.count(Call::transfer), 11);
}

}  // namespace
