// The bus lock as the simulated camera follows it, with the real library and without.
#include <gtest/gtest.h>
#include <kelvo.h>
#include <signal.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <thread>

#include "sim/host/device_calls.h"
#include "sim/host/installed_camera.h"

namespace {

using kelvo::sim::Removal;
using kelvo::sim::SharedCamera;
using kelvo::test::InstalledCamera;
using kelvo::test::OpenDevice;

const std::vector<std::uint8_t> pll_mode{0xF5, 0x04, 0x00, 0x00, 0xA0};

std::uint32_t bus_lock() {
  return static_cast<std::uint32_t>(
      makeSem(static_cast<std::uint32_t>(ftok("/lib/libkelvo.so", 0))));
}

std::vector<std::string> reasons(InstalledCamera& camera) {
  std::vector<std::string> all;
  const auto state = camera.state();
  for (const auto& violation : state.violations().listed())
    all.emplace_back(violation.reason.data());
  return all;
}

int in_a_child(const std::function<void()>& act) {
  const pid_t child = fork();
  if (child == 0) {
    act();
    _exit(0);
  }
  int status = -1;
  waitpid(child, &status, 0);
  return status;
}

TEST(BusLock, IsDueForEveryFrameButAQuery) {
  InstalledCamera camera;
  const OpenDevice lens("/dev/spi_renesas");
  lens.transfer(pll_mode);
  EXPECT_EQ(reasons(camera), (std::vector<std::string>{"without the bus lock"}));
  EXPECT_EQ(camera.state().violations().listed()[0].process, getpid());
  lens.transfer({0x80, 0, 0, 0, 1, 0x81, 0, 0, 0, 0, 0, 0});
  EXPECT_EQ(reasons(camera),
            (std::vector<std::string>{"without the bus lock",
                                      "a run-time frame before the program runs"}));
}

TEST(BusLock, IsNotDueElsewhere) {
  InstalledCamera camera;
  OpenDevice("/dev/spi_pt5111").transfer({0xD5, 0x78});
  OpenDevice("/dev/i2c-2").write(40, {7, 0, 0});
  EXPECT_EQ(reasons(camera), std::vector<std::string>{});
}

TEST(BusLock, IsHeldBetweenItsTakingAndItsGivingBack) {
  InstalledCamera camera;
  const OpenDevice lens("/dev/spi_renesas");
  EXPECT_EQ(camera.host().lock_holder(), 0);
  ASSERT_EQ(lockSem(bus_lock()), 0);
  EXPECT_EQ(camera.host().lock_holder(), getpid());
  lens.transfer(pll_mode);
  EXPECT_EQ(camera.state().violations().total(), 0u);
  ASSERT_EQ(unlockSem(bus_lock()), 0);
  EXPECT_EQ(camera.host().lock_holder(), 0);
  EXPECT_EQ(unlockSem(bus_lock()), -1);
  lens.transfer({0xF4, 0x01, 0x00, 0x00, 0xA0});
  EXPECT_EQ(camera.state().violations().total(), 1u);
}

/// A semaphore that is not 0 though nobody has taken it: some other program has written to it.
TEST(BusLock, IsNotGivenBackByWhoHasNotTakenIt) {
  InstalledCamera camera;
  const std::uint32_t lock = bus_lock();
  ASSERT_EQ(semctl(static_cast<int>(lock), 0, SETVAL, 1), 0);
  EXPECT_EQ(unlockSem(lock), 0);
  EXPECT_EQ(reasons(camera), (std::vector<std::string>{"the bus lock was not taken"}));
  EXPECT_EQ(unlockSem(lock), -1);
  EXPECT_EQ(camera.state().violations().total(), 1u);
}

TEST(BusLock, OfAThreadIsNotThatOfAnother) {
  InstalledCamera camera;
  const OpenDevice lens("/dev/spi_renesas");
  ASSERT_EQ(lockSem(bus_lock()), 0);
  std::thread([&] { lens.transfer(pll_mode); }).join();
  EXPECT_EQ(reasons(camera), (std::vector<std::string>{"without the bus lock"}));
}

class SharedBusLock : public testing::Test {
 protected:
  SharedBusLock() { setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1); }
  ~SharedBusLock() override { SharedCamera::remove(name_, Removal::even_in_use); }

  const std::string name_ = "lock-" + std::to_string(getpid());
  const std::string settings_ = "clock=sleep name=" + name_;

 private:
  kelvo::test::TestFolder folder_;
};

