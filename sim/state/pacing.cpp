#include "sim/state/pacing.h"

#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>

namespace kelvo::sim {

using std::chrono::nanoseconds;

namespace {

nanoseconds real_length(const ClockSetting& clock, camera::Time time) {
  return nanoseconds(static_cast<std::int64_t>(static_cast<double>(time.count()) / clock.speed));
}

timespec to_timespec(nanoseconds time) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
  return {seconds.count(), (time - seconds).count()};
}

}  // namespace

camera::Time passed(const ClockSetting& clock, nanoseconds real) {
  if (clock.mode != ClockMode::scaled) return real;
  return nanoseconds(static_cast<std::int64_t>(static_cast<double>(real.count()) * clock.speed));
}

bool worth_a_sleep(const ClockSetting& clock, camera::Time lead) {
  return real_length(clock, lead) >= longest_lead;
}

int sleep_by(const ClockSetting& clock, camera::Time time) {
  if (time <= camera::Time::zero()) return 0;
  const timespec length = to_timespec(real_length(clock, time));
  const long result = syscall(SYS_clock_nanosleep, CLOCK_MONOTONIC, 0, &length, nullptr);
  return result == 0 ? 0 : -EINTR;
}

void sleep_through(const ClockSetting& clock, camera::Time time) {
  if (time <= camera::Time::zero()) return;
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  const timespec end = to_timespec(now + real_length(clock, time));
  while (syscall(SYS_clock_nanosleep, CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) != 0) {
    if (errno != EINTR) return;
  }
}

}  // namespace kelvo::sim
