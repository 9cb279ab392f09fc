#include "sim/lens/lens_controller.h"

#include "wire/boot_loader.h"

namespace kelvo::sim::camera {
namespace {

/// What a frame that nobody understands looks like.
FrameKind kind_by_length(std::size_t length) {
  switch (length) {
    case wire::boot_loader::frame_length: return FrameKind::boot_command;
    case wire::command_frame_length: return FrameKind::command;
    case wire::query_frame_length: return FrameKind::query;
    default: return FrameKind::malformed;
  }
}

}  // namespace

FrameKind LensController::receive(Exchange& exchange, CarriedImages images, BootRecord& boot,
                                  Pt5111& pt5111) {
  switch (state_) {
    case State::reset:
      exchange.violation("the reset line is low");
      return kind_by_length(exchange.sent.size());
    case State::dead:
      exchange.violation("the controller was started without the three images of one module");
      return kind_by_length(exchange.sent.size());
    case State::running: return receive_running(exchange, pt5111);
    case State::boot_loader: break;
  }
  const BootLoader::Outcome outcome = boot_loader_.receive(exchange, images, boot);
  if (outcome.start) start(exchange, boot, pt5111);
  return outcome.kind;
}

FrameKind LensController::receive_running(Exchange& exchange, Pt5111& pt5111) {
  if (exchange.sent.size() == wire::boot_loader::frame_length) {
    exchange.violation("a boot-loader frame while the program runs");
    return FrameKind::boot_command;
  }
  return program_.receive(exchange, pt5111);
}

void LensController::start(Exchange& exchange, BootRecord& boot, Pt5111& pt5111) {
  const std::optional<LensModule> module = boot_loader_.complete_module();
  boot.started = true;
  boot.up = exchange.now;
  boot.runs = module.has_value();
  state_ = module ? State::running : State::dead;
  if (!module) return;
  // Another module's program means that another lens has been put on, where none stays.
  if (!lens_ && (!fitted_ || program_.module() != *module)) put_on(*module, pt5111);
  const LensModule lens = lens_.value_or(*module);
  const bool belongs = lens == *module;
  if (!belongs) {
    exchange.violation("%s's program is started, and the lens is %s: nothing moves",
                       name_of(*module), name_of(lens));
  }
  program_.connect(exchange.now, belongs);
  pt5111.connect(exchange.now, belongs);
  program_.start(*module, exchange.now, pt5111);
  note_program(boot);
}

void LensController::put_on(LensModule module, Pt5111& pt5111) {
  program_.fit(module, variety_);
  pt5111.fit(module, variety_);
  fitted_ = true;
}

void LensController::note_program(BootRecord& boot) const {
  boot.module = program_.module();
  boot.version = program_.version();
}

void LensController::fit(LensModule module, Time now, BootRecord& boot, Pt5111& pt5111) {
  lens_ = module;
  put_on(module, pt5111);
  program_.start(module, now, pt5111);
  program_.finish_boot();
  if (module == LensModule::df033) pt5111.put_filter(FilterPlace::on);
  state_ = State::running;
  boot.up = now;
  boot.started = true;
  boot.runs = true;
  boot.settled = true;
  note_program(boot);
}

void LensController::lose_power(Time now, Pt5111& pt5111) {
  state_ = State::reset;
  pt5111.lose_power(now);
  program_.forget(now, pt5111);
}

void LensController::hold_in_reset(Time now) {
  state_ = State::reset;
  program_.stop(now);
}

void LensController::release_from_reset() {
  state_ = State::boot_loader;
  boot_loader_.reset();
}

std::optional<LensModule> LensController::motors_of() const {
  if (lens_) return lens_;
  return fitted_ ? program_.module() : std::optional<LensModule>();
}

std::optional<LensModule> LensController::module() const {
  if (state_ != State::running) return std::nullopt;
  return program_.module();
}

}  // namespace kelvo::sim::camera
