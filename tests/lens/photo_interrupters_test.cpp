// The photo-interrupters of the lens motors: calibration, power and state.
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
using kelvo::test::forever;
using kelvo::test::ModuleCase;
using kelvo::test::Script;
using kelvo::test::set_latch;

constexpr std::int64_t no_interrupter = 0xFFFFFFFF;

TEST(InterrupterCalibration, IsStartedForOneSensorOrForAll) {
  const ModuleCase rows[] = {
      {7, calling<setPICalibraition, 0>, "spi_renesas: 71 00 00 00 63 D4 00\n"},
      {7, calling<setPICalibraition, 1>, "spi_renesas: 71 01 00 00 63 D5 00\n"},
      {7, calling<setPICalibraition, 2>, "spi_renesas: 71 02 00 00 63 D6 00\n"},
      {7, calling<setPICalibraition, -1>,
       "spi_renesas: 71 00 00 00 63 D4 00\n"
       "spi_renesas: 71 01 00 00 63 D5 00\n"
       "spi_renesas: 71 02 00 00 63 D6 00\n"},
      {8, calling<setPICalibraition, 0>, "spi_renesas: 20 00 00 00 63 83 00\n"},
      {8, calling<setPICalibraition, 1>, "spi_renesas: 20 01 00 00 63 84 00\n"},
      {8, calling<setPICalibraition, 2>, "spi_renesas: 20 02 00 00 63 85 00\n"},
      {8, calling<setPICalibraition, -1>,
       "spi_renesas: 20 00 00 00 63 83 00\n"
       "spi_renesas: 20 01 00 00 63 84 00\n"
       "spi_renesas: 20 02 00 00 63 85 00\n"},
      {9, calling<setPICalibraition, 0>, "spi_renesas: 20 00 00 00 61 81 00\n"},
      {9, calling<setPICalibraition, 1>, "spi_renesas: 20 01 00 00 61 82 00\n"},
      {9, calling<setPICalibraition, 2>, ""},
      {9, calling<setPICalibraition, -1>,
       "spi_renesas: 20 00 00 00 61 81 00\n"
       "spi_renesas: 20 01 00 00 61 82 00\n"},
  };
  expect_cases(rows);
}

TEST(InterrupterCalibration, IsNotStartedForAnotherSensorOrModule) {
  for (const int32_t variant : {7, 8, 9, 6, 10}) {
    const ModuleCase rows[] = {
        {variant, calling<setPICalibraition, 3>, ""},
        {variant, calling<setPICalibraition, -2>, ""},
        {variant, calling<setPICalibraition, 256>, ""},
        {variant, calling<FocusPIVerification, 0>,
         variant == 8 || variant == 9 ? "spi_renesas: 20 00 00 00 00 20 00\n" : ""},
    };
    expect_cases(rows);
  }
  for (const int32_t variant : {6, 10, -1}) {
    const ModuleCase rows[] = {
        {variant, calling<setPICalibraition, 0>, ""},
        {variant, calling<setPICalibraition, 1>, ""},
        {variant, calling<setPICalibraition, 2>, ""},
        {variant, calling<setPICalibraition, -1>, ""},
        {variant, calling<FocusPIVerification, 1>, ""},
    };
    expect_cases(rows);
  }
}

TEST(FocusVerification, CanOnlyBeSwitchedOnOnDe015) {
  const char* const on_de015 =
      "spi_renesas: 71 00 00 00 10 81 00\nspi_renesas: 71 01 00 00 10 82 00\n";
  const ModuleCase rows[] = {
      {7, calling<FocusPIVerification, 1>, on_de015},
      {7, calling<FocusPIVerification, -1>, on_de015},
      {7, calling<FocusPIVerification, 256>, on_de015},
      {7, calling<FocusPIVerification, 0>, ""},
      {8, calling<FocusPIVerification, 1>, "spi_renesas: 20 00 00 00 10 30 00\n"},
      {8, calling<FocusPIVerification, -1>, "spi_renesas: 20 00 00 00 10 30 00\n"},
      {8, calling<FocusPIVerification, 0>, "spi_renesas: 20 00 00 00 00 20 00\n"},
      {9, calling<FocusPIVerification, 256>, "spi_renesas: 20 00 00 00 10 30 00\n"},
      {9, calling<FocusPIVerification, 0>, "spi_renesas: 20 00 00 00 00 20 00\n"},
  };
  expect_cases(rows);
}

TEST(InterrupterPower, IsSwitchedOnByOneAlone) {
  const ModuleCase rows[] = {
      {7, calling<SetPIPower, 1>, "spi_renesas: 0F 00 88 00 03 9A 00\n"},
      {7, calling<SetPIPower, 0>, "spi_renesas: 0F 00 88 00 00 97 00\n"},
      {7, calling<SetPIPower, 2>, "spi_renesas: 0F 00 88 00 00 97 00\n"},
      {8, calling<SetPIPower, 1>, "spi_renesas: 0C 00 88 00 03 97 00\n"},
      {8, calling<SetPIPower, -1>, "spi_renesas: 0C 00 88 00 00 94 00\n"},
      {9, calling<SetPIPower, 1>, "spi_renesas: 0C 00 88 00 03 97 00\n"},
      {9, calling<SetPIPower, 257>, "spi_renesas: 0C 00 88 00 00 94 00\n"},
      {6, calling<SetPIPower, 1>, "spi_renesas: 0C 00 88 00 03 97 00\n"},
      {10, calling<SetPIPower, 2>, "spi_renesas: 0C 00 88 00 00 94 00\n"},
  };
  expect_cases(rows);
}

