#include "costs/functions.h"

#include <cstdio>

#include "kelvo.h"

namespace kelvo::test::costs {
namespace {

// What callers lend.
constexpr std::uint8_t frame[5] = {5, 0, 0, 0, 0};
constexpr std::uint8_t image[64] = {};
constexpr std::uint8_t table[336] = {1, 0, 0, 0};
std::uint8_t bytes[16];
std::uint32_t a;
std::uint32_t b;
FILE* stream = std::tmpfile();

#define KELVO_CALL(scope, call)                          \
  {                                                      \
    #call, Scope::scope, [] { static_cast<void>(call); } \
  }
#define BOOTS(scope, times, images, call)                                                 \
  {                                                                                       \
    #call, Scope::scope, [] { static_cast<void>(call); }, times, wire::LensModule::images \
  }
#define ALONE(call) KELVO_CALL(neither, call)
#define LENS(call) KELVO_CALL(modules, call)
#define HEAD(call) KELVO_CALL(families, call)

constexpr Function bus[] = {
    ALONE(makeSem(0x4B454C56)),
    ALONE(lockSem(0)),
    ALONE(unlockSem(0)),
    ALONE(delay_ms(10)),
    ALONE(InitSPI()),
    ALONE(CloseSPI()),
    ALONE(setSPISpeed(1000000)),
    ALONE(ResetR2J30516()),
    ALONE(WriteCommand(0xE5, 0, 0, 0)),
    ALONE(WriteData(0x21, 64, image)),
    ALONE(ReadSpi(0x66, bytes, 5)),
    LENS(SendCommand(5, 0, 0, 0, 0)),
    LENS(RecvCommand(0xA1, 0, bytes)),
    LENS(reg_wt16_0x0c(134, 1)),
};

constexpr Function module_and_boot[] = {
    ALONE(SetLensType(8)),
    LENS(GetLensType()),
    LENS(getVersion(&a)),
    LENS(CommTest(frame, 5)),
    ALONE(FileSync(stream)),
    ALONE(DownloadCode(0x21, 0x200, 64, 0, image)),
    BOOTS(neither, 1, de015, Init30516()),
    BOOTS(neither, 1, df033, Init30516_DF033()),
    BOOTS(neither, 1, t5391, Init30516_T5391()),
    BOOTS(neither, 1, de015, InitOIS_K()),
    BOOTS(neither, 1, df033, InitDC_K()),
};

constexpr Function motors[] = {
    LENS(setZoom1Forward(100, 200)),
    LENS(setZoom1Backward(100, 200)),
    LENS(setZoom1Forward2_2(100, 200)),
    LENS(setZoom1Backward2_2(100, 200)),
    LENS(setZoom1uForward(100, 200)),
    LENS(setZoom1uBackward(100, 200)),
    LENS(setZoom2Forward(100, 200)),
    LENS(setZoom2Backward(100, 200)),
    LENS(setZoom2Forward512(100, 200)),
    LENS(setZoom2Backward512(100, 200)),
    LENS(setZoom3Forward(100, 200)),
    LENS(setZoom3Backward(100, 200)),
    LENS(setFocusForward(100, 200)),
    LENS(setFocusBackward(100, 200)),
    LENS(GetZoom1Count()),
    LENS(GetZoom2Count()),
    LENS(GetZoom3Count()),
    LENS(GetFocusCount()),
    LENS(SetZoom1Count(0)),
    LENS(SetZoom2Count(0)),
    LENS(SetZoom3Count(0)),
    LENS(SetFocusCount(0)),
    LENS(getZoom1Status(bytes)),
    LENS(getZoom2Status(bytes)),
    LENS(getZoom3Status(bytes)),
    LENS(getFocusStatus(bytes)),
    LENS(getIrisStatus(bytes)),
    LENS(getICRStatus(bytes)),
    LENS(setZoom1PowerOff()),
    LENS(setZoom2PowerOff()),
    LENS(setZoom3PowerOff()),
    LENS(setFocusPowerOff()),
    LENS(setIrisPowerOff(0)),
    LENS(setICRPowerOff(0)),
};

constexpr Function sensors_and_actuators[] = {
    LENS(setPICalibraition(-1)),
    LENS(FocusPIVerification(1)),
    LENS(SetPIPower(1)),
    LENS(getPI(0)),
    LENS(getPI_Cali_DE051(0)),
    LENS(GetFocusOffset()),
    LENS(GetZoom2Offset()),
    LENS(setIrisForward(100, 200)),
    LENS(setIrisBackward(100, 200)),
    LENS(setDCIrisABS(100)),
    LENS(setICRon(100, 200)),
    LENS(setICRoff(100, 200)),
    LENS(setHeater(1)),
    LENS(getADC(0)),
};

constexpr Function pt5111[] = {
    LENS(SendPT5111CMD(0xC400)),
    LENS(SteppingMove(0, 0, 100, 200)),
    LENS(uSteppingMove(0, 0, 100, 200)),
    LENS(stop()),
    LENS(piris_open(200)),
    LENS(piris_close(200)),
    LENS(ICR_ON(200)),
    LENS(ICR_OFF(200)),
    LENS(PT5111_Initialize()),
    LENS(PT5111Zoom1Forward(100, 200)),
    LENS(PT5111Zoom1Backward(100, 200)),
    LENS(uPT5111Zoom1Forward(100, 200)),
    LENS(uPT5111Zoom1Backward(100, 200)),
    LENS(PT5111PI1(1)),
    LENS(PT5111Zoom1OFF()),
};

constexpr Function stabiliser[] = {
    LENS(Load_DC()),
    LENS(Load_QC()),
    LENS(Get_DC_Range(&a, &b)),
    LENS(OIS_En(1)),
    LENS(OIS_Pause(1)),
    LENS(Read_OIS_Pause()),
    LENS(Set_X_GyroGain(1)),
    LENS(Set_Y_GyroGain(1)),
    LENS(Read_X_GyroGain()),
    LENS(Read_Y_GyroGain()),
    LENS(Set_XY_Definition(1)),
    LENS(Set_X_Definition(1)),
    LENS(Set_Y_Definition(1)),
    LENS(Get_XY_Data(&a, &b)),
    LENS(Get_HallXY_Data(&a, &b)),
    LENS(Get_HallX_Data(&a)),
    LENS(Get_HallY_Data(&a)),
    LENS(Set_Mode(0)),
    LENS(Set_Coma(1)),
    LENS(Read_Coma()),
    LENS(Stationary_detection(1)),
    LENS(Read_Stationary_detection()),
    LENS(Gyro_stability(171)),
    LENS(Read_Gyro_stability()),
    LENS(Get_gyro_stable_flag()),
    BOOTS(neither, 2, df033, DC_Quality_Check()),
    BOOTS(neither, 2, de015, OIS_Quality_Check()),
};

constexpr Function head[] = {
    ALONE(Init_I2C()),
    ALONE(Release_I2C()),
    HEAD(SendI2C(40, 1, bytes, 3)),
    HEAD(ReadI2C(40, 4, bytes, 2)),
    HEAD(ReadI2C_M(40, 4, bytes, 3, bytes, 2)),
    HEAD(GetMotorType()),
    HEAD(GetPanPos(&a)),
    HEAD(GetTiltPos(&a)),
    HEAD(GetPanVersion()),
    HEAD(GetTiltVersion()),
    HEAD(PanGetCaliStatus()),
    HEAD(TiltGetCaliStatus()),
    HEAD(GetPanHallSetting()),
    HEAD(GetTiltHallSetting()),
    HEAD(GetPanStatus()),
    HEAD(GetTiltStatus()),
    HEAD(GetPanSleepMode()),
    HEAD(GetTiltSleepMode()),
    HEAD(GetPanProgState()),
    HEAD(GetTiltProgState()),
    HEAD(GetPanTemp()),
    HEAD(GetTiltTemp()),
    HEAD(Vetra2Tasmere(9000)),
    HEAD(Tasmere2Vetra(9000)),
    HEAD(PanLimitstep(100)),
    HEAD(TiltLimitstep(100)),
    HEAD(PanLimitEn(1)),
    HEAD(TiltLimitEn(1)),
    HEAD(PanLimitSet(1000, 60000)),
    HEAD(TiltLimit(1000, 60000)),
    HEAD(GetPanLimitEn()),
    HEAD(GetTiltLimitEn()),
    HEAD(GetPanLimitPos(&a, &b)),
    HEAD(GetTiltLimitPos(&a, &b)),
    HEAD(PanReset()),
    HEAD(TiltReset()),
    HEAD(PanStop()),
    HEAD(TiltStop()),
    HEAD(SetPanWakeUp()),
    HEAD(SetTiltWakeUp()),
    HEAD(PanTurboMode(1)),
    HEAD(TiltTurboMode(1)),
    HEAD(SetPanCurrent(1)),
    HEAD(SetTILTCurrent(1)),
    HEAD(PanInitParam()),
    HEAD(TiltInitParam()),
};

constexpr Function motion[] = {
    HEAD(Init_Setup_PID(table)),
    HEAD(Debug_PID_En(0)),
    HEAD(SetVetraPanPID(17, 1, 2)),
    HEAD(SetVetraTiltPID(17, 1, 2)),
    HEAD(GetVetraPanPID(17, &a, &b)),
    HEAD(GetVetraTiltPID(17, &a, &b)),
    HEAD(PanPosPIDsetup(1, 2)),
    HEAD(TiltPosPIDsetup(1, 2)),
    HEAD(PanPIDsetup(1, 2, 3)),
    HEAD(TiltPIDsetup(1, 2, 3)),
    HEAD(Pan_AccDec_setup(40000, 40000)),
    HEAD(Tilt_AccDec_setup(40000, 40000)),
    HEAD(Pan_Setup_PID(0, 1000, 0)),
    HEAD(Tilt_Setup_PID(0, 1000, 0)),
    HEAD(Set_stop_PID()),
    HEAD(PanContinuousMove(0, 1000)),
    HEAD(TiltContinuousMove(0, 1000)),
    HEAD(PanABSMove(0, 7200, 30000)),
    HEAD(TiltABSMove(0, 7200, 30000)),
    HEAD(Pan_SendI2C_Advanced(1, 2, 2)),
    HEAD(Tilt_SendI2C_Advanced(1, 2, 2)),
};

constexpr Chapter all[] = {
    {"Bus", bus},
    {"Lens module and boot", module_and_boot},
    {"Lens motors", motors},
    {"Photo-interrupters, iris, filter, heater, converter", sensors_and_actuators},
    {"PT5111", pt5111},
    {"Calibration and stabiliser", stabiliser},
    {"Pan/tilt controllers", head},
    {"Pan/tilt motion", motion},
};

}  // namespace

std::span<const Chapter> chapters() { return all; }

}  // namespace kelvo::test::costs