TEST_F(SharedBusLock, IsHeldByOneProcess) {
  InstalledCamera camera(settings_);
  const OpenDevice lens("/dev/spi_renesas");
  ASSERT_EQ(lockSem(bus_lock()), 0);
  const std::string holder = std::to_string(getpid());
  ASSERT_EQ(in_a_child([&] {
              if (camera.host().lock_holder() != getppid()) _exit(1);
              lens.transfer(pll_mode);
            }),
            0);
  EXPECT_EQ(reasons(camera),
            (std::vector<std::string>{"without the bus lock, which process " + holder + " holds"}));
  EXPECT_NE(camera.state().violations().listed()[0].process, getpid());
}

TEST_F(SharedBusLock, IsNotGivenBackForAnother) {
  InstalledCamera camera(settings_);
  ASSERT_EQ(lockSem(bus_lock()), 0);
  ASSERT_EQ(in_a_child([] { unlockSem(bus_lock()); }), 0);
  EXPECT_EQ(reasons(camera), (std::vector<std::string>{"the bus lock was taken by process " +
                                                       std::to_string(getpid())}));
}

TEST_F(SharedBusLock, IsFreeWhenItsHolderHasDied) {
  InstalledCamera camera(settings_);
  ASSERT_EQ(in_a_child([] { lockSem(bus_lock()); }), 0);
  EXPECT_EQ(camera.host().lock_holder(), 0);
  const OpenDevice lens("/dev/spi_renesas");
  ASSERT_EQ(lockSem(bus_lock()), 0);
  lens.transfer(pll_mode);
  EXPECT_EQ(unlockSem(bus_lock()), 0);
  EXPECT_EQ(reasons(camera), std::vector<std::string>{});
}

/// The library does not look whether it got the lock: it transfers, and gives the lock back.
TEST_F(SharedBusLock, IsMissedInATransferThatTheLibraryMakesAllTheSame) {
  InstalledCamera camera(settings_);
  SetLensType(7);
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    lockSem(bus_lock());
    if (write(ready[1], ".", 1) != 1) _exit(1);
    while (true) pause();
  }
  char word = 0;
  ASSERT_EQ(read(ready[0], &word, 1), 1);
  struct sigaction action {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, nullptr);
  const itimerval often{{0, 20'000}, {0, 20'000}};
  const itimerval never{};
  setitimer(ITIMER_REAL, &often, nullptr);
  SendCommand(5, 0, 0, 0, 0);
  setitimer(ITIMER_REAL, &never, nullptr);
  const std::string holder = std::to_string(child);
  EXPECT_EQ(reasons(camera),
            (std::vector<std::string>{"without the bus lock, which process " + holder + " holds",
                                      "a run-time frame before the program runs",
                                      "the bus lock was taken by process " + holder}));
  kill(child, SIGKILL);
  EXPECT_EQ(waitpid(child, nullptr, 0), child);
}

TEST_F(SharedBusLock, LetsTwoProcessesWorkAtOnceWithoutAViolation) {
  InstalledCamera camera(settings_);
  ASSERT_EQ(Init30516_DF033(), 0);
  const auto focus = [] {
    for (int i = 0; i < 100; ++i) setFocusForward(200, 1);
  };
  const pid_t child = fork();
  if (child == 0) {
    for (int i = 0; i < 100; ++i) setZoom3Forward(200, 1);
    _exit(0);
  }
  focus();
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

TEST_F(SharedBusLock, DoesNotKeepTheMovesOfTwoProcessesApart) {
  InstalledCamera camera(settings_);
  ASSERT_EQ(Init30516_DF033(), 0);
  // A move's first frame, and another process's whole move of the same motor.
  reg_wt16_0x0c(0, 0x600);
  ASSERT_EQ(in_a_child([] { setFocusForward(200, 1); }), 0);
  const auto all = reasons(camera);
  ASSERT_FALSE(all.empty());
  EXPECT_EQ(all[0], "in the middle of a move of the focus by process " + std::to_string(getpid()));
}

TEST(StopAtViolation, EndsTheProcessWithOneLine) {
  const pid_t process = getpid();
  EXPECT_EXIT(
      {
        InstalledCamera camera("clock=sleep violations=fatal");
        OpenDevice("/dev/spi_renesas").transfer(pll_mode);
        std::exit(0);
      },
      testing::ExitedWithCode(123),
      "^KELVO_SIM: violation at 0\\.000 s by process [0-9]+ against the lens controller: "
      "F5 04 00 00 A0: without the bus lock\n$");
  EXPECT_EQ(getpid(), process);
}

TEST(StopAtViolation, LetsAGoodProgramGoOn) {
  EXPECT_EXIT(
      {
        int result = -1;
        {
          InstalledCamera camera("clock=sleep violations=fatal");
          result = Init30516_T5391();
        }
        std::exit(result == 0 ? 7 : 1);
      },
      testing::ExitedWithCode(7), "");
}

}  // namespace