TEST(InterrupterState, IsAskedForWithTheSensorInTheFirstArgument) {
  const ModuleCase rows[] = {
      {8, calling<getPI, 5U>, "spi_renesas: A0 05 00 00 01 A6 00 00 00 00 00 00\n"},
      {9, calling<getPI, 0x105U>, "spi_renesas: A0 05 00 00 01 A6 00 00 00 00 00 00\n"},
      {6, calling<getPI, 5U>, "", no_interrupter},
      {10, calling<getPI, 0U>, "", no_interrupter},
  };
  expect_cases(rows);
}

TEST(InterrupterState, IsALevelOnDe015WhosePowerStaysOn) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(getPI(5), 0U);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_renesas
lock
spi_renesas: 0F 00 FC 01 F3 FF 00
unlock
lock
spi_renesas: 0F 00 88 00 02 99 00
unlock
usleep 10000
spi_renesas: 81 05 00 00 00 86 00 00 00 00 00 00
)");
}

/// A reply and what a function with a sensor makes of it.
struct InterrupterReading {
  int32_t variant;
  uint32_t (*read)(uint32_t);
  std::uint8_t query;
  Bytes reply;
  std::uint32_t value;
};

TEST(InterrupterState, FollowsFromTheReply) {
  const InterrupterReading rows[] = {
      {7, getPI, 0x81, {0xFF, 0xFF, 0x00, 0x00}, 0},
      {7, getPI, 0x81, {0xFF, 0xFF, 0x04, 0xCC}, 0},  // 1228
      {7, getPI, 0x81, {0x00, 0x00, 0x04, 0xCD}, 1},  // 1229
      {7, getPI, 0x81, {0x00, 0x00, 0xFF, 0xFF}, 1},
      {8, getPI, 0xA0, {0x00, 0x00, 0x00, 0x01}, 1},
      {8, getPI, 0xA0, {0xFF, 0xFF, 0xFF, 0xFE}, 0},
      {9, getPI, 0xA0, {0x00, 0x00, 0x00, 0x81}, 1},
      {9, getPI, 0xA0, {0x01, 0x01, 0x01, 0x80}, 0},
      {7, getPI_Cali_DE051, 0xCD, {0x00, 0x00, 0x00, 0x03}, 1},
      {8, getPI_Cali_DE051, 0xCD, {0xFF, 0xFF, 0xFF, 0xFE}, 0},
      {9, getPI_Cali_DE051, 0xCD, {0x00, 0x00, 0x00, 0xFF}, 1},
      {6, getPI_Cali_DE051, 0xCD, {0x00, 0x00, 0x00, 0x01}, 1},
  };
  for (const InterrupterReading& row : rows) {
    Script script;
    SetLensType(row.variant);
    script.query_reply(row.query, row.reply);
    EXPECT_EQ(row.read(0), row.value)
        << "variant " << row.variant << ", reply " << testing::PrintToString(row.reply);
  }
}

TEST(InterrupterCalibration, IsAskedForOnEveryModule) {
  for (const int32_t variant : {7, 8, 9, 6, 10}) {
    const char* const query = "spi_renesas: CD 00 05 00 01 D3 00 00 00 00 00 00\n";
    const ModuleCase rows[] = {
        {variant, calling<getPI_Cali_DE051, 5U>, query},
        {variant, calling<getPI_Cali_DE051, 0xFF05U>, query},
    };
    expect_cases(rows);
  }
}

/// Functions that look at no status, with what they return then.
const ModuleCase deaf[] = {
    {7, calling<setPICalibraition, -1>, "lock\nunlock\nlock\nunlock\nlock\nunlock\n"},
    {9, calling<setPICalibraition, -1>, "lock\nunlock\nlock\nunlock\n"},
    {7, calling<FocusPIVerification, 1>, "lock\nunlock\nlock\nunlock\n"},
    {8, calling<FocusPIVerification, 1>, "lock\nunlock\n"},
    {7, calling<SetPIPower, 1>, "lock\nunlock\n"},
    {7, calling<getPI, 1U>, "lock\nunlock\nlock\nunlock\nusleep 10000\n"},
    {8, calling<getPI, 1U>, ""},
    {6, calling<getPI, 1U>, "", no_interrupter},
    {8, calling<getPI_Cali_DE051, 1U>, ""},
};

TEST(Interrupters, AreNotInterruptedWhileTheLatchIsSet) {
  for (const ModuleCase& row : deaf) {
    Script script;
    SetLensType(row.variant);
    for (const std::uint8_t code : {0x81, 0xA0, 0xCD}) script.query_reply(code, {9, 9, 9, 9});
    row.call();
    set_latch(script);
    EXPECT_EQ(row.call(), row.result) << "variant " << row.variant;
    EXPECT_EQ(script.transcript(), row.transcript) << "variant " << row.variant;
  }
}

TEST(Interrupters, LatchAFailureAndTellNothingOfIt) {
  for (const ModuleCase& row : deaf) {
    if (row.variant == 6) continue;
    Script script;
    SetLensType(row.variant);
    for (const std::uint8_t code : {0x81, 0xA0, 0xCD}) script.query_reply(code, {9, 9, 9, 9});
    script.fail(Call::transfer, 1, forever, EIO);
    EXPECT_EQ(row.call(), row.result) << "variant " << row.variant;
    EXPECT_EQ(GetLensType(), -1);
  }
}

TEST(InterrupterState, IsReadWithoutItsWaitOnDe015WhenTheWaitFails) {
  Script script;
  SetLensType(7);
  script.query_reply(0x81, {0, 0, 0x05, 0});
  script.fail(Call::usleep, 1, 1, EINTR);
  EXPECT_EQ(getPI(0), 1U);
  EXPECT_EQ(script.count(Call::transfer), 3);
}

}  // namespace
