// Every kind of fault in front of the real library: it strikes, shows, is taken away, and the camera
// recovers.
#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <kelvo.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <string>

#include "sim/fault/parse.h"
#include "sim/host/device_calls.h"
#include "sim/host/installed_camera.h"
#include "sim/host/library_calls.h"
#include "sim/host/library_head.h"

namespace {

using kelvo::test::InstalledCamera;
using kelvo::test::pass_ms;
using kelvo::test::transfer;

constexpr std::uint8_t latched = 0xFF;

std::uint32_t add(InstalledCamera& camera, const char* text) {
  const kelvo::sim::fault::ParsedFault parsed = kelvo::sim::fault::parse(text);
  EXPECT_EQ(parsed.error, "");
  return camera.host().add(parsed.fault).value_or(0);
}

void remove(InstalledCamera& camera, std::uint32_t number) {
  EXPECT_TRUE(camera.host().remove_fault(number));
}

std::uint32_t version() {
  std::uint32_t version = 0;
  getVersion(&version);
  return version;
}

/// What the program keeps of a command's arguments.
std::uint32_t kept(InstalledCamera& camera, std::uint8_t command) {
  return camera.state().lens().program().value(command);
}

TEST(ErrorFault, LetsTheThirdOfACommandFailAndItsRetrySucceed) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516(), 0);
  const std::uint32_t fault = add(camera, "spi command=62 nth=3 error=EIO");
  for (std::uint8_t value = 1; value <= 4; ++value) {
    EXPECT_EQ(SendCommand(62, 0, 0, 0, value), 0);
    EXPECT_EQ(kept(camera, 62), value);
  }
  const auto faults = camera.host().faults();
  EXPECT_EQ(faults.listed()[0].matches, 5u) << "four commands and a retry";
  EXPECT_EQ(faults.listed()[0].struck, 1u);
  remove(camera, fault);
  EXPECT_TRUE(camera.host().faults().empty());
}

TEST(ErrorFault, SetsTheLatchWhenTheRetryFailsToo) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516(), 0);
  ASSERT_EQ(SendCommand(62, 0, 0, 0, 7), 0);
  const std::uint32_t fault = add(camera, "spi command=zoom1-enable error=EIO");
  EXPECT_EQ(SendCommand(62, 0, 0, 0, 1), latched);
  EXPECT_EQ(kept(camera, 62), 7u) << "the controller got nothing";
  EXPECT_EQ(SendCommand(63, 0, 0, 0, 1), latched);
  remove(camera, fault);
  EXPECT_EQ(SendCommand(62, 0, 0, 0, 1), latched) << "the latch stays";
  SetLensType(7);
  EXPECT_EQ(SendCommand(62, 0, 0, 0, 1), 0);
  EXPECT_EQ(kept(camera, 62), 1u);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

TEST(ErrorFault, HasTheErrorNumberThatItNames) {
  InstalledCamera camera;
  ASSERT_EQ(InitSPI(), 0);
  const std::uint8_t frame[5] = {0xF5, 0x04, 0x00, 0x00, 0xA0};
  std::uint8_t received[5] = {1, 1, 1, 1, 1};
  add(camera, "spi error=ETIMEDOUT times=1");
  EXPECT_EQ(transfer(fd, frame, received, 5), -ETIMEDOUT);
  EXPECT_EQ(received[0], 1) << "nothing came back";
  EXPECT_EQ(transfer(fd, frame, received, 5), 0);
  EXPECT_EQ(received[0], 0);
}

TEST(ErrorFault, OfAQuerySetsTheLatchAtOnce) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516_DF033(), 0);
  add(camera, "spi query=version nth=1 error=EIO");
  std::uint32_t answer = 1;
  EXPECT_EQ(getVersion(&answer), latched);
  SetLensType(8);
  EXPECT_EQ(version(), 0x0208u);
}

TEST(ErrorFault, AtTheBootLoaderMakesTheBootTryAgain) {
  InstalledCamera camera;
  add(camera, "spi frame=payload nth=2 error=EIO");
  EXPECT_NE(Init30516(), 0);
  EXPECT_EQ(camera.state().boots().boot(1).attempts, 10u);
  EXPECT_EQ(Init30516(), 0);
  EXPECT_EQ(version(), 0x0107u);
}

