// Every way to sleep reaches the host; a wait for something else than the time does not.
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/select.h>
#include <threads.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <functional>
#include <ostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "script/installed_host.h"

extern "C" {
// What hardened programs call.
int __poll_chk(pollfd* descriptors, nfds_t count, int milliseconds, size_t room);
int __ppoll_chk(pollfd* descriptors, nfds_t count, const timespec* time, const sigset_t* mask,
                size_t room);
}

namespace {

using kelvo::sim::Answer;
using kelvo::sim::SleepCall;
using kelvo::test::Installed;
using std::chrono::nanoseconds;
using namespace std::chrono_literals;

class SleepHost final : public kelvo::sim::Host {
 public:
  Answer delay(SleepCall call, nanoseconds time) override {
    sleeps.emplace_back(call, time);
    sigset_t blocked{};
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    user_signal_blocked = sigismember(&blocked, SIGUSR1) == 1;
    return answer;
  }
  double speed() const override { return 1'000'000; }

  std::vector<std::pair<SleepCall, nanoseconds>> sleeps;
  Answer answer = 0;
  bool user_signal_blocked = false;
};

struct Sleep {
  const char* name;
  SleepCall call;
  nanoseconds time;
  std::function<int()> sleep;
};
void PrintTo(const Sleep& sleep, std::ostream* stream) { *stream << sleep.name; }

timespec two_seconds() { return {2, 3}; }
const timespec time_to_sleep = two_seconds();
timeval two_seconds_of_select = {2, 3};

pollfd nobody[] = {{-1, POLLIN, POLLIN}, {-7, POLLOUT, POLLOUT}};
const sigset_t no_signals = {};

/// 0 for what is to come of it.
int expired(int result) { return result == -1 && errno == EAGAIN ? 0 : -2; }

const Sleep every_sleep[] = {
    {"usleep", SleepCall::usleep, 4us, [] { return usleep(4); }},
    {"sleep", SleepCall::sleep, 5s, [] { return static_cast<int>(sleep(5)); }},
    {"nanosleep", SleepCall::nanosleep, 2s + 3ns,
     [] { return nanosleep(&time_to_sleep, nullptr); }},
    {"clock_nanosleep", SleepCall::clock_nanosleep, 2s + 3ns,
     [] { return clock_nanosleep(CLOCK_BOOTTIME, 0, &time_to_sleep, nullptr); }},
    {"thrd_sleep", SleepCall::thrd_sleep, 2s + 3ns,
     [] { return thrd_sleep(&time_to_sleep, nullptr); }},
    {"select", SleepCall::select, 2s + 3us,
     [] { return select(0, nullptr, nullptr, nullptr, &two_seconds_of_select); }},
    {"pselect", SleepCall::pselect, 2s + 3ns,
     [] { return pselect(0, nullptr, nullptr, nullptr, &time_to_sleep, nullptr); }},
    {"poll", SleepCall::poll, 7ms, [] { return poll(nullptr, 0, 7); }},
    {"ppoll", SleepCall::ppoll, 2s + 3ns,
     [] { return ppoll(nullptr, 0, &time_to_sleep, nullptr); }},
    {"poll_chk", SleepCall::poll, 7ms, [] { return __poll_chk(nullptr, 0, 7, 0); }},
    {"ppoll_chk", SleepCall::ppoll, 2s + 3ns,
     [] { return __ppoll_chk(nullptr, 0, &time_to_sleep, nullptr, 0); }},
    {"poll_of_nobody", SleepCall::poll, 7ms, [] { return poll(nobody, 2, 7); }},
    {"ppoll_of_nobody", SleepCall::ppoll, 2s + 3ns,
     [] { return ppoll(nobody, 2, &time_to_sleep, nullptr); }},
    {"poll_chk_of_nobody", SleepCall::poll, 7ms,
     [] { return __poll_chk(nobody, 2, 7, sizeof nobody); }},
    {"sigtimedwait", SleepCall::sigtimedwait, 2s + 3ns,
     [] { return expired(sigtimedwait(&no_signals, nullptr, &time_to_sleep)); }},
    {"sleep_for", SleepCall::nanosleep, 7ms,
     [] {
       std::this_thread::sleep_for(7ms);
       return 0;
     }},
};

class SeamSleep : public testing::TestWithParam<Sleep> {};

TEST_P(SeamSleep, ReachesTheHost) {
  SleepHost host;
  const Installed installed(host);
  EXPECT_EQ(GetParam().sleep(), 0);
  const decltype(host.sleeps) expected = {{GetParam().call, GetParam().time}};
  EXPECT_EQ(host.sleeps, expected);
}

INSTANTIATE_TEST_SUITE_P(Calls, SeamSleep, testing::ValuesIn(every_sleep),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(SeamSleeps, AreShortWhereNothingAnswers) {
  kelvo::sim::Host kernel;
  const Installed installed(kernel);
  const timespec moment = {0, 1};
  timeval moment_of_select = {0, 1};
  EXPECT_EQ(thrd_sleep(&moment, nullptr), 0);
  EXPECT_EQ(select(0, nullptr, nullptr, nullptr, &moment_of_select), 0);
  EXPECT_EQ(pselect(0, nullptr, nullptr, nullptr, &moment, nullptr), 0);
  EXPECT_EQ(poll(nullptr, 0, 1), 0);
  EXPECT_EQ(ppoll(nullptr, 0, &moment, nullptr), 0);
  EXPECT_EQ(poll(nobody, 2, 1), 0);
  EXPECT_EQ(ppoll(nobody, 2, &moment, nullptr), 0);
  EXPECT_EQ(expired(sigtimedwait(&no_signals, nullptr, &moment)), 0);
}

TEST(SeamSleeps, APollOfNobodyLeavesNothingBehind) {
  SleepHost host;
  const Installed installed(host);
  for (const bool with_mask : {false, true}) {
    pollfd entries[] = {{-1, POLLIN, POLLIN}, {-7, POLLOUT, POLLERR}};
    EXPECT_EQ(with_mask ? ppoll(entries, 2, &time_to_sleep, nullptr) : poll(entries, 2, 7), 0);
    EXPECT_EQ(entries[0].revents, 0);
    EXPECT_EQ(entries[1].revents, 0);
  }
}

TEST(SeamSleeps, EntriesThatAreNoneAreLeftToTheKernel) {
  SleepHost host;
  const Installed installed(host);
  pollfd* volatile none = nullptr;
  EXPECT_EQ(poll(none, 1, 7), -1);
  EXPECT_EQ(errno, EFAULT);
  EXPECT_EQ(ppoll(none, 1, &time_to_sleep, nullptr), -1);
  EXPECT_EQ(errno, EFAULT);
  EXPECT_EQ(host.sleeps.size(), 0U);
}

TEST(SeamSleeps, AWaitForASignalIsNone) {
  SleepHost host;
  const Installed installed(host);
  const timespec moment = {0, 1};
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGUSR1);
  EXPECT_EQ(expired(sigtimedwait(&signals, nullptr, &moment)), 0);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  raise(SIGUSR1);
  EXPECT_EQ(sigtimedwait(&signals, nullptr, &time_to_sleep), SIGUSR1);
  EXPECT_EQ(host.sleeps.size(), 0U);
}

TEST(SeamSleeps, AWaitForADescriptorIsNone) {
  SleepHost host;
  const Installed installed(host);
  int pipe_ends[2] = {};
  ASSERT_EQ(pipe(pipe_ends), 0);
  const timespec moment = {0, 1};
  timeval moment_of_select = {0, 1};
  fd_set set;
  FD_ZERO(&set);
  FD_SET(pipe_ends[0], &set);
  EXPECT_EQ(select(pipe_ends[0] + 1, &set, nullptr, nullptr, &moment_of_select), 0);
  FD_SET(pipe_ends[0], &set);
  EXPECT_EQ(pselect(pipe_ends[0] + 1, &set, nullptr, nullptr, &moment, nullptr), 0);
  pollfd wanted[] = {{-1, POLLIN, 0}, {pipe_ends[0], POLLIN, 0}};
  EXPECT_EQ(poll(wanted, 2, 1), 0);
  EXPECT_EQ(ppoll(wanted, 2, &moment, nullptr), 0);
  EXPECT_EQ(host.sleeps.size(), 0U);
  FD_ZERO(&set);
  moment_of_select = {0, 1};  // the wait has used it up
  EXPECT_EQ(select(pipe_ends[0] + 1, &set, nullptr, nullptr, &moment_of_select), 0);
  EXPECT_EQ(host.sleeps.size(), 1U) << "sets without any descriptor";
}

TEST(SeamSleeps, ALookAtNothingIsNone) {
  SleepHost host;
  const Installed installed(host);
  const timespec no_time = {0, 0};
  timeval no_time_of_select = {0, 0};
  EXPECT_EQ(select(0, nullptr, nullptr, nullptr, &no_time_of_select), 0);
  EXPECT_EQ(pselect(0, nullptr, nullptr, nullptr, &no_time, nullptr), 0);
  EXPECT_EQ(poll(nullptr, 0, 0), 0);
  EXPECT_EQ(ppoll(nullptr, 0, &no_time, nullptr), 0);
  EXPECT_EQ(poll(nobody, 2, 0), 0);
  EXPECT_EQ(expired(sigtimedwait(&no_signals, nullptr, &no_time)), 0);
  EXPECT_EQ(host.sleeps.size(), 0U);
}

TEST(SeamSleeps, TimesThatAreNoneAreLeftToTheKernel) {
  SleepHost host;
  const Installed installed(host);
  for (const timespec wrong : {timespec{-1, 0}, timespec{0, -1}, timespec{0, 1'000'000'000}}) {
    EXPECT_EQ(nanosleep(&wrong, nullptr), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(clock_nanosleep(CLOCK_MONOTONIC, 0, &wrong, nullptr), EINVAL);
    EXPECT_EQ(ppoll(nullptr, 0, &wrong, nullptr), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(sigtimedwait(&no_signals, nullptr, &wrong), -1);
    EXPECT_EQ(errno, EINVAL);
  }
  timeval wrong_of_select = {-1, 0};
  EXPECT_EQ(select(0, nullptr, nullptr, nullptr, &wrong_of_select), -1);
  EXPECT_EQ(clock_nanosleep(CLOCK_THREAD_CPUTIME_ID, 0, &time_to_sleep, nullptr), EINVAL);
  EXPECT_EQ(host.sleeps.size(), 0U);
}

TEST(SeamSleeps, WhatIsLeftOfABrokenOneGoesByTheClockOfTheHost) {
  SleepHost host;
  const Installed installed(host);
  host.answer = -EINTR;
  const timespec day = {86'400, 0};
  timespec left = {};
  EXPECT_EQ(nanosleep(&day, &left), -1);
  EXPECT_EQ(errno, EINTR);
  EXPECT_LT(left.tv_sec, 86'400) << "the moment that it took is longer by the host's clock";
  left = {};
  EXPECT_EQ(clock_nanosleep(CLOCK_MONOTONIC, 0, &day, &left), EINTR);
  EXPECT_GT(left.tv_sec + left.tv_nsec, 0);
  EXPECT_EQ(thrd_sleep(&day, &left), -1);
  EXPECT_LE(sleep(86'400), 86'400U);
  timeval left_of_select = {86'400, 0};
  EXPECT_EQ(select(0, nullptr, nullptr, nullptr, &left_of_select), -1);
  EXPECT_LT(left_of_select.tv_sec, 86'400);
  EXPECT_EQ(poll(nullptr, 0, 1000), -1);
  EXPECT_EQ(errno, EINTR);
  EXPECT_EQ(sigtimedwait(&no_signals, nullptr, &day), -1);
  EXPECT_EQ(errno, EINTR);
  EXPECT_EQ(host.sleeps.size(), 7U);
}

TEST(SeamSleeps, SelectLeavesNoTimeBehind) {
  SleepHost host;
  const Installed installed(host);
  timeval time = {2, 3};
  EXPECT_EQ(select(0, nullptr, nullptr, nullptr, &time), 0);
  EXPECT_EQ(time.tv_sec, 0);
  EXPECT_EQ(time.tv_usec, 0);
}

TEST(SeamSleeps, AMaskOfSignalsIsInForceDuringTheSleepAlone) {
  SleepHost host;
  const Installed installed(host);
  sigset_t mask;
  sigemptyset(&mask);
  sigaddset(&mask, SIGUSR1);
  for (const bool by_select : {true, false}) {
    by_select ? pselect(0, nullptr, nullptr, nullptr, &time_to_sleep, &mask)
              : ppoll(nullptr, 0, &time_to_sleep, &mask);
    EXPECT_TRUE(host.user_signal_blocked);
    usleep(1);
    EXPECT_FALSE(host.user_signal_blocked);
  }
}

}  // namespace
