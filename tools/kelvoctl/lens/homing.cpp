// Homing by photo-interrupter: into it fast, out of it slowly, and where it clears is home.
#include "tools/kelvoctl/lens/homing.h"

#include <array>
#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/numbers.h"
#include "tools/kelvoctl/common/signals.h"
#include "tools/kelvoctl/lens/interrupters.h"
#include "tools/kelvoctl/lens/lens_use.h"
#include "tools/kelvoctl/lens/motor.h"

namespace kelvo::ctl {
namespace {

using std::chrono::microseconds;

constexpr Range travels{1, 0xFFFF};

struct HomeOptions {
  std::optional<std::int64_t> sensor;
  std::optional<std::int64_t> at;
  std::int64_t speed = 100;
  std::int64_t travel = 4000;
  microseconds timeout = std::chrono::seconds(60);
};

/// A move until the interrupter is in a state; left out where it is already.
struct Leg {
  bool forward;
  bool fast;
  bool until_interrupted;
};
constexpr std::array legs{Leg{true, true, false}, Leg{false, true, true}, Leg{true, false, false}};

class Homing {
 public:
  Homing(Session& session, const Motor& motor, const HomeOptions& options)
      : session_(session),
        motor_(motor),
        options_(options),
        sensor_(
            static_cast<std::uint32_t>(options.sensor.value_or(motor.sensor.on(session.lens())))) {
    supply(1);
  }
  ~Homing() {
    try {
      supply(0);
    } catch (const Failure&) {
      // The bus lock: the command ends by it already.
    }
  }
  Homing(const Homing&) = delete;
  Homing& operator=(const Homing&) = delete;

  /// Returns the time that it took. The motor is stopped, however it ends.
  microseconds run() {
    microseconds time{0};
    try {
      for (const Leg& leg : legs) time += go(leg, options_.timeout - time);
    } catch (const Interrupted&) {
      throw;  // stopped already
    } catch (const Failure& failure) {
      throw Failure(failure.code(), failure.what() + (": " + power_off(session_, motor_)));
    }
    return time;
  }

  std::uint32_t sensor() const { return sensor_; }

 private:
  void supply(std::int32_t on) {
    session_.send([on] { return SetPIPower(on); });
    if (motor_.interrupter_at_pt5111.on(session_.lens())) {
      session_.send([on] { return PT5111PI1(on); });
    }
  }

  bool interrupted() {
    const std::uint32_t state = session_.send([this] { return getPI(sensor_); });
    session_.check_lens_link();
    return state == 1;
  }

  microseconds go(const Leg& leg, microseconds timeout) {
    if (interrupted() == leg.until_interrupted) return microseconds(0);
    const MoveWays& ways = motor_.ways_of(Stepping::plain);
    const MoveWay& way = leg.forward ? ways.forward : ways.backward;
    const std::uint8_t speed =
        leg.fast ? static_cast<std::uint8_t>(options_.speed) : motor_.slow.on(session_.lens());
    start(session_, way, speed, static_cast<std::uint32_t>(options_.travel));
    const auto over = [&] {
      const bool running = is_running(session_, motor_);  // first: it may end in between
      if (interrupted() == leg.until_interrupted) return true;
      if (!running) throw unchanged(leg);
      return false;
    };
    const microseconds time = wait_for(session_, motor_, timeout, over);
    start(session_, way, speed, 0);  // a move by no steps stops it and leaves its coils on
    return time;
  }

  Failure unchanged(const Leg& leg) const {
    return {ExitCode::bad_data, "photo-interrupter " + std::to_string(sensor_) +
                                    " did not change in " + std::to_string(options_.travel) +
                                    " steps " + (leg.forward ? "forward" : "backward") +
                                    ", see --sensor and --travel"};
  }

  Session& session_;
  const Motor& motor_;
  const HomeOptions& options_;
  std::uint32_t sensor_;
};

Json home(Session& session, const Motor& motor, const HomeOptions& options) {
  refuse_unless_fitted(session, motor);
  const auto at = static_cast<std::uint32_t>(options.at.value_or(0));
  const bool sets = motor.presets.on(session.lens()) != Preset::none;
  if (options.sensor) check_sensor(session.lens(), *options.sensor);
  if (options.at) refuse_unless_settable(session, motor, at);
  session.limit_patience(options.timeout);
  use_lens(session);
  Json result = motor_json(session, motor);
  Homing homing(session, motor, options);
  result["sensor"] = homing.sensor();
  result["count_before"] = count_json(session, motor);
  session.set_in_motion(motor.name, [&session, &motor] { return stop_if_running(session, motor); });
  const microseconds time = homing.run();
  result["count_at_home"] = count_json(session, motor);
  if (sets) set_count(session, motor, at);
  result["count_after"] = count_json(session, motor);
  result["time_ms"] = milliseconds_of(time);
  return result;
}

}  // namespace

void add_homing(CommandTable& table, CLI::App& group, const Motor& motor) {
  auto [command, options] = table.add<HomeOptions>(
      group, "home", "Finds the end of its photo-interrupter and counts from there",
      [&motor](Session& session, const HomeOptions& given) { return home(session, motor, given); });
  add_number(command, "--sensor", options.sensor, byte_range,
             "The photo-interrupter; the motor's usual one unless given");
  add_number(command, "--at", options.at, all_counts, "The count at home; 0 unless given");
  add_number(command, "--speed", options.speed, byte_range,
             "Level of the fast moves; 100 unless given");
  add_number(command, "--travel", options.travel, travels,
             "Steps after which it gives up; 4000 unless given");
  add_duration(command, "--timeout", options.timeout, "The longest wait; 60s unless given");
}

}  // namespace kelvo::ctl
