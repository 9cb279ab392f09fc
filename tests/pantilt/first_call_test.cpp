// Whichever function comes first asks for the family, and no later one does.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "kelvo.h"
#include "pantilt/head.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

struct FirstCall {
  const char* name;
  std::int32_t (*call)();
};
void PrintTo(const FirstCall& first, std::ostream* out) { *out << first.name; }

uint32_t a, b;
uint8_t table[336];

constexpr FirstCall asking[] = {
    {"GetMotorType", GetMotorType},
    {"GetTiltPos", [] { return GetTiltPos(&a); }},
    {"GetTiltVersion", GetTiltVersion},
    {"PanGetCaliStatus", PanGetCaliStatus},
    {"TiltGetCaliStatus", TiltGetCaliStatus},
    {"GetPanHallSetting", GetPanHallSetting},
    {"GetTiltHallSetting", GetTiltHallSetting},
    {"GetPanStatus", GetPanStatus},
    {"GetTiltStatus", GetTiltStatus},
    {"GetPanSleepMode", GetPanSleepMode},
    {"GetTiltSleepMode", GetTiltSleepMode},
    {"GetPanProgState", GetPanProgState},
    {"GetTiltProgState", GetTiltProgState},
    {"GetPanTemp", GetPanTemp},
    {"GetTiltTemp", GetTiltTemp},
    {"PanLimitstep", [] { return PanLimitstep(1); }},
    {"TiltLimitstep", [] { return TiltLimitstep(1); }},
    {"PanLimitEn", [] { return PanLimitEn(1); }},
    {"TiltLimitEn", [] { return TiltLimitEn(1); }},
    {"PanLimitSet", [] { return PanLimitSet(1, 2); }},
    {"TiltLimit", [] { return TiltLimit(1, 2); }},
    {"GetPanLimitEn", GetPanLimitEn},
    {"GetTiltLimitEn", GetTiltLimitEn},
    {"GetPanLimitPos", [] { return GetPanLimitPos(&a, &b); }},
    {"GetTiltLimitPos", [] { return GetTiltLimitPos(&a, &b); }},
    {"PanReset", PanReset},
    {"TiltReset", TiltReset},
    {"PanStop", PanStop},
    {"TiltStop", TiltStop},
    {"SetPanWakeUp", SetPanWakeUp},
    {"SetTiltWakeUp", SetTiltWakeUp},
    {"PanTurboMode", [] { return PanTurboMode(1); }},
    {"TiltTurboMode", [] { return TiltTurboMode(1); }},
    {"SetPanCurrent", [] { return SetPanCurrent(1); }},
    {"SetTILTCurrent", [] { return SetTILTCurrent(1); }},
    {"PanInitParam", PanInitParam},
    {"TiltInitParam", TiltInitParam},
    {"SetVetraPanPID", [] { return SetVetraPanPID(16, 1, 2); }},
    {"SetVetraTiltPID", [] { return SetVetraTiltPID(16, 1, 2); }},
    {"GetVetraPanPID", [] { return GetVetraPanPID(16, &a, &b); }},
    {"GetVetraTiltPID", [] { return GetVetraTiltPID(16, &a, &b); }},
    {"PanPosPIDsetup", [] { return PanPosPIDsetup(1, 2); }},
    {"TiltPosPIDsetup", [] { return TiltPosPIDsetup(1, 2); }},
    {"PanPIDsetup", [] { return PanPIDsetup(1, 2, 3); }},
    {"TiltPIDsetup", [] { return TiltPIDsetup(1, 2, 3); }},
    {"Pan_Setup_PID", [] { return Pan_Setup_PID(0, 0, 0); }},
    {"Tilt_Setup_PID", [] { return Tilt_Setup_PID(0, 0, 0); }},
    {"Set_stop_PID", Set_stop_PID},
    {"PanContinuousMove", [] { return PanContinuousMove(0, 1); }},
    {"TiltContinuousMove", [] { return TiltContinuousMove(0, 1); }},
    {"PanABSMove", [] { return PanABSMove(0, 1, 2); }},
    {"TiltABSMove", [] { return TiltABSMove(0, 1, 2); }},
};

class First : public testing::TestWithParam<FirstCall> {};
class FirstOnVetra : public First {};
class FirstOnTasmere : public First {};

TEST_P(FirstOnVetra, AsksForTheFamilyOnce) {
  Script script;
  unknown_head(script);
  script.i2c_register(40, 0xF0, {'V', 'X'});
  GetParam().call();
  EXPECT_TRUE(script.transcript().starts_with(vetra_detection));
  GetParam().call();
  EXPECT_EQ(GetMotorType(), 1);
  EXPECT_EQ(script.transcript().find("Motor Type"), std::string::npos);
}

TEST_P(FirstOnTasmere, AsksForTheFamilyOnce) {
  Script script;
  unknown_head(script);
  GetParam().call();
  EXPECT_TRUE(script.transcript().starts_with(tasmere_detection));
  GetParam().call();
  EXPECT_EQ(GetMotorType(), 2);
  EXPECT_EQ(script.transcript().find("Motor Type"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Head, FirstOnVetra, testing::ValuesIn(asking),
                         [](const auto& row) { return std::string(row.param.name); });
INSTANTIATE_TEST_SUITE_P(Head, FirstOnTasmere, testing::ValuesIn(asking),
                         [](const auto& row) { return std::string(row.param.name); });

/// Functions that do without the family: what they send while nobody has asked for it.
constexpr HeadCall indifferent[] = {
    {"GetPanPos", [] { return GetPanPos(&a); }, "i2c 40: w 32 r 2\n"},
    {"GetPanVersion", GetPanVersion, "i2c 40: w 30 r 1\n"},
    {"Pan_AccDec_setup", [] { return Pan_AccDec_setup(1, 2); },
     "i2c 40: w 13 00 00 00 01\ni2c 40: w 15 00 00 00 02\n"},
    {"Tilt_AccDec_setup", [] { return Tilt_AccDec_setup(1, 2); },
     "i2c 41: w 13 00 00 00 01\ni2c 41: w 15 00 00 00 02\n"},
    {"Pan_SendI2C_Advanced", [] { return Pan_SendI2C_Advanced(6, 1, 1); }, "i2c 40: w 06 01\n"},
    {"Tilt_SendI2C_Advanced", [] { return Tilt_SendI2C_Advanced(6, 1, 1); }, "i2c 41: w 06 01\n"},
    {"Init_Setup_PID", [] { return Init_Setup_PID(table); }, ""},
    {"Debug_PID_En", [] { return Debug_PID_En(0); }, ""},
    {"Vetra2Tasmere", [] { return static_cast<std::int32_t>(Vetra2Tasmere(3500)); }, "", 65535},
    {"Tasmere2Vetra", [] { return Tasmere2Vetra(0); }, "", 3500},
};

TEST(Head, IsUsedByTheseWithoutAsking) {
  Script script;
  unknown_head(script);
  script.i2c_register(40, 0xF0, {'V', 'X'});
  expect_on_tasmere(script, indifferent);
  EXPECT_EQ(GetMotorType(), 1);
  EXPECT_EQ(script.transcript(), vetra_detection);
}

TEST(Head, IsNotAskedWhileTheGainsAreFrozen) {
  Script script;
  unknown_head(script);
  Debug_PID_En(1);
  EXPECT_EQ(Pan_Setup_PID(1, 100, 5), 0);
  EXPECT_EQ(Tilt_Setup_PID(0, 100, 5), 0);
  EXPECT_EQ(Set_stop_PID(), 0);
  EXPECT_EQ(script.transcript(), "");
}

}  // namespace
}  // namespace kelvo::test