TEST(ErrorFault, LosesWordsOfThePt5111) {
  InstalledCamera camera;
  const std::uint32_t fault = add(camera, "pt5111 register=53 error=EIO");
  EXPECT_EQ(SendPT5111CMD(0xD578), -1);
  EXPECT_EQ(camera.state().pt5111().read(53), 0);
  EXPECT_EQ(SendPT5111CMD(0xE380), 0);
  remove(camera, fault);
  EXPECT_EQ(SendPT5111CMD(0xD578), 0);
  EXPECT_EQ(camera.state().pt5111().read(53), 0x178);
}

TEST(ErrorFault, KeepsTheResetLineFromBeingTouched) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516(), 0);
  const std::uint32_t fault = add(camera, "gpio error=EAGAIN");
  errno = 0;
  EXPECT_EQ(system("echo 0 > /sys/class/gpio/gpio33/value"), -1);
  EXPECT_EQ(errno, EAGAIN);
  EXPECT_EQ(version(), 0x0107u) << "the program runs";
  remove(camera, fault);
  EXPECT_EQ(system("echo 0 > /sys/class/gpio/gpio33/value"), 0);
  EXPECT_EQ(version(), 0u) << "it is held in reset";
  EXPECT_EQ(Init30516(), 0);
  EXPECT_EQ(version(), 0x0107u);
}

TEST(NakFault, IsOfOneSlaveAndOneRegister) {
  InstalledCamera camera;
  ASSERT_EQ(Init_I2C(), 0);
  const std::uint32_t fault = add(camera, "i2c slave=tilt register=position nak");
  std::uint8_t bytes[2] = {1, 1};
  errno = 0;
  EXPECT_EQ(ReadI2C(41, 4, bytes, 2), -1);
  EXPECT_EQ(errno, ENXIO);
  EXPECT_EQ(bytes[0], 0);
  EXPECT_EQ(ReadI2C(40, 4, bytes, 2), 0);
  EXPECT_EQ(ReadI2C(41, 3, bytes, 1), 0);
  remove(camera, fault);
  EXPECT_EQ(ReadI2C(41, 4, bytes, 2), 0);
  EXPECT_EQ(bytes[0], 0x80);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

TEST(FlipFault, MakesAWrongChecksumOfACommand) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516(), 0);
  const std::uint32_t fault = add(camera, "spi command=62 flip=4.1");
  EXPECT_EQ(SendCommand(62, 0, 0, 0, 1), 0) << "the library cannot know";
  EXPECT_EQ(kept(camera, 62), 0u);
  const auto violations = camera.state().violations();
  ASSERT_EQ(violations.total(), 1u);
  EXPECT_STREQ(violations.listed()[0].reason.data(), "checksum 3F, must be 41");
  remove(camera, fault);
  EXPECT_EQ(SendCommand(62, 0, 0, 0, 1), 0);
  EXPECT_EQ(kept(camera, 62), 1u);
}

TEST(FlipFault, ReachesTheLastBitOfADownload) {
  InstalledCamera camera;
  add(camera, "spi frame=payload flip=2047.7 nth=1");
  EXPECT_NE(Init30516(), 0);
  const auto boot = camera.state().boots().boot(1);
  EXPECT_FALSE(boot.listed()[0].intact());
  EXPECT_TRUE(boot.listed()[3].intact());
  EXPECT_EQ(Init30516(), 0);
}

TEST(FlipFault, ChangesWhatTheProgramGets) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516(), 0);
  const std::uint32_t fault = add(camera, "spi query=version-de direction=received flip=10.3");
  EXPECT_EQ(version(), 0x010Fu);
  remove(camera, fault);
  EXPECT_EQ(version(), 0x0107u);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

