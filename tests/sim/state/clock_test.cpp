// The clocks of a shared camera.
#include <gtest/gtest.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>

#include "sim/state/named_camera.h"
#include "sim/state/pacing.h"

namespace {

using kelvo::sim::ClockMode;
using kelvo::sim::ClockSetting;
using kelvo::sim::SharedCamera;
using kelvo::sim::WantedSettings;
using kelvo::test::Child;
using kelvo::test::NamedCamera;
using kelvo::test::sleep_clock;
using namespace std::chrono_literals;
using Real = std::chrono::steady_clock;

WantedSettings clock_of(const ClockSetting& clock) {
  WantedSettings wanted;
  wanted.clock = clock;
  return wanted;
}

/// Somebody at the other end of two pipes.
class Meeting {
 public:
  Meeting() {
    if (pipe(here_) != 0 || pipe(there_) != 0) std::abort();
  }
  void tell(char word = '.') { EXPECT_EQ(write(there_[1], &word, 1), 1); }
  void hear() {
    char word = 0;
    EXPECT_EQ(read(here_[0], &word, 1), 1);
  }
  void swap() {
    std::swap(here_[0], there_[0]);
    std::swap(here_[1], there_[1]);
  }

 private:
  int here_[2];
  int there_[2];
};

TEST(SharedSleepClock, PassesAtOnceForOneProcess) {
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  const auto begun = Real::now();
  for (int i = 0; i < 1000; ++i) EXPECT_EQ(camera->sleep(1h), 0);
  EXPECT_EQ(camera->snapshot().clock.now(), 1000h);
  EXPECT_LT(Real::now() - begun, 10s);
}

TEST(SharedSleepClock, StandsStillOtherwise) {
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  EXPECT_EQ(camera->sleep(0ns), 0);
  for (int i = 0; i < 100; ++i) camera->change();
  EXPECT_EQ(camera->snapshot().clock.now(), 0ns);
}

/// The time that passes while two processes sleep for `times` times 10 ms each.
std::chrono::nanoseconds slept_together(int times) {
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  Meeting meeting;
  const auto sleep = [&] {
    for (int i = 0; i < times; ++i) camera->sleep(10ms);
    return 0;
  };
  Child child([&] {
    meeting.swap();
    camera->snapshot();
    meeting.tell();
    meeting.hear();
    return sleep();
  });
  meeting.hear();
  camera->snapshot();
  meeting.tell();
  sleep();
  EXPECT_EQ(child.wait(), 0);
  return camera->snapshot().clock.now();
}

TEST(SharedSleepClock, DoesNotAddUpWhatIsSleptAtTheSameTime) {
  constexpr int times = 20;
  auto together = slept_together(times);
  // Somebody whom the machine does not let run is not waited for, but in one of many attempts both run.
  for (int others = 0; others < 50 && together > times * 10ms; ++others) {
    together = std::min(together, slept_together(times));
  }
  EXPECT_EQ(together, times * 10ms) << "in turns it would be twice that";
}

bool anybody_asleep(const SharedCamera& camera) {
  const auto processes = camera.processes();
  return std::any_of(processes.begin(), processes.end(),
                     [](const auto& process) { return process.asleep; });
}

TEST(SharedSleepClock, GoesOnWithTheTransfersOfThoseWhoDoNotSleep) {
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  Child sleeper([&] { return camera->sleep(10ms); });
  // Whoever is kept from calling for too long finds the sleeper gone with the clock.
  while (!anybody_asleep(*camera) && camera->snapshot().clock.now() < 10ms) {
  }
  int transfers = 0;
  const auto begun = Real::now();
  while (camera->snapshot().clock.now() < 10ms && Real::now() - begun < 30s) {
    camera->change()->clock.advance(56us);
    ++transfers;
  }
  EXPECT_EQ(sleeper.wait(), 0);
  EXPECT_LT(camera->snapshot().clock.now(), 11ms);
  EXPECT_LE(transfers, 179) << "10 ms, 56 us each";
}

TEST(SharedSleepClock, AddsTransfersUpAndNeverSleeps) {
  constexpr int times = 500;
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  const auto transfer = [&] {
    for (int i = 0; i < times; ++i) camera->change()->clock.advance(56us);
    return 0;
  };
  Child child(transfer);
  transfer();
  EXPECT_EQ(child.wait(), 0);
  EXPECT_EQ(camera->snapshot().clock.now(), 2 * times * 56us);
}

TEST(SharedSleepClock, HoldsUpNobodyWhoSleepsAndTransfersInTurns) {
  constexpr int times = 200;
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  const auto work = [&] {
    for (int i = 0; i < times; ++i) {
      camera->sleep(1ms);
      camera->change()->clock.advance(56us);
    }
    return 0;
  };
  const auto begun = Real::now();
  Child first(work);
  Child second(work);
  work();
  EXPECT_EQ(first.wait(), 0);
  EXPECT_EQ(second.wait(), 0);
  EXPECT_GE(camera->snapshot().clock.now(), times * 1056us);
  EXPECT_LT(Real::now() - begun, 30s);
}

TEST(SharedSleepClock, WakesUpTheEarliestFirst) {
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  Child long_sleeper([&]() -> int {
    while (true) camera->sleep(100h);
  });
  int alone = 0;
  for (int i = 0; i < 50; ++i) {
    while (!anybody_asleep(*camera)) camera->snapshot();
    const auto before = camera->snapshot().clock.now();
    camera->sleep(1s);
    const auto slept = camera->snapshot().clock.now() - before;
    EXPECT_GE(slept, 1s);
    // The clock goes on without this one if the machine does not let it run for a while.
    if (slept == 1s) ++alone;
  }
  EXPECT_GT(alone, 0);
}

TEST(SharedSleepClock, WaitsForNobodyForEver) {
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  Meeting meeting;
  Child computing([&]() -> int {
    meeting.swap();
    camera->snapshot();
    meeting.tell();
    while (true) {
    }
  });
  meeting.hear();
  const auto begun = Real::now();
  for (int i = 0; i < 1000; ++i) camera->sleep(1s);
  EXPECT_EQ(camera->snapshot().clock.now(), 1000s);
  EXPECT_LT(Real::now() - begun, 15s);
}

TEST(SharedSleepClock, GoesOnWhenASleeperDies) {
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  for (int i = 0; i < 70; ++i) {
    Child child([&]() -> int {
      while (true) camera->sleep(24h);
    });
    while (!anybody_asleep(*camera)) camera->snapshot();
    child.kill();
    EXPECT_EQ(child.wait(), -SIGKILL);
  }
  const auto before = camera->snapshot().clock.now();
  camera->sleep(1s);
  EXPECT_EQ(camera->snapshot().clock.now(), before + 1s);
}

TEST(SharedScaledClock, GoesAMultipleOfRealTime) {
  NamedCamera named;
  const auto camera = named.use(clock_of({ClockMode::scaled, 1000}));
  const auto begun = Real::now();
  const auto first = camera->snapshot().clock.now();
  EXPECT_EQ(camera->sleep(20s), 0);
  const auto real = Real::now() - begun;
  const auto passed = camera->snapshot().clock.now() - first;
  EXPECT_GE(real, 20ms);
  EXPECT_LT(real, 20s);
  EXPECT_GE(passed, 20s);
}

TEST(SharedRealClock, IsOneForAllProcesses) {
  NamedCamera named;
  const auto camera = named.use();
  const auto first = camera->snapshot().clock.now();
  EXPECT_EQ(camera->sleep(2ms), 0);
  EXPECT_GE(named.use()->snapshot().clock.now(), first + 2ms);
}

TEST(Pacing, ScalesTimeBothWays) {
  using kelvo::sim::passed;
  EXPECT_EQ(passed({ClockMode::real, 1}, 1500ns), 1500ns);
  EXPECT_EQ(passed({ClockMode::scaled, 2.5}, 1000ns), 2500ns);
  EXPECT_EQ(passed({ClockMode::scaled, 0.1}, 1s), 100ms);
  const auto begun = Real::now();
  EXPECT_EQ(kelvo::sim::sleep_by({ClockMode::scaled, 0.1}, 1ms), 0);
  EXPECT_GE(Real::now() - begun, 10ms);
  EXPECT_EQ(kelvo::sim::sleep_by({ClockMode::real, 1}, -1s), 0);
}

TEST(Pacing, SleepsForNothingShorterThan20RealMilliseconds) {
  using kelvo::sim::worth_a_sleep;
  EXPECT_FALSE(worth_a_sleep({ClockMode::real, 1}, 19'999us));
  EXPECT_TRUE(worth_a_sleep({ClockMode::real, 1}, 20ms));
  EXPECT_FALSE(worth_a_sleep({ClockMode::scaled, 10}, 199ms));
  EXPECT_TRUE(worth_a_sleep({ClockMode::scaled, 10}, 200ms));
  EXPECT_TRUE(worth_a_sleep({ClockMode::scaled, 0.1}, 2ms));
  EXPECT_FALSE(worth_a_sleep({ClockMode::sleep, 1}, 0ms));
}

TEST(Pacing, EndsASleepAtASignal) {
  struct sigaction action {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, nullptr);
  alarm(1);
  EXPECT_EQ(kelvo::sim::sleep_by({ClockMode::real, 1}, 3600s), -EINTR);
}

}  // namespace
