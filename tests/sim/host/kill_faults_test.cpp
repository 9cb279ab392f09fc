// Faults that kill a process in the middle of what it does: the camera stays fit for the others.
#include <gtest/gtest.h>
#include <kelvo.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <functional>
#include <string>

#include "sim/fault/parse.h"
#include "sim/host/installed_camera.h"

namespace {

using kelvo::sim::Removal;
using kelvo::sim::SharedCamera;
using kelvo::test::InstalledCamera;
using kelvo::test::TestFolder;

/// How a forked process ends: its exit code, or the negative number of the signal.
int end_of(const std::function<void()>& act) {
  const pid_t child = fork();
  if (child == 0) {
    act();
    _exit(0);
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

class KillFault : public testing::Test {
 protected:
  KillFault() { setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1); }
  ~KillFault() override { SharedCamera::remove(name(), Removal::even_in_use); }

  static std::string name() { return "kill-" + std::to_string(getpid()); }

  static void add(InstalledCamera& camera, const char* text) {
    const kelvo::sim::fault::ParsedFault parsed = kelvo::sim::fault::parse(text);
    EXPECT_EQ(parsed.error, "");
    EXPECT_TRUE(camera.host().add(parsed.fault));
  }

 private:
  TestFolder folder_;
};

TEST_F(KillFault, LeavesTheCameraAsItWasBeforeTheTransfer) {
  InstalledCamera camera("clock=sleep name=" + name());
  ASSERT_EQ(Init30516(), 0);
  ASSERT_EQ(SendCommand(62, 0, 0, 0, 7), 0);
  add(camera, "spi command=62 kill nth=2");
  EXPECT_EQ(end_of([] { SendCommand(62, 0, 0, 0, 8); }), 0);
  EXPECT_EQ(end_of([] { SendCommand(62, 0, 0, 0, 9); }), -SIGKILL);
  EXPECT_EQ(camera.state().lens().program().value(62), 8u);
  const auto faults = camera.host().faults();
  EXPECT_EQ(faults.listed()[0].matches, 2u);
  EXPECT_EQ(faults.listed()[0].struck, 1u) << "a death counts";
  EXPECT_EQ(SendCommand(62, 0, 0, 0, 10), 0) << "the bus lock is free again";
  EXPECT_EQ(camera.state().lens().program().value(62), 10u);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

TEST_F(KillFault, StrikesAtEveryDevice) {
  InstalledCamera camera("clock=sleep name=" + name());
  ASSERT_EQ(Init_I2C(), 0);
  for (const char* const text :
       {"i2c slave=tilt kill nth=1", "pt5111 kill nth=1", "gpio kill nth=1", "file kill nth=1",
        "spi frame=open kill nth=1"}) {
    add(camera, text);
  }
  EXPECT_EQ(end_of([] { GetTiltTemp(); }), -SIGKILL);
  EXPECT_EQ(end_of([] { SendPT5111CMD(0xD578); }), -SIGKILL);
  EXPECT_EQ(end_of([] { ResetR2J30516(); }), -SIGKILL);
  EXPECT_EQ(end_of([] { Load_QC(); }), -SIGKILL);
  EXPECT_EQ(end_of([] { InitSPI(); }), -SIGKILL);
  const kelvo::sim::fault::FaultTable faults = camera.host().faults();
  for (const auto& fault : faults.listed()) EXPECT_EQ(fault.struck, 1u);
  EXPECT_EQ(camera.state().pt5111().read(53), 0);
  EXPECT_EQ(end_of([] {
              GetTiltTemp();
              SendPT5111CMD(0xD578);
              Load_QC();
            }),
            0);
  EXPECT_EQ(Init30516(), 0);
  EXPECT_EQ(camera.state().pt5111().read(53), 0x178);
}

TEST_F(KillFault, StrikesInTheMiddleOfADownload) {
  InstalledCamera camera("clock=sleep name=" + name());
  add(camera, "spi frame=payload kill nth=2");
  EXPECT_EQ(end_of([] { Init30516(); }), -SIGKILL);
  EXPECT_EQ(camera.state().boots().boot(1).download_count, 1u) << "the second one has not come";
  EXPECT_EQ(Init30516(), 0);
}

TEST_F(KillFault, IsOfAPrivateCameraToo) {
  EXPECT_EQ(end_of([] {
              InstalledCamera camera("clock=sleep fault=i2c:kill");
              Init_I2C();
              GetMotorType();
            }),
            -SIGKILL);
}

TEST_F(KillFault, OfASharedCameraIsAddedOnceByAllThatAskForIt) {
  const std::string settings = "clock=sleep name=" + name() + " fault=i2c:nth=1:nak";
  {
    InstalledCamera camera(settings);
    ASSERT_EQ(Init_I2C(), 0);
    std::uint8_t byte = 0;
    EXPECT_EQ(ReadI2C(40, 3, &byte, 1), -1);
  }
  InstalledCamera camera(settings);
  EXPECT_EQ(camera.host().faults().listed().size(), 1u);
  std::uint8_t byte = 0;
  EXPECT_EQ(ReadI2C(40, 3, &byte, 1), 0) << "it has struck";
}

TEST_F(KillFault, HasNoPlaceInAFullTable) {
  InstalledCamera camera("clock=sleep name=" + name());
  for (int i = 0; i < 32; ++i) add(camera, "gpio kill");
  const auto settings =
      kelvo::sim::parse_settings("name=" + name() + " fault=spi:kill fault=gpio:kill").settings;
  EXPECT_EQ(kelvo::sim::open_shared(settings).error,
            "camera \"" + name() + "\": there is room for 32 faults: remove one first");
  const auto same = kelvo::sim::parse_settings("name=" + name() + " fault=gpio:kill").settings;
  EXPECT_EQ(kelvo::sim::open_shared(same).error, "");
}

}  // namespace
