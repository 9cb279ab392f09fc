#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

TEST(Variant, IsSevenAtLoadButHidden) {
  Script script;
  EXPECT_EQ(gi30516Ver, 7);
  EXPECT_EQ(GetLensType(), -1);
  EXPECT_EQ(script.transcript(), "");
}

TEST(Variant, IsStoredAndSeenAfterSetLensTypeWithoutAnyTransfer) {
  Script script;
  for (const int32_t type : {7, 8, 9}) {
    EXPECT_EQ(SetLensType(type), 0);
    EXPECT_EQ(gi30516Ver, type);
    EXPECT_EQ(GetLensType(), type);
  }
  EXPECT_EQ(fd, -1);
  EXPECT_EQ(script.transcript(), "");
}

TEST(Variant, MayBeAnyNumber) {
  Script script;
  EXPECT_EQ(SetLensType(5), 0);
  EXPECT_EQ(GetLensType(), 5);
  EXPECT_EQ(SetLensType(-2147483647 - 1), 0);
  EXPECT_EQ(GetLensType(), -2147483647 - 1);
  EXPECT_EQ(SetLensType(0), 0);
  EXPECT_EQ(GetLensType(), 0);
}

TEST(Variant, LetsFramesFlowOnceItIsSet) {
  Script script;
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0xFF);
  SetLensType(5);
  script.transcript();
  EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0);
  EXPECT_EQ(script.transcript(), "lock\nspi_renesas: 01 00 00 00 00 01 00\nunlock\n");
}

TEST(Variant, FollowsTheExportedVariable) {
  Script script;
  SetLensType(7);
  gi30516Ver = 9;
  EXPECT_EQ(GetLensType(), 9);
}

TEST(Variant, IsHiddenAfterATransferThatFailedWithMinusOne) {
  Script script;
  SetLensType(8);
  std::uint8_t out[4] = {};
  script.fail(Call::transfer, 1, 1, EIO);
  RecvCommand(0x80, 0, out);
  EXPECT_EQ(GetLensType(), -1);
  EXPECT_EQ(gi30516Ver, 8);
}

TEST(Variant, IsNotHiddenByAnotherNonzeroLatch) {
  Script script;
  SetLensType(8);
  std::uint8_t out[4] = {};
  script.result(Call::transfer, 1, 255);
  EXPECT_EQ(RecvCommand(0x80, 0, out), 255);
  EXPECT_EQ(GetLensType(), 8);
}

TEST(Version, IsAskedWith85OnVariant7) {
  Script script;
  SetLensType(7);
  script.query_reply(0x85, {0x0A, 0x0B, 0x0C, 0x0D});
  std::uint32_t version = 0xFFFFFFFF;
  EXPECT_EQ(getVersion(&version), 0);
  EXPECT_EQ(version, 0x0C0DU);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
spi_renesas: 85 00 00 00 01 86 00 00 00 00 00 00
out "Ver:0a 0b 0c 0d \n"
)");
}

TEST(Version, IsAskedWith86OnVariant8) {
  Script script;
  SetLensType(8);
  script.query_reply(0x86, {0x00, 0x00, 0xFF, 0xFE});
  std::uint32_t version = 0xFFFFFFFF;
  EXPECT_EQ(getVersion(&version), 0);
  EXPECT_EQ(version, 0xFFFEU);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
spi_renesas: 86 00 00 00 01 87 00 00 00 00 00 00
out "Ver:00 00 ff fe \n"
)");
}

TEST(Version, IsAskedWith86OnVariant9) {
  Script script;
  SetLensType(9);
  script.query_reply(0x86, {0x01, 0x02, 0x03, 0x04});
  std::uint32_t version = 0xFFFFFFFF;
  EXPECT_EQ(getVersion(&version), 0);
  EXPECT_EQ(version, 0x0304U);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
spi_renesas: 86 00 00 00 01 87 00 00 00 00 00 00
out "Ver:01 02 03 04 \n"
)");
}

TEST(Version, IsNotAskedOnAnyOtherVariant) {
  Script script;
  for (const int32_t type : {6, 10, 0, -1}) {
    SetLensType(type);
    std::uint32_t version = 0x12345678;
    EXPECT_EQ(getVersion(&version), 0);
    EXPECT_EQ(version, 0x12345678U);
  }
  EXPECT_EQ(script.transcript(), "");
}

TEST(Version, IsZeroAndPrintedSoBeforeTheControllerWasBroughtUp) {
  Script script;
  script.query_reply(0x85, {1, 2, 3, 4});
  std::uint32_t version = 0xFFFFFFFF;
  EXPECT_EQ(getVersion(&version), 0xFF);
  EXPECT_EQ(version, 0U);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
out "Ver:00 00 00 00 \n"
)");
}

TEST(Version, IsNotKeptFromAnEarlierCall) {
  Script script;
  SetLensType(9);
  script.query_reply(0x86, {0x01, 0x02, 0x03, 0x04});
  std::uint32_t version = 0;
  getVersion(&version);
  EXPECT_EQ(version, 0x0304U);
  script.fail(Call::transfer, 1, 2, EIO);
  SendCommand(1, 0, 0, 0, 0);
  script.transcript();
  EXPECT_EQ(getVersion(&version), 0xFF);
  EXPECT_EQ(version, 0U);
  EXPECT_EQ(script.transcript(), "out \"Ver:00 00 00 00 \\n\"\n");
}

TEST(Version, LatchesAFailedQueryWithoutARetry) {
  Script script;
  SetLensType(8);
  script.fail(Call::transfer, 1, 1, EIO);
  std::uint32_t version = 0xFFFFFFFF;
  EXPECT_EQ(getVersion(&version), 0xFF);
  EXPECT_EQ(version, 0U);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
spi_renesas: 86 00 00 00 01 87 00 00 00 00 00 00 -> EIO
out "Ver:00 00 00 00 \n"
)");
  EXPECT_EQ(GetLensType(), -1);
}

TEST(Version, ReturnsTheLowByteOfAPositiveLatch) {
  Script script;
  SetLensType(8);
  script.result(Call::transfer, 1, 0x203);
  std::uint32_t version = 0;
  EXPECT_EQ(getVersion(&version), 3);
  EXPECT_EQ(GetLensType(), 8);
}

TEST(Version, IsZeroWithoutADevice) {
  Script script;
  SetLensType(7);
  script.fail(Call::open, 1, forever, ENOENT);
  std::uint32_t version = 0xFFFFFFFF;
  EXPECT_EQ(getVersion(&version), 0xFF);
  EXPECT_EQ(version, 0U);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
fd -1: 85 00 00 00 01 86 00 00 00 00 00 00 -> EBADF
out "Ver:00 00 00 00 \n"
)");
  EXPECT_EQ(GetLensType(), -1);
}

}  // namespace
