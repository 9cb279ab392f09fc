// The camera for tests in C++, used as somebody else would.
#include "sim/testing/test_camera.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <kelvo.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <string>

namespace {

using kelvo::sim::TestCamera;
using kelvo::sim::camera::Camera;
using kelvo::sim::camera::HeadAxis;
using kelvo::sim::camera::HeadFamily;
using kelvo::sim::camera::Output;
using namespace std::chrono_literals;

TEST(TestCamera, RefusesSettingsThatCannotBe) {
  for (const char* const settings : {"head=vega", "clok=real", "name=a/b"}) {
    try {
      const TestCamera camera(settings);
      ADD_FAILURE() << settings;
    } catch (const std::invalid_argument& error) {
      EXPECT_EQ(std::string(error.what()).substr(0, 11), "KELVO_SIM: ");
    }
  }
  EXPECT_EQ(open("/dev/spi_renesas", O_RDWR), -1) << "none of them is there";
}

TEST(TestCamera, IsThereForAsLongAsItLives) {
  {
    const TestCamera camera;
    const int device = open("/dev/spi_renesas", O_RDWR);
    EXPECT_GE(device, 0);
    close(device);
  }
  EXPECT_EQ(open("/dev/spi_renesas", O_RDWR), -1);
  EXPECT_EQ(errno, ENOENT);
}

TEST(TestCamera, HasASleepClockUnlessItIsToldOtherwise) {
  TestCamera camera("head=vetra");
  sleep(1000);
  EXPECT_EQ(camera.now(), 1000s);
  EXPECT_EQ(camera.state().head().family(), HeadFamily::vetra);
}

TEST(TestCamera, GoesByAnotherClock) {
  TestCamera camera("clock=real");
  const auto before = camera.now();
  usleep(1000);
  EXPECT_GE(camera.now() - before, 1ms);
  EXPECT_LT(camera.now(), 1000s);
}

TEST(TestCamera, HasALensAndItsMotors) {
  TestCamera camera("module=df033");
  SetLensType(8);
  EXPECT_EQ(setFocusForward(100, 200), 0u);
  usleep(1'000'000);
  EXPECT_EQ(camera.position(Output::focus_channel), 1600);
  EXPECT_EQ(camera.violations(), std::vector<std::string>());
}

TEST(TestCamera, TellsWhatWasDoneAgainstTheProtocol) {
  TestCamera camera;
  const int device = open("/dev/i2c-2", O_RDWR);
  EXPECT_EQ(write(device, "a", 1), -1);
  close(device);
  EXPECT_EQ(
      camera.violations(),
      std::vector<std::string>{"I2C bus: -: write() is refused: the driver does not serve it"});
  EXPECT_NE(camera.report().find("protocol violations: 1\n"), std::string::npos);
}

TEST(TestCamera, LeavesNobodyAtTheFilesOfItsResetLine) {
  TestCamera camera;
  EXPECT_EQ(open("/sys/class/gpio/gpio33/value", O_WRONLY), -1);
  EXPECT_EQ(errno, EACCES);
  EXPECT_EQ(access("/sys/class/gpio/gpio33/value", W_OK), -1);
  EXPECT_EQ(errno, EACCES);
  EXPECT_EQ(
      camera.violations(),
      std::vector<std::string>{
          "reset line: -: opening a file of the line is refused: the driver does not serve it"});
}

TEST(TestCamera, IsChangedBehindTheProgramSBack) {
  TestCamera camera("module=t5391");
  camera.change([](Camera& simulated) {
    simulated.push(HeadAxis::pan, -100);
    simulated.push(Output::focus_channel, 7);
  });
  EXPECT_EQ(camera.state().head().pan().axis().position(camera.now()), 32'668u);
  EXPECT_EQ(camera.position(Output::focus_channel), 7);
}

TEST(TestCamera, HasItsFilesInAFolder) {
  TestCamera camera;
  EXPECT_EQ(std::filesystem::file_size(camera.files() / "bin/DC_S_Cali_T5391.dat"), 24u);
  EXPECT_EQ(access("/bin/DC_S_Cali_T5391.dat", R_OK), 0);
  EXPECT_EQ(unlink("/bin/DC_S_Cali_T5391.dat"), 0);
  EXPECT_FALSE(std::filesystem::exists(camera.files() / "bin/DC_S_Cali_T5391.dat"));
}

}  // namespace
