#include <gtest/gtest.h>

#include <string>

#include "kelvo.h"
#include "pantilt/head.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

TEST(HeadFamily, IsVetraBySignature) {
  Script script;
  unknown_head(script);
  script.i2c_register(40, 0xF0, {'V', 'X'});
  EXPECT_EQ(GetMotorType(), 1);
  EXPECT_EQ(script.transcript(), R"(i2c 40: w F0 r 2
out "Motor Type[0]:0x56 Type[1]:0x58\n"
usleep 2000
i2c 40: w 30 r 1
usleep 2000
)");
}

TEST(HeadFamily, IsAskedOnce) {
  Script script;
  vetra_head(script);
  script.i2c_register(40, 0xF0, {});
  EXPECT_EQ(GetMotorType(), 1);
  EXPECT_EQ(GetMotorType(), 1);
  EXPECT_EQ(script.transcript(), "");
}

TEST(HeadFamily, IsNotAskedAgainWhenTheSignatureComesTooLate) {
  Script script;
  tasmere_head(script);
  script.i2c_register(40, 0xF0, {'V', 'X'});
  EXPECT_EQ(GetMotorType(), 2);
  EXPECT_EQ(script.transcript(), "");
}

TEST(HeadFamily, IsTasmereForGoodWhenTheFirstReadFails) {
  Script script;
  unknown_head(script);
  script.i2c_register(40, 0xF0, {'V', 'X'});
  script.fail(Call::i2c, 1, 1, ENXIO);
  EXPECT_EQ(GetMotorType(), 2);
  EXPECT_EQ(script.transcript(), R"(i2c 40: w F0 r 2 -> ENXIO
out "Motor Type[0]:0x0 Type[1]:0x0\n"
)");
  EXPECT_EQ(GetMotorType(), 2);
  EXPECT_EQ(script.transcript(), "");
}

TEST(HeadFamily, IsTasmereForGoodOnAClosedLink) {
  Script script;
  script.i2c_register(40, 0xF0, {'V', 'X'});
  Release_I2C();
  script.transcript();
  EXPECT_EQ(GetMotorType(), 2);
  EXPECT_EQ(script.transcript(), "out \"Motor Type[0]:0x0 Type[1]:0x0\\n\"\n");
  Init_I2C();
  script.transcript();
  EXPECT_EQ(GetMotorType(), 2);
  EXPECT_EQ(script.transcript(), "");
}

TEST(HeadFamily, IsTasmereForGoodWithoutMemory) {
  Script script;
  unknown_head(script);
  script.i2c_register(40, 0xF0, {'V', 'X'});
  script.fail(Call::calloc, 1, 1, ENOMEM);
  EXPECT_EQ(GetMotorType(), 2);
  EXPECT_EQ(GetMotorType(), 2);
  EXPECT_EQ(script.transcript(), "out \"Motor Type[0]:0x0 Type[1]:0x0\\n\"\n");
}

TEST(HeadFamily, IsAskedOfThePanControllerAlone) {
  Script script;
  unknown_head(script);
  script.i2c_register(41, 0xF0, {'V', 'X'});
  EXPECT_EQ(TiltStop(), 0);
  EXPECT_EQ(script.transcript(), R"(i2c 40: w F0 r 2
out "Motor Type[0]:0x0 Type[1]:0x0\n"
i2c 41: w 07 00 00
)");
}

TEST(HeadFamily, StaysVetraWhenItsVersionCannotBeRead) {
  Script script;
  unknown_head(script);
  script.i2c_register(40, 0xF0, {'V', 'X'});
  script.fail(Call::i2c, 2, 1, ENXIO);
  EXPECT_EQ(GetMotorType(), 1);
  EXPECT_EQ(script.transcript(), R"(i2c 40: w F0 r 2
out "Motor Type[0]:0x56 Type[1]:0x58\n"
usleep 2000
i2c 40: w 30 r 1 -> ENXIO
usleep 2000
)");
  // Both ranges are 18000 counts all the same.
  EXPECT_EQ(Tasmere2Vetra(32768), 12500);
  script.i2c_register(40, 0x32, {0x23, 0x28});
  uint32_t pos = 0;
  EXPECT_EQ(GetPanPos(&pos), 0);
  EXPECT_EQ(pos, 32768U);
}

/// Signatures that are not quite a Vetra's.
struct Signature {
  Bytes bytes;
  const char* printed;
};
class OtherSignature : public testing::TestWithParam<Signature> {};

TEST_P(OtherSignature, IsATasmeres) {
  Script script;
  unknown_head(script);
  script.i2c_register(40, 0xF0, GetParam().bytes);
  EXPECT_EQ(GetMotorType(), 2);
  EXPECT_EQ(script.transcript(),
            std::string("i2c 40: w F0 r 2\nout \"Motor Type[") + GetParam().printed + "\\n\"\n");
}

INSTANTIATE_TEST_SUITE_P(HeadFamily, OtherSignature,
                         testing::Values(Signature{{'V', 'Y'}, "0]:0x56 Type[1]:0x59"},
                                         Signature{{'W', 'X'}, "0]:0x57 Type[1]:0x58"},
                                         Signature{{'X', 'V'}, "0]:0x58 Type[1]:0x56"},
                                         Signature{{'v', 'x'}, "0]:0x76 Type[1]:0x78"},
                                         Signature{{0xFF, 0x0A}, "0]:0xff Type[1]:0xa"}));

TEST(HeadPause, FollowsEveryTransferToAVetra) {
  Script script;
  vetra_head(script);
  script.fail(Call::i2c, 2, 3, ENXIO);
  PanStop();
  TiltStop();
  PanGetCaliStatus();
  GetTiltStatus();
  EXPECT_EQ(script.transcript(), R"(i2c 40: w 06
usleep 2000
i2c 41: w 06 -> ENXIO
usleep 2000
i2c 40: w 31 r 1 -> ENXIO
usleep 2000
i2c 41: w 31 r 1 -> ENXIO
usleep 2000
)");
}

TEST(HeadPause, IsNotTakenOnAClosedLinkOrWithoutMemory) {
  Script script;
  vetra_head(script);
  script.fail(Call::calloc, 1, 2, ENOMEM);
  EXPECT_EQ(PanStop(), 0);
  EXPECT_EQ(TiltGetCaliStatus(), -1);
  EXPECT_EQ(script.transcript(), "");
  Release_I2C();
  script.transcript();
  EXPECT_EQ(PanStop(), 0);
  EXPECT_EQ(TiltGetCaliStatus(), -1);
  EXPECT_EQ(script.transcript(), "");
}

TEST(HeadPause, IsNotForATasmere) {
  Script script;
  tasmere_head(script);
  PanStop();
  TiltGetCaliStatus();
  EXPECT_EQ(script.transcript(), "i2c 40: w 07 00 00\ni2c 41: w 02 r 1\n");
}

}  // namespace
}  // namespace kelvo::test
