// A lens motor as the commands use it.
#ifndef KELVO_TOOLS_KELVOCTL_LENS_MOTOR_H
#define KELVO_TOOLS_KELVOCTL_LENS_MOTOR_H

#include <chrono>
#include <string>

#include "tools/kelvoctl/common/numbers.h"
#include "tools/kelvoctl/common/session.h"
#include "tools/kelvoctl/lens/motor_table.h"

namespace kelvo::ctl {

/// What a counter can be set to.
constexpr Range all_counts{0, 0x7FFFFFFF};

/// Throws a Failure where the module does not have the motor.
void refuse_unless_fitted(const Session& session, const Motor& motor);

/// What every result begins with: the motor and the module.
Json motor_json(const Session& session, const Motor& motor);

/// Where it stands; null where the module does not tell.
Json count_json(Session& session, const Motor& motor);

/// Sets its counter. Throws a Failure where the module cannot, or not to this count.
void set_count(Session& session, const Motor& motor, std::uint32_t count);
/// Throws a Failure where set_count() would.
void refuse_unless_settable(const Session& session, const Motor& motor, std::uint32_t count);

void start(Session& session, const MoveWay& way, std::uint8_t speed, std::uint32_t steps);
bool is_running(Session& session, const Motor& motor);
/// Cuts its power, whatever it does, and says so.
std::string power_off(Session& session, const Motor& motor);
/// The same unless it stands still; then nothing.
std::string stop_if_running(Session& session, const Motor& motor);

/// Waits until `over` says so, and returns the time that it took. Ctrl-C cuts the motor's power.
std::chrono::microseconds wait_for(Session& session, const Motor& motor,
                                   std::chrono::microseconds timeout,
                                   const std::function<bool()>& over);

/// Milliseconds as results have them.
inline std::int64_t milliseconds_of(std::chrono::microseconds time) { return time.count() / 1000; }

}  // namespace kelvo::ctl

#endif
