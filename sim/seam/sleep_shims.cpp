// The intercepted libc names that one can sleep in.
#include <poll.h>
#include <signal.h>
#include <sys/select.h>
#include <threads.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>

#include "sim/seam/real.h"
#include "sim/seam/router.h"

using kelvo::sim::real;
using kelvo::sim::SleepCall;
namespace router = kelvo::sim::router;

namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;

constexpr long nanoseconds_in_second = 1'000'000'000;
constexpr long microseconds_in_second = 1'000'000;

/// A time of `value` seconds and `part`, if it is one that the kernel takes, and none that overflows.
std::optional<nanoseconds> checked(long value, long part, long parts_in_second) {
  constexpr long longest = 1'000'000'000;  // more than thirty years
  if (value < 0 || part < 0 || part >= parts_in_second) return {};
  return seconds(std::min(value, longest)) +
         nanoseconds(part * (nanoseconds_in_second / parts_in_second));
}

std::optional<nanoseconds> duration(const timespec* time) {
  if (time == nullptr) return {};
  return checked(time->tv_sec, time->tv_nsec, nanoseconds_in_second);
}

std::optional<nanoseconds> duration(const timeval* time) {
  if (time == nullptr) return {};
  return checked(time->tv_sec, time->tv_usec, microseconds_in_second);
}

timespec to_timespec(nanoseconds time) {
  const auto whole = std::chrono::duration_cast<seconds>(time);
  return {whole.count(), (time - whole).count()};
}

/// How long an absolute sleep has to go; nothing for a clock that does not go by itself.
std::optional<nanoseconds> until(clockid_t clock, nanoseconds wake_up) {
  timespec now{};
  if (clock_gettime(clock, &now) != 0) return {};
  return std::max(wake_up - duration(&now).value_or(nanoseconds::zero()), nanoseconds::zero());
}

/// Clocks that count the time of a process or thread stand still while it sleeps.
bool goes_by_itself(clockid_t clock) {
  return clock == CLOCK_REALTIME || clock == CLOCK_MONOTONIC || clock == CLOCK_BOOTTIME ||
         clock == CLOCK_TAI;
}

/// Sleeps; then `result` is 0, or -1 with errno and what is left of the time in `remaining`.
bool slept(SleepCall call, std::optional<nanoseconds> time, timespec* remaining, int& result) {
  nanoseconds left{};
  if (!time || !router::delay(call, *time, result, left)) return false;
  if (result < 0 && remaining != nullptr) *remaining = to_timespec(left);
  return true;
}

/// A wait for nothing but the time. One of no time at all only looks.
bool sleeps(bool waits_for_descriptors, std::optional<nanoseconds> time) {
  return !waits_for_descriptors && time && *time > nanoseconds::zero();
}

bool any_in(int count, const fd_set* read, const fd_set* write, const fd_set* except) {
  for (const fd_set* const set : {read, write, except}) {
    for (int i = 0; set != nullptr && i < std::min<int>(count, FD_SETSIZE); ++i) {
      if (FD_ISSET(i, set)) return true;
    }
  }
  return count > FD_SETSIZE;
}

/// An entry with a negative descriptor waits for nothing. Entries are not const, as libc declares that they are
/// written alone.
bool any_in(pollfd* entries, nfds_t count) {
  if (entries == nullptr) return count != 0;
  return std::any_of(entries, entries + count, [](const pollfd& entry) { return entry.fd >= 0; });
}

/// Sleeps; then nothing has happened to any entry, and `result` is what the call returns.
bool slept(SleepCall call, pollfd* entries, nfds_t count, std::optional<nanoseconds> time,
           int& result) {
  if (!router::delay(call, time.value_or(nanoseconds::zero()), result)) return false;
  for (nfds_t i = 0; i < count; ++i) entries[i].revents = 0;
  return true;
}

/// The signals that a call lets through, for as long as it lives.
class SignalMask {
 public:
  explicit SignalMask(const sigset_t* mask) : changed_(mask != nullptr) {
    if (changed_) pthread_sigmask(SIG_SETMASK, mask, &before_);
  }
  ~SignalMask() {
    if (changed_) pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  SignalMask(const SignalMask&) = delete;
  SignalMask& operator=(const SignalMask&) = delete;

 private:
  bool changed_;
  sigset_t before_{};
};

}  // namespace

