// The camera behind the seam when it is a shared one.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "sim/host/installed_camera.h"

namespace {

using kelvo::sim::Removal;
using kelvo::sim::SharedCamera;
using kelvo::test::InstalledCamera;
using namespace std::chrono_literals;

class SharedHost : public testing::Test {
 protected:
  SharedHost() { setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1); }
  ~SharedHost() override { SharedCamera::remove(name(), Removal::even_in_use); }

  static std::string name() { return "host-" + std::to_string(getpid()); }
  static std::string settings(const std::string& others = "clock=sleep") {
    return "name=" + name() + " " + others;
  }
  static std::string error_of(const std::string& others) {
    return open_shared(kelvo::sim::parse_settings(settings(others)).settings).error;
  }

 private:
  kelvo::test::TestFolder folder_;
};

TEST_F(SharedHost, IsThereForTheNextProgram) {
  {
    InstalledCamera camera(settings("clock=sleep head=vetra"));
    EXPECT_EQ(usleep(1500), 0);
    EXPECT_EQ(system("echo 33 > /sys/class/gpio/export"), 0);
    EXPECT_EQ(camera.now(), 1500us);
  }
  InstalledCamera camera("name=" + name());
  EXPECT_EQ(camera.state().head().family(), kelvo::wire::HeadFamily::vetra);
  EXPECT_EQ(system("echo 33 > /sys/class/gpio/export"), 256);
  EXPECT_EQ(sleep(1), 0u);
  EXPECT_EQ(camera.now(), 1001500us);
}

TEST_F(SharedHost, IsNotASharedOneWithoutAName) {
  const kelvo::sim::OpenedCamera opened = open_shared(kelvo::sim::Settings{});
  EXPECT_EQ(opened.camera, nullptr);
  EXPECT_EQ(opened.error, "");
}

TEST_F(SharedHost, HasTheSettingsOfTheFirst) {
  InstalledCamera camera(settings("clock=sleep corrupt=1+2"));
  EXPECT_EQ(error_of("corrupt=1+2"), "");
  EXPECT_EQ(error_of("corrupt=3"), "camera \"" + name() +
                                       "\" was made with corrupt=1+2, not corrupt=3: leave corrupt "
                                       "away, or remove the camera first");
}

TEST_F(SharedHost, KeepsFilesAndBusLockToTheEndOfTheCamera) {
  key_t key = 0;
  std::filesystem::path folder;
  {
    InstalledCamera camera(settings());
    key = ftok("/lib/libkelvo.so", 0);
    ASSERT_GE(semget(key, 1, IPC_CREAT | 0600), 0);
    folder = camera.host().files().folder();
    camera.host().end();
  }
  EXPECT_GE(semget(key, 0, 0), 0);
  EXPECT_TRUE(std::filesystem::exists(folder / "bin/DC_S_Cali_T5391.dat"));
  {
    InstalledCamera camera(settings());
    EXPECT_EQ(ftok("/lib/libkelvo.so", 0), key);
  }
  EXPECT_EQ(SharedCamera::remove(name(), Removal::if_unused), "");
  EXPECT_EQ(semget(key, 0, 0), -1);
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(SharedHost, IsOneWithThatOfAForkedProcess) {
  InstalledCamera camera(settings());
  const pid_t child = fork();
  if (child == 0) {
    usleep(2000);
    _exit(0);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(camera.now(), 2ms);
}

TEST_F(SharedHost, LeavesSleepingInRealTimeToTheKernel) {
  InstalledCamera camera(settings("clock=real"));
  EXPECT_EQ(camera.host().delay(kelvo::sim::SleepCall::usleep, 1s), std::nullopt);
  const auto before = camera.now();
  EXPECT_EQ(usleep(2000), 0);
  EXPECT_GE(camera.now(), before + 2ms);
}

TEST_F(SharedHost, SaysItsNameInTheReport) {
  InstalledCamera camera(settings());
  EXPECT_TRUE(camera.report().starts_with("\nSimulated camera " + name() + "\n\n"));
}

TEST(ScaledClock, LetsAProgramSleepForAPartOfTheTime) {
  InstalledCamera camera("clock=1000");
  const auto begun = std::chrono::steady_clock::now();
  const auto before = camera.now();
  EXPECT_EQ(sleep(20), 0u);
  EXPECT_GE(camera.now(), before + 20s);
  EXPECT_LT(std::chrono::steady_clock::now() - begun, 10s);
}

}  // namespace
