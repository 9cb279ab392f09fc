// The time that transfers take on their wires, by each clock.
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include <functional>
#include <string>

#include "sim/host/device_calls.h"
#include "sim/host/installed_camera.h"

namespace {

using kelvo::test::InstalledCamera;
using kelvo::test::OpenDevice;
using namespace std::chrono_literals;
using Nanoseconds = std::chrono::nanoseconds;
using Real = std::chrono::steady_clock;

Nanoseconds passed(InstalledCamera& camera, const std::function<void()>& act) {
  const auto before = camera.now();
  act();
  return camera.now() - before;
}

TEST(WireTime, OfSpiIsEightMicrosecondsAByte) {
  InstalledCamera camera;
  const OpenDevice lens("/dev/spi_renesas");
  const OpenDevice pt5111("/dev/spi_pt5111");
  EXPECT_EQ(passed(camera, [&] { lens.transfer({0xF5, 4, 0, 0, 0xA0}); }), 40us);
  EXPECT_EQ(passed(camera, [&] { lens.transfer({5, 0, 0, 0, 0, 5, 0}); }), 56us);
  EXPECT_EQ(passed(camera, [&] { lens.transfer(std::vector<std::uint8_t>(33'276)); }), 266'208us);
  EXPECT_EQ(passed(camera, [&] { pt5111.transfer({0xD5, 0x78}); }), 16us);
}

TEST(WireTime, OfI2cIsNineClocksAByteWithTheAddressAndOneForEachStartAndStop) {
  InstalledCamera camera;
  const OpenDevice head("/dev/i2c-2");
  EXPECT_EQ(passed(camera, [&] { EXPECT_EQ(head.write(40, {7, 0, 0}), 1); }), 38 * 2'500ns);
  EXPECT_EQ(passed(camera, [&] { EXPECT_EQ(head.read(41, 4, 2), 2); }), 48 * 2'500ns);
  EXPECT_EQ(passed(camera, [&] { EXPECT_EQ(head.write(41, {}), 1); }), 11 * 2'500ns);
}

TEST(WireTime, OfI2cEndsWithTheAddressThatNobodyAcknowledges) {
  InstalledCamera camera;
  const OpenDevice head("/dev/i2c-2");
  EXPECT_EQ(passed(camera, [&] { EXPECT_EQ(head.write(42, {7, 0, 0}), -ENXIO); }), 11 * 2'500ns);
  EXPECT_EQ(passed(camera, [&] { EXPECT_EQ(head.read(42, 4, 2), -ENXIO); }), 11 * 2'500ns);
}

TEST(WireTime, IsOverWhenTheFrameTakesEffect) {
  InstalledCamera camera;
  const OpenDevice head("/dev/i2c-2");
  // A bad register, of 29 clocks: it is held against the program when its last bit has gone.
  head.write(40, {99, 0});
  EXPECT_EQ(camera.state().violations().listed()[0].time, 29 * 2'500ns);
}

Nanoseconds processor_time() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return std::chrono::seconds(time.tv_sec) + Nanoseconds(time.tv_nsec);
}

TEST(WireTime, PassesInFactOnTheRealClockWithoutProcessorTime) {
  InstalledCamera camera("clock=real");
  const OpenDevice lens("/dev/spi_renesas");
  const std::vector<std::uint8_t> payload(33'276);
  const auto begun = Real::now();
  const auto used = processor_time();
  lens.transfer(payload);
  EXPECT_GE(Real::now() - begun, 266'208us);
  EXPECT_LT(processor_time() - used, 100ms);
}

TEST(WireTime, IsAPartOfThatOnAScaledClock) {
  InstalledCamera camera("clock=10");
  const OpenDevice lens("/dev/spi_renesas");
  const auto begun = Real::now();
  const auto time = passed(camera, [&] { lens.transfer(std::vector<std::uint8_t>(33'276)); });
  EXPECT_GE(time, 266'208us);
  EXPECT_GE(Real::now() - begun, 26'620us);
}

long sleeps_so_far() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_nvcsw;
}

/// 1250 words of the PT5111, each 16 us on its wire.
void transfer_for_20_ms(const OpenDevice& pt5111) {
  for (int i = 0; i < 1250; ++i) pt5111.transfer({0xD5, 0x78});
}

TEST(WireTime, OfManyShortTransfersOnTheRealClockIsSleptAllInOne) {
  InstalledCamera camera("clock=real");
  const OpenDevice pt5111("/dev/spi_pt5111");
  const auto begun = Real::now();
  const long before = sleeps_so_far();
  for (int i = 0; i < 5; ++i) transfer_for_20_ms(pt5111);
  EXPECT_GE(Real::now() - begun, 80ms) << "all but what is not worth a sleep";
  EXPECT_LT(sleeps_so_far() - before, 100);
}

TEST(WireTime, IsOnTheRealClockAtOnceHoweverShort) {
  InstalledCamera camera("clock=real");
  const OpenDevice lens("/dev/spi_renesas");
  for (int i = 0; i < 100; ++i) {
    EXPECT_GE(passed(camera, [&] { lens.transfer({5, 0, 0, 0, 0, 5, 0}); }), 56us);
  }
}

TEST(WireTime, IsNeverFarAheadOfRealTime) {
  InstalledCamera camera("clock=real");
  const OpenDevice pt5111("/dev/spi_pt5111");
  const auto before = camera.now();
  const auto begun = Real::now();
  for (int i = 0; i < 5; ++i) {
    transfer_for_20_ms(pt5111);
    EXPECT_LT(camera.now() - before, Real::now() - begun + 20ms);
  }
}

TEST(WireTime, IsOverWhenASleepBegins) {
  for (const char* const clock : {"clock=real", "clock=10"}) {
    InstalledCamera camera(clock);
    const OpenDevice lens("/dev/spi_renesas");
    const auto transfer_and_sleep = [&] {
      for (int i = 0; i < 100; ++i) lens.transfer({5, 0, 0, 0, 0, 5, 0});
      usleep(5'000);
    };
    EXPECT_GE(passed(camera, transfer_and_sleep), 100 * 56us + 5'000us) << clock;
  }
}

TEST(WireTime, OfOneProcessIsSleptByTheOtherThatHasSeenIt) {
  const std::string name = "wire-" + std::to_string(getpid());
  const kelvo::test::TestFolder folder;
  setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  {
    InstalledCamera camera("clock=real name=" + name);
    InstalledCamera other("name=" + name);
    using kelvo::sim::Device;
    std::uint8_t word[] = {0xD5, 0x78};
    std::uint8_t received[2];
    for (int i = 0; i < 600; ++i) camera.host().transfer(Device::spi_pt5111, -1, word, received);
    other.host().transfer(Device::spi_pt5111, -1, word, received);
    const auto seen = other.now();
    usleep(2'000);
    EXPECT_GE(other.now(), seen + 2'000us);
  }
  kelvo::sim::SharedCamera::remove(name, kelvo::sim::Removal::even_in_use);
}

volatile sig_atomic_t signals = 0;

TEST(WireTime, IsNotCutShortBySignals) {
  struct sigaction action {};
  action.sa_handler = [](int) { signals = signals + 1; };
  sigaction(SIGALRM, &action, nullptr);
  InstalledCamera camera("clock=real");
  const OpenDevice lens("/dev/spi_renesas");
  const itimerval often{{0, 5'000}, {0, 5'000}};
  const itimerval never{};
  setitimer(ITIMER_REAL, &often, nullptr);
  const auto time =
      passed(camera, [&] { EXPECT_EQ(lens.transfer(std::vector<std::uint8_t>(33'276)), 0); });
  setitimer(ITIMER_REAL, &never, nullptr);
  EXPECT_GE(time, 266'208us);
  EXPECT_GT(signals, 0);
}

}  // namespace