#pragma GCC visibility push(default)
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): libc's own names
extern "C" {

int __poll_chk(pollfd* descriptors, nfds_t count, int milliseconds, size_t room);
int __ppoll_chk(pollfd* descriptors, nfds_t count, const timespec* time, const sigset_t* mask,
                size_t room);

int usleep(useconds_t time) {
  int result = 0;
  if (router::delay(SleepCall::usleep, microseconds(time), result)) return result;
  return real().usleep(time);
}

unsigned sleep(unsigned time) {
  int result = 0;
  nanoseconds left{};
  if (!router::delay(SleepCall::sleep, seconds(time), result, left)) return real().sleep(time);
  // Rounded up: somebody who sleeps on does not sleep too short.
  const auto whole = std::chrono::ceil<seconds>(left).count();
  return result < 0 ? static_cast<unsigned>(whole) : 0;
}

int nanosleep(const timespec* time, timespec* remaining) {
  int result = 0;
  if (slept(SleepCall::nanosleep, duration(time), remaining, result)) return result;
  return real().nanosleep(time, remaining);
}

int thrd_sleep(const timespec* time, timespec* remaining) {
  int result = 0;
  if (slept(SleepCall::thrd_sleep, duration(time), remaining, result)) return result;
  return real().thrd_sleep(time, remaining);
}

int clock_nanosleep(clockid_t clock, int flags, const timespec* time, timespec* remaining) {
  const bool absolute = (flags & TIMER_ABSTIME) != 0;
  std::optional<nanoseconds> length = duration(time);
  if (length && absolute) length = until(clock, *length);
  if (!goes_by_itself(clock)) length.reset();
  int result = 0;
  if (!slept(SleepCall::clock_nanosleep, length, absolute ? nullptr : remaining, result)) {
    return real().clock_nanosleep(clock, flags, time, remaining);
  }
  // This one returns the error number itself.
  return result < 0 ? errno : 0;
}

int select(int count, fd_set* read, fd_set* write, fd_set* except, timeval* time) {
  int result = 0;
  nanoseconds left{};
  const std::optional<nanoseconds> length = duration(time);
  if (!sleeps(any_in(count, read, write, except), length) ||
      !router::delay(SleepCall::select, length.value_or(nanoseconds::zero()), result, left)) {
    return real().select(count, read, write, except, time);
  }
  const timespec rest = to_timespec(result < 0 ? left : nanoseconds::zero());
  *time = {rest.tv_sec, rest.tv_nsec / 1000};
  return result;
}

int pselect(int count, fd_set* read, fd_set* write, fd_set* except, const timespec* time,
            const sigset_t* mask) {
  int result = 0;
  const std::optional<nanoseconds> length = duration(time);
  if (sleeps(any_in(count, read, write, except), length)) {
    const SignalMask signals(mask);
    if (router::delay(SleepCall::pselect, length.value_or(nanoseconds::zero()), result))
      return result;
  }
  return real().pselect(count, read, write, except, time, mask);
}

int poll(pollfd* descriptors, nfds_t count, int time) {
  int result = 0;
  const auto length = milliseconds(time);
  if (sleeps(any_in(descriptors, count), length) &&
      slept(SleepCall::poll, descriptors, count, length, result)) {
    return result;
  }
  return real().poll(descriptors, count, time);
}

int ppoll(pollfd* descriptors, nfds_t count, const timespec* time, const sigset_t* mask) {
  int result = 0;
  const std::optional<nanoseconds> length = duration(time);
  if (sleeps(any_in(descriptors, count), length)) {
    const SignalMask signals(mask);
    if (slept(SleepCall::ppoll, descriptors, count, length, result)) return result;
  }
  return real().ppoll(descriptors, count, time, mask);
}

int sigtimedwait(const sigset_t* signals, siginfo_t* what, const timespec* time) {
  int result = 0;
  const std::optional<nanoseconds> length = duration(time);
  if (!sleeps(sigisemptyset(signals) == 0, length) ||
      !router::delay(SleepCall::sigtimedwait, length.value_or(nanoseconds::zero()), result)) {
    return real().sigtimedwait(signals, what, time);
  }
  if (result == 0) errno = EAGAIN;
  return -1;
}

int __poll_chk(pollfd* descriptors, nfds_t count, int time, size_t room) {
  if (room / sizeof(pollfd) < count) __builtin_trap();
  return ::poll(descriptors, count, time);
}

int __ppoll_chk(pollfd* descriptors, nfds_t count, const timespec* time, const sigset_t* mask,
                size_t room) {
  if (room / sizeof(pollfd) < count) __builtin_trap();
  return ::ppoll(descriptors, count, time, mask);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
#pragma GCC visibility pop
