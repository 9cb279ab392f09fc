#include "tools/kelvoctl/lens/motor.h"

#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/lens/lens_use.h"

namespace kelvo::ctl {
namespace {

constexpr std::chrono::milliseconds motor_poll_pause{10};

void send_count(Session& session, const Motor& motor, std::uint32_t count) {
  check_sent(session, session.send([&] { return motor.preset(count); }));
}

void show(Session& session, const Motor& motor) {
  if (!session.shows_progress()) return;
  const Json count = count_json(session, motor);
  session.progress(std::string(motor.name) + (count.is_null() ? " moves" : ": " + count.dump()));
}

}  // namespace

void refuse_unless_fitted(const Session& session, const Motor& motor) {
  const LensModule module = session.lens();
  refuse_unless(motor.is_on(module), module, std::string("has no ") + motor.name);
}

Json motor_json(const Session& session, const Motor& motor) {
  return {{"motor", motor.name}, {"module", name_of(session.lens())}};
}

Json count_json(Session& session, const Motor& motor) {
  if (!motor.counted.on(session.lens())) return {};
  const std::uint32_t count = session.call(motor.count);
  session.check_lens_link();  // a count that could not be read looks like any other
  return count;
}

void refuse_unless_settable(const Session& session, const Motor& motor, std::uint32_t count) {
  const LensModule module = session.lens();
  const Preset preset = motor.presets.on(module);
  refuse_unless(preset != Preset::none, module,
                std::string("has no counter of ") + motor.name + " that can be set");
  const std::uint32_t greatest = greatest_count(preset);
  refuse_unless(count <= greatest, module,
                std::string("can set the counter of ") + motor.name + " to 0" +
                    (greatest > 0 ? " up to " + std::to_string(greatest) : "") + " only");
}

void set_count(Session& session, const Motor& motor, std::uint32_t count) {
  refuse_unless_settable(session, motor, count);
  send_count(session, motor, count);
  if (motor.presets.on(session.lens()) != Preset::folded) return;
  // A controller may take a count as it stands or as it is read.
  const std::uint32_t folded = folded_count(count);
  if (count_json(session, motor) == folded) send_count(session, motor, folded);
}

void start(Session& session, const MoveWay& way, std::uint8_t speed, std::uint32_t steps) {
  check_sent(session, session.send([&] { return way.start(speed, steps); }));
}

bool is_running(Session& session, const Motor& motor) {
  std::uint8_t running = 0;
  check_sent(session, session.call([&] { return motor.status(&running); }));
  return running != 0;
}

std::string power_off(Session& session, const Motor& motor) {
  session.forget_motion(motor.name);
  try {
    const std::uint32_t status = session.send(motor.power_off);
    const bool sent = status == 0 && session.call([] { return GetLensType(); }) >= 0;
    return std::string(motor.name) +
           (sent ? " is stopped, and its power is off" : " may still move: nothing reaches it");
  } catch (const Failure& failure) {
    return std::string(motor.name) + " may still move: " + failure.what();
  }
}

std::string stop_if_running(Session& session, const Motor& motor) {
  try {
    if (!is_running(session, motor)) return "";
  } catch (const Failure&) {
    // Whether the link has failed, its power off will tell.
  }
  return power_off(session, motor);
}

std::chrono::microseconds wait_for(Session& session, const Motor& motor,
                                   std::chrono::microseconds timeout,
                                   const std::function<bool()>& over) {
  const Progress progress(session);
  const auto is_over = [&] {
    show(session, motor);
    return over();
  };
  return wait_until_over(session, {.what = std::string(motor.name) + " moves",
                                   .timeout = timeout,
                                   .over = is_over,
                                   .stop = [&] { return power_off(session, motor); },
                                   .pause = motor_poll_pause});
}

}  // namespace kelvo::ctl