TEST(FlipFault, IsOnTheI2cBusBothWays) {
  InstalledCamera camera;
  ASSERT_EQ(Init_I2C(), 0);
  std::uint8_t bytes[2] = {};
  std::uint32_t fault = add(camera, "i2c direction=received flip=1.0");
  EXPECT_EQ(ReadI2C(40, 4, bytes, 2), 0);
  EXPECT_EQ(bytes[1], 0x01);
  remove(camera, fault);
  fault = add(camera, "i2c frame=read flip=0.3");
  EXPECT_EQ(ReadI2C(40, 4, bytes, 2), 0);
  EXPECT_EQ(camera.state().violations().total(), 1u) << "register 12 can only be written";
  remove(camera, fault);
  EXPECT_EQ(ReadI2C(40, 4, bytes, 2), 0);
  EXPECT_EQ(bytes[0], 0x80);
  EXPECT_EQ(bytes[1], 0x00);
}

TEST(FlipFault, TurnsAWordOfThePt5111IntoAnother) {
  InstalledCamera camera;
  add(camera, "pt5111 flip=1.3 nth=1");
  EXPECT_EQ(SendPT5111CMD(0xD578), 0);
  EXPECT_EQ(camera.state().pt5111().read(53), 0x170);
  EXPECT_EQ(SendPT5111CMD(0xD578), 0);
  EXPECT_EQ(camera.state().pt5111().read(53), 0x178);
}

TEST(BusyFault, LetsEveryMotorSeemToRun) {
  InstalledCamera camera;
  const struct {
    std::int32_t (*boot)();
    std::uint8_t (*status)(std::uint8_t* running);
  } motors[] = {{Init30516, getZoom1Status},       {Init30516, getZoom2Status},
                {Init30516, getFocusStatus},       {Init30516_DF033, getZoom1Status},
                {Init30516_DF033, getZoom3Status}, {Init30516_T5391, getZoom1Status}};
  for (const auto& motor : motors) {
    ASSERT_EQ(motor.boot(), 0);
    std::uint8_t running = 7;
    const std::uint32_t fault = add(camera, "spi busy");
    EXPECT_EQ(motor.status(&running), 0);
    EXPECT_EQ(running, 1);
    remove(camera, fault);
    EXPECT_EQ(motor.status(&running), 0);
    EXPECT_EQ(running, 0);
  }
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

TEST(BusyFault, MayBeOfOneMotorAlone) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516(), 0);
  add(camera, "spi register=28 busy");
  std::uint8_t running = 7;
  getFocusStatus(&running);
  EXPECT_EQ(running, 1);
  getZoom2Status(&running);
  EXPECT_EQ(running, 0);
}

TEST(BusyFault, LetsACalibrationRunIntoItsTimeOut) {
  InstalledCamera camera;
  SetLensType(7);
  const std::uint32_t fault = add(camera, "spi query=calibration-state busy");
  EXPECT_EQ(OIS_Quality_Check(), -1);
  remove(camera, fault);
  EXPECT_EQ(OIS_Quality_Check(), 0);
}

class FaultyHead : public testing::TestWithParam<kelvo::test::Family> {
 protected:
  InstalledCamera camera{GetParam().settings};
};

TEST_P(FaultyHead, SeemsToMoveForEver) {
  ASSERT_EQ(Init_I2C(), 0);
  EXPECT_EQ(GetTiltStatus(), 0);
  const std::uint32_t fault = add(camera, "i2c slave=tilt busy");
  pass_ms(60'000);
  EXPECT_EQ(GetTiltStatus(), -1);
  EXPECT_EQ(TiltGetCaliStatus(), 0);
  EXPECT_EQ(GetPanStatus(), 0);
  remove(camera, fault);
  EXPECT_EQ(GetTiltStatus(), 0);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

TEST_P(FaultyHead, StopsWhereItIsWhenAControllerRestarts) {
  ASSERT_EQ(Init_I2C(), 0);
  PanContinuousMove(0, 3000);
  TiltContinuousMove(0, 3000);
  pass_ms(500);
  ASSERT_EQ(GetPanStatus(), -1) << "it moves";
  add(camera, "i2c slave=pan nth=1 reset");
  EXPECT_EQ(GetPanVersion(), 0) << "the read is not acknowledged";
  EXPECT_EQ(GetPanStatus(), 0);
  EXPECT_EQ(GetTiltStatus(), -1) << "the other one goes on";
  EXPECT_NE(GetPanVersion(), 0);
  PanContinuousMove(0, 3000);
  EXPECT_EQ(GetPanStatus(), -1) << "it obeys again";
}

INSTANTIATE_TEST_SUITE_P(EachFamily, FaultyHead, kelvo::test::both_families(),
                         kelvo::test::family_name);

TEST(ResetFault, ThrowsTheLensControllerBackIntoItsBootLoader) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516_DF033(), 0);
  setZoom1Forward(255, 30);
  pass_ms(1000);
  ASSERT_EQ(camera.position(kelvo::sim::camera::Output::pt5111_a), 30);
  add(camera, "spi frame=query reset nth=2");
  EXPECT_EQ(version(), 0x0208u);
  EXPECT_EQ(camera.state().violations().total(), 0u);
  EXPECT_EQ(version(), 0u) << "the frame is lost";
  EXPECT_EQ(camera.state().violations().total(), 0u) << "and nobody has seen it";
  EXPECT_EQ(version(), 0u);
  const auto violations = camera.state().violations();
  ASSERT_EQ(violations.total(), 1u);
  EXPECT_STREQ(violations.listed()[0].reason.data(), "a run-time frame before the program runs");
  EXPECT_EQ(Init30516_DF033(), 0);
  EXPECT_EQ(version(), 0x0208u);
  EXPECT_EQ(camera.position(kelvo::sim::camera::Output::pt5111_a), 30) << "the lens stands still";
}

