// Whatever an application calls of the lens side, on whatever module, the simulated camera has nothing to
// complain of.
#include <gtest/gtest.h>
#include <kelvo.h>

#include <cstdint>

#include "sim/host/installed_camera.h"

namespace {

using kelvo::test::InstalledCamera;

void move_everything() {
  for (const auto move :
       {setZoom1Forward, setZoom1Backward, setZoom1Forward2_2, setZoom1Backward2_2,
        setZoom1uForward, setFocusForward, setFocusBackward, setZoom2Forward, setZoom2Backward,
        setZoom3Forward, setZoom3Backward, setIrisForward, setIrisBackward, setICRon, setICRoff}) {
    move(100, 10);
  }
  setZoom1uBackward(100, -10);
  setZoom2Forward512(100, 10);
  setZoom2Backward512(100, -10);
}

void ask_everything() {
  for (const auto count : {GetZoom1Count, GetZoom2Count, GetZoom3Count, GetFocusCount}) count();
  std::uint8_t running = 0;
  for (const auto status : {getZoom1Status, getZoom2Status, getZoom3Status, getFocusStatus}) {
    status(&running);
  }
  for (std::uint32_t sensor = 0; sensor < 4; ++sensor) {
    getPI(sensor);
    getPI_Cali_DE051(sensor);
    getADC(sensor);
  }
  GetFocusOffset();
  GetZoom2Offset();
  std::uint32_t x = 0;
  std::uint32_t y = 0;
  Get_XY_Data(&x, &y);
  Get_HallXY_Data(&x, &y);
  Get_HallX_Data(&x);
  Get_HallY_Data(&y);
  for (const auto read : {Read_OIS_Pause, Read_X_GyroGain, Read_Y_GyroGain, Read_Coma,
                          Read_Stationary_detection, Read_Gyro_stability, Get_gyro_stable_flag}) {
    read();
  }
}

void set_everything() {
  for (const auto preset : {SetZoom1Count, SetZoom2Count, SetZoom3Count, SetFocusCount}) preset(7);
  for (const auto set : {setPICalibraition, FocusPIVerification, SetPIPower, OIS_En, Set_X_GyroGain,
                         Set_Y_GyroGain, Gyro_stability}) {
    for (const std::int32_t value : {-1, 0, 1, 2, 3}) set(value);
  }
  for (const auto set : {OIS_Pause, Set_XY_Definition, Set_X_Definition, Set_Y_Definition, Set_Coma,
                         Stationary_detection, Set_Mode}) {
    for (const std::uint32_t value : {0U, 1U, 5U, 300U}) set(value);
  }
  setDCIrisABS(70'000);
  setHeater(300);
  PT5111PI1(1);
  for (const auto off : {setZoom1PowerOff, setZoom2PowerOff, setZoom3PowerOff, setFocusPowerOff}) {
    off();
  }
  stop();
}

TEST(LensInterface, IsWithoutViolationsOnEveryModule) {
  InstalledCamera camera;
  for (std::int32_t (*boot)() : {Init30516, Init30516_DF033, Init30516_T5391}) {
    ASSERT_EQ(boot(), 0);
    move_everything();
    ask_everything();
    set_everything();
    move_everything();
    ask_everything();
    EXPECT_NE(GetLensType(), -1);
  }
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

}  // namespace
