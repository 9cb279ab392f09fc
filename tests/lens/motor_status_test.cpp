// Whether a lens motor runs.
#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "lens/module_case.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::Script;
using kelvo::test::set_latch;

constexpr std::uint8_t untouched = 0xEE;

/// A status query of one module, and the place of the deciding byte among the four of its reply.
struct Status {
  int32_t variant;
  uint8_t (*ask)(uint8_t*);
  const char* query;
  std::uint8_t code;
  std::size_t place;
};
const Status served[] = {
    {7, getZoom1Status, "spi_renesas: BF 00 00 00 01 C0 00 00 00 00 00 00\n", 0xBF, 3},
    {8, getZoom1Status, "spi_renesas: 8D 00 00 00 01 8E 00 00 00 00 00 00\n", 0x8D, 3},
    {9, getZoom1Status, "spi_renesas: 8C 00 3C 00 01 C9 00 00 00 00 00 00\n", 0x8C, 2},
    {7, getZoom2Status, "spi_renesas: 8F 00 3C 00 01 CC 00 00 00 00 00 00\n", 0x8F, 2},
    {8, getZoom2Status, "spi_renesas: 8C 00 3C 00 01 C9 00 00 00 00 00 00\n", 0x8C, 2},
    {8, getZoom3Status, "spi_renesas: AC 00 00 00 01 AD 00 00 00 00 00 00\n", 0xAC, 3},
    {7, getFocusStatus, "spi_renesas: 8F 00 1C 00 01 AC 00 00 00 00 00 00\n", 0x8F, 2},
    {8, getFocusStatus, "spi_renesas: 8C 00 1C 00 01 A9 00 00 00 00 00 00\n", 0x8C, 2},
    {9, getFocusStatus, "spi_renesas: 8C 00 1C 00 01 A9 00 00 00 00 00 00\n", 0x8C, 2},
};

TEST(MotorStatus, IsAskedWithTheModulesOwnQueryWithoutALock) {
  for (const Status& status : served) {
    Script script;
    SetLensType(status.variant);
    InitSPI();
    script.transcript();
    std::uint8_t running = untouched;
    EXPECT_EQ(status.ask(&running), 0);
    EXPECT_EQ(script.transcript(), status.query) << "variant " << status.variant;
    EXPECT_EQ(running, 0);
  }
}

TEST(MotorStatus, IsOneForAnyValueOfTheDecidingByteButZero) {
  for (const Status& status : served) {
    for (const std::uint8_t value : {1, 2, 0x80, 0xFF}) {
      Script script;
      SetLensType(status.variant);
      Bytes reply(4, 0);
      reply[status.place] = value;
      script.query_reply(status.code, reply);
      std::uint8_t running = untouched;
      EXPECT_EQ(status.ask(&running), 0);
      EXPECT_EQ(running, 1) << status.query << "value " << int{value};
    }
  }
}

TEST(MotorStatus, LooksAtNoOtherByte) {
  for (const Status& status : served) {
    Script script;
    SetLensType(status.variant);
    Bytes reply(4, 0xFF);
    reply[status.place] = 0;
    script.query_reply(status.code, reply);
    std::uint8_t running = untouched;
    EXPECT_EQ(status.ask(&running), 0);
    EXPECT_EQ(running, 0) << status.query;
  }
}

TEST(MotorStatus, LeavesTheCallersByteAloneWhereNothingIsAsked) {
  const Status unserved[] = {
      {9, getZoom2Status, "", 0, 0},  {7, getZoom3Status, "", 0, 0},
      {9, getZoom3Status, "", 0, 0},  {6, getZoom1Status, "", 0, 0},
      {10, getZoom1Status, "", 0, 0}, {6, getZoom2Status, "", 0, 0},
      {10, getZoom2Status, "", 0, 0}, {6, getZoom3Status, "", 0, 0},
      {10, getZoom3Status, "", 0, 0}, {6, getFocusStatus, "", 0, 0},
      {10, getFocusStatus, "", 0, 0}, {-1, getFocusStatus, "", 0, 0},
  };
  for (const Status& status : unserved) {
    Script script;
    SetLensType(status.variant);
    std::uint8_t running = untouched;
    EXPECT_EQ(status.ask(&running), 0);
    EXPECT_EQ(running, untouched) << "variant " << status.variant;
    EXPECT_EQ(script.transcript(), "");
  }
}

TEST(MotorStatus, IsNotRunningAndTheLatchWhenTheQueryFails) {
  for (const Status& status : served) {
    Script script;
    SetLensType(status.variant);
    script.query_reply(status.code, {1, 1, 1, 1});
    script.fail(Call::transfer, 1, 1, EIO);
    std::uint8_t running = untouched;
    EXPECT_EQ(status.ask(&running), 0xFF);
    EXPECT_EQ(running, 0) << status.query;
    EXPECT_EQ(GetLensType(), -1);
  }
}

TEST(MotorStatus, IsNotRunningAndTheLatchWhileTheLatchIsSet) {
  for (const Status& status : served) {
    Script script;
    SetLensType(status.variant);
    script.query_reply(status.code, {1, 1, 1, 1});
    std::uint8_t running = untouched;
    status.ask(&running);
    set_latch(script);
    EXPECT_EQ(status.ask(&running), 0xFF);
    EXPECT_EQ(running, 0) << status.query;
    EXPECT_EQ(script.transcript(), "");
  }
}

TEST(MotorStatus, OfIrisAndFilterIsAlwaysZeroAndWritesNothing) {
  Script script;
  for (const int32_t variant : {7, 8, 9, 6}) {
    SetLensType(variant);
    std::uint8_t running = untouched;
    EXPECT_EQ(getIrisStatus(&running), 0);
    EXPECT_EQ(getICRStatus(&running), 0);
    EXPECT_EQ(running, untouched);
  }
  EXPECT_EQ(script.transcript(), "");
}

}  // namespace
