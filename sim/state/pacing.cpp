#include "sim/state/pacing.h"

#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>

namespace kelvo::sim {

using std::chrono::nanoseconds;

camera::Time passed(const ClockSetting& clock, nanoseconds real) {
  if (clock.mode != ClockMode::scaled) return real;
  return nanoseconds(static_cast<std::int64_t>(static_cast<double>(real.count()) * clock.speed));
}

int sleep_by(const ClockSetting& clock, camera::Time time) {
  if (time <= camera::Time::zero()) return 0;
  const double real = static_cast<double>(time.count()) / clock.speed;
  const auto whole = nanoseconds(static_cast<std::int64_t>(real));
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(whole);
  const timespec length{seconds.count(), (whole - seconds).count()};
  const long result = syscall(SYS_clock_nanosleep, CLOCK_MONOTONIC, 0, &length, nullptr);
  return result == 0 ? 0 : -EINTR;
}

}  // namespace kelvo::sim