TEST(ResetFault, InTheMiddleOfADownloadMakesTheBootTryAgain) {
  InstalledCamera camera;
  add(camera, "spi frame=payload nth=2 reset");
  EXPECT_NE(Init30516(), 0);
  EXPECT_EQ(version(), 0x0107u) << "a later attempt was a good one";
  EXPECT_EQ(Init30516(), 0);
}

TEST(MissingFault, HidesADeviceNode) {
  InstalledCamera camera;
  const std::uint32_t fault = add(camera, "spi missing");
  errno = 0;
  EXPECT_EQ(open("/dev/spi_renesas", O_RDWR), -1);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(InitSPI(), -1);
  EXPECT_EQ(Init_I2C(), 0) << "the others are there";
  remove(camera, fault);
  EXPECT_EQ(InitSPI(), 0);
  EXPECT_EQ(Init30516(), 0);
}

TEST(MissingFault, LeavesOpenDescriptorsAlone) {
  InstalledCamera camera;
  ASSERT_EQ(Init_I2C(), 0);
  const std::uint32_t fault = add(camera, "i2c missing");
  EXPECT_EQ(GetMotorType(), 2);
  Release_I2C();
  EXPECT_EQ(Init_I2C(), -1);
  std::uint8_t byte = 0;
  EXPECT_EQ(ReadI2C(40, 3, &byte, 1), -1);
  remove(camera, fault);
  EXPECT_EQ(Init_I2C(), 0);
  EXPECT_EQ(ReadI2C(40, 3, &byte, 1), 0);
}

TEST(MissingFault, IsOneOfTheThreeNodes) {
  InstalledCamera camera;
  add(camera, "pt5111 missing nth=1");
  EXPECT_EQ(open("/dev/spi_pt5111", O_RDWR), -1);
  const int descriptor = open("/dev/spi_pt5111", O_RDWR);
  EXPECT_GE(descriptor, 0);
  close(descriptor);
}

TEST(Faults, MayBeThereFromTheStart) {
  InstalledCamera camera("clock=sleep fault=i2c:missing:nth=1 fault=spi:frame=open:error=EACCES");
  EXPECT_EQ(camera.host().faults().listed().size(), 2u);
  EXPECT_EQ(Init_I2C(), -1);
  EXPECT_EQ(Init_I2C(), 0);
  errno = 0;
  EXPECT_EQ(open("/dev/spi_renesas", O_RDWR), -1);
  EXPECT_EQ(errno, EACCES);
}

TEST(Faults, StrikeInTurn) {
  InstalledCamera camera;
  ASSERT_EQ(Init_I2C(), 0);
  add(camera, "i2c every=3 nak");
  std::string marks;
  std::uint8_t byte = 0;
  for (int i = 0; i < 7; ++i) marks += ReadI2C(40, 3, &byte, 1) == 0 ? '.' : 'x';
  EXPECT_EQ(marks, "..x..x.");
}

}  // namespace
