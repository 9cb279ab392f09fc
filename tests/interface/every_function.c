#include "interface/every_function.h"

#include <kelvo.h>
#include <stdint.h>
#include <stdio.h>

static void (*say_call)(const char* call);

/* NOLINTBEGIN(bugprone-macro-parentheses): a type stands alone */

/* Calls a function; its result has exactly this type. */
#define CALL(type, call)                                                            \
  do {                                                                              \
    _Static_assert(_Generic((call), type: 1, default: 0), "not " #type ": " #call); \
    say_call(#call);                                                                \
    (void)(call);                                                                   \
  } while (0)

/* NOLINTEND(bugprone-macro-parentheses) */

/* What callers lend. */
static const uint8_t image[16] = {0};
static const uint8_t frame[5] = {5, 0, 0, 0, 0};
static const uint8_t table[336] = {1};
static uint8_t reply[16];
static uint8_t running;
static uint32_t x;
static uint32_t y;

static void bus(void) {
  CALL(int32_t, makeSem(0x4B454C56));
  CALL(int32_t, lockSem((uint32_t)makeSem(0x4B454C56)));
  CALL(int32_t, unlockSem((uint32_t)makeSem(0x4B454C56)));
  CALL(int32_t, delay_ms(1));
  CALL(int32_t, InitSPI());
  CALL(int32_t, setSPISpeed(1000000));
  CALL(int32_t, ResetR2J30516());
  CALL(int32_t, WriteCommand(0xE5, 0, 2, 0));
  CALL(int32_t, WriteData(0x21, sizeof image, image));
  CALL(int32_t, ReadSpi(0x66, reply, 5));
  CALL(uint8_t, SendCommand(5, 0, 0, 0, 0));
  CALL(uint8_t, RecvCommand(0xA1, 0, reply));
  CALL(uint8_t, reg_wt16_0x0c(136, 0));
  CALL(int32_t, CloseSPI());
}

static void modules_and_boot(void) {
  FILE* const stream = tmpfile();
  CALL(int32_t, SetLensType(7));
  CALL(int32_t, GetLensType());
  CALL(uint8_t, getVersion(&x));
  CALL(int32_t, CommTest(frame, 5));
  CALL(int32_t, FileSync(stream));
  CALL(int32_t, DownloadCode(0x21, 0x200, sizeof image, 0, image));
  CALL(int32_t, Init30516());
  CALL(int32_t, Init30516_DF033());
  CALL(int32_t, Init30516_T5391());
  CALL(int32_t, InitOIS_K());
  CALL(int32_t, InitDC_K());
  fclose(stream);
}

static void moves(void) {
  CALL(uint32_t, setZoom1Forward(100, 40));
  CALL(uint32_t, setZoom1Backward(100, 40));
  CALL(uint32_t, setZoom1Forward2_2(100, 40));
  CALL(uint32_t, setZoom1Backward2_2(100, 40));
  CALL(uint32_t, setZoom1uForward(100, 40));
  CALL(uint32_t, setZoom1uBackward(100, -40));
  CALL(uint32_t, setFocusForward(100, 40));
  CALL(uint32_t, setFocusBackward(100, 40));
  CALL(uint32_t, setZoom2Forward(100, 40));
  CALL(uint32_t, setZoom2Backward(100, 40));
  CALL(uint32_t, setZoom2Forward512(100, 40));
  CALL(uint32_t, setZoom2Backward512(100, -40));
  CALL(uint32_t, setZoom3Forward(100, 40));
  CALL(uint32_t, setZoom3Backward(100, 40));
}

static void driver_chip(void) {
  CALL(int64_t, SendPT5111CMD(0xCFC0));
  CALL(int64_t, SteppingMove(0x4000, 512, 100, 40));
  CALL(int64_t, uSteppingMove(0, 0, 100, 40));
  CALL(int64_t, stop());
  CALL(int64_t, piris_open(40));
  CALL(int64_t, piris_close(40));
  CALL(int64_t, ICR_ON(40));
  CALL(int64_t, ICR_OFF(40));
  CALL(int64_t, PT5111_Initialize());
  CALL(int64_t, PT5111Zoom1Forward(100, 40));
  CALL(int64_t, PT5111Zoom1Backward(100, 40));
  CALL(int64_t, uPT5111Zoom1Forward(100, 40));
  CALL(int64_t, uPT5111Zoom1Backward(100, 40));
  CALL(int64_t, PT5111PI1(1));
  CALL(int32_t, PT5111Zoom1OFF());
}

static void counters_status_and_power_off(void) {
  CALL(uint32_t, GetZoom1Count());
  CALL(uint32_t, GetZoom2Count());
  CALL(uint32_t, GetZoom3Count());
  CALL(uint32_t, GetFocusCount());
  CALL(uint8_t, SetZoom1Count(1));
  CALL(uint8_t, SetZoom2Count(1));
  CALL(uint8_t, SetZoom3Count(1));
  CALL(uint8_t, SetFocusCount(1));
  CALL(uint8_t, getZoom1Status(&running));
  CALL(uint8_t, getZoom2Status(&running));
  CALL(uint8_t, getZoom3Status(&running));
  CALL(uint8_t, getFocusStatus(&running));
  CALL(uint8_t, getIrisStatus(&running));
  CALL(uint8_t, getICRStatus(&running));
  CALL(uint32_t, setZoom1PowerOff());
  CALL(uint32_t, setZoom2PowerOff());
  CALL(uint32_t, setZoom3PowerOff());
  CALL(uint32_t, setFocusPowerOff());
  CALL(uint32_t, setIrisPowerOff(1));
  CALL(uint32_t, setICRPowerOff(1));
}

static void interrupters_and_iris(void) {
  CALL(int32_t, setPICalibraition(-1));
  CALL(int32_t, FocusPIVerification(1));
  CALL(int32_t, SetPIPower(1));
  CALL(uint32_t, getPI(1));
  CALL(uint32_t, getPI_Cali_DE051(1));
  CALL(uint32_t, GetFocusOffset());
  CALL(uint32_t, GetZoom2Offset());
  CALL(uint32_t, setIrisForward(100, 40));
  CALL(uint32_t, setIrisBackward(100, 40));
  CALL(uint32_t, setDCIrisABS(0x1234));
  CALL(uint32_t, setICRon(100, 40));
  CALL(uint32_t, setICRoff(100, 40));
  CALL(uint32_t, setHeater(1));
  CALL(uint32_t, getADC(1));
}

static void stabiliser(void) {
  CALL(int32_t, OIS_En(1));
  CALL(int32_t, OIS_Pause(1));
  CALL(uint32_t, Read_OIS_Pause());
  CALL(int32_t, Set_X_GyroGain(-1));
  CALL(int32_t, Set_Y_GyroGain(-1));
  CALL(uint32_t, Read_X_GyroGain());
  CALL(uint32_t, Read_Y_GyroGain());
  CALL(int32_t, Set_XY_Definition(1));
  CALL(int32_t, Set_X_Definition(1));
  CALL(int32_t, Set_Y_Definition(1));
  CALL(int32_t, Get_XY_Data(&x, &y));
  CALL(uint32_t, Get_HallXY_Data(&x, &y));
  CALL(uint8_t, Get_HallX_Data(&x));
  CALL(uint8_t, Get_HallY_Data(&y));
  CALL(int32_t, Set_Mode(0));
  CALL(int32_t, Set_Coma(5));
  CALL(uint32_t, Read_Coma());
  CALL(int32_t, Stationary_detection(1));
  CALL(uint32_t, Read_Stationary_detection());
  CALL(int32_t, Gyro_stability(-1));
  CALL(uint32_t, Read_Gyro_stability());
  CALL(uint32_t, Get_gyro_stable_flag());
}

static void calibration(void) {
  say_call("Load_DC()");
  Load_DC();
  CALL(int32_t, Load_QC());
  CALL(int32_t, Get_DC_Range(&x, &y));
  CALL(int32_t, DC_Quality_Check());
  CALL(int32_t, OIS_Quality_Check());
}

static void head(void) {
  CALL(int32_t, Init_I2C());
  CALL(int32_t, SendI2C(40, 0x32, image, 3));
  CALL(int32_t, ReadI2C(41, 0x32, reply, 2));
  CALL(int32_t, ReadI2C_M(40, 0x32, image, 2, reply, 2));
  CALL(int32_t, GetMotorType());
  CALL(int32_t, GetPanPos(&x));
  CALL(int32_t, GetTiltPos(&x));
  CALL(int32_t, GetPanVersion());
  CALL(int32_t, GetTiltVersion());
  CALL(int32_t, PanGetCaliStatus());
  CALL(int32_t, TiltGetCaliStatus());
  CALL(int32_t, GetPanHallSetting());
  CALL(int32_t, GetTiltHallSetting());
  CALL(int32_t, GetPanStatus());
  CALL(int32_t, GetTiltStatus());
  CALL(int32_t, GetPanSleepMode());
  CALL(int32_t, GetTiltSleepMode());
  CALL(int32_t, GetPanProgState());
  CALL(int32_t, GetTiltProgState());
  CALL(int32_t, GetPanTemp());
  CALL(int32_t, GetTiltTemp());
  CALL(uint32_t, Vetra2Tasmere(9000));
  CALL(int32_t, Tasmere2Vetra(30000));
}

static void limits_and_set_up(void) {
  CALL(int32_t, PanLimitstep(100));
  CALL(int32_t, TiltLimitstep(100));
  CALL(int32_t, PanLimitEn(1));
  CALL(int32_t, TiltLimitEn(1));
  CALL(int32_t, PanLimitSet(100, 60000));
  CALL(int32_t, TiltLimit(100, 60000));
  CALL(int32_t, GetPanLimitEn());
  CALL(int32_t, GetTiltLimitEn());
  CALL(int32_t, GetPanLimitPos(&x, &y));
  CALL(int32_t, GetTiltLimitPos(&x, &y));
  CALL(int32_t, PanReset());
  CALL(int32_t, TiltReset());
  CALL(int32_t, SetPanWakeUp());
  CALL(int32_t, SetTiltWakeUp());
  CALL(int32_t, PanTurboMode(1));
  CALL(int32_t, TiltTurboMode(1));
  CALL(int32_t, SetPanCurrent(1));
  CALL(int32_t, SetTILTCurrent(1));
  CALL(int32_t, PanInitParam());
  CALL(int32_t, TiltInitParam());
}

static void gains_and_moves_of_the_head(void) {
  CALL(int32_t, Init_Setup_PID(table));
  CALL(int32_t, Debug_PID_En(0));
  CALL(int32_t, SetVetraPanPID(0x32, 1, -1));
  CALL(int32_t, SetVetraTiltPID(0x32, 1, -1));
  CALL(int32_t, GetVetraPanPID(0x32, &x, &y));
  CALL(int32_t, GetVetraTiltPID(0x32, &x, &y));
  CALL(int32_t, PanPosPIDsetup(1, 1));
  CALL(int32_t, TiltPosPIDsetup(1, 1));
  CALL(int32_t, PanPIDsetup(1, 1, 1));
  CALL(int32_t, TiltPIDsetup(1, 1, 1));
  CALL(int32_t, Pan_AccDec_setup(1, 1));
  CALL(int32_t, Tilt_AccDec_setup(1, 1));
  CALL(int32_t, Pan_Setup_PID(1, 100, 30000));
  CALL(int32_t, Tilt_Setup_PID(1, 100, 30000));
  CALL(int32_t, Set_stop_PID());
  CALL(int32_t, PanContinuousMove(1, 100));
  CALL(int32_t, TiltContinuousMove(1, 100));
  CALL(int32_t, PanABSMove(1, 100, 30000));
  CALL(int32_t, TiltABSMove(1, 100, 30000));
  CALL(int32_t, Pan_SendI2C_Advanced(0x32, 1, 2));
  CALL(int32_t, Tilt_SendI2C_Advanced(0x32, 1, 2));
  CALL(int32_t, PanStop());
  CALL(int32_t, TiltStop());
  CALL(int32_t, Release_I2C());
}

void call_every_function(void (*say)(const char* call)) {
  say_call = say;
  bus();
  modules_and_boot();
  moves();
  driver_chip();
  counters_status_and_power_off();
  interrupters_and_iris();
  stabiliser();
  calibration();
  head();
  limits_and_set_up();
  gains_and_moves_of_the_head();
}
