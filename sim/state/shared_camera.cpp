#include "sim/state/shared_camera.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "sim/state/attachment.h"
#include "sim/state/bus_key.h"
#include "sim/state/make.h"
#include "sim/state/object.h"
#include "sim/state/pacing.h"
#include "sim/state/sleepers.h"
#include "sim/state/storage.h"
#include "sim/state/undo.h"

namespace kelvo::sim {
namespace {

camera::Parts parts_of(camera::Camera& camera, Extent extent) {
  if (extent == Extent::one_call) return camera.parts_at_risk();
  camera::Parts all;
  all.add(std::as_writable_bytes(std::span(&camera, 1)));
  return all;
}

/// The memory of a camera that is fit for use, made if that is wanted.
state::Layout* fit_memory(state::Object& object, std::string_view name,
                          const WantedSettings* wanted, OpenedCamera& opened) {
  const bool make = wanted != nullptr && object.blank();
  opened.error = make ? object.reserve() : object.check();
  state::Layout* const layout = opened.error.empty() ? object.map() : nullptr;
  if (opened.error.empty() && layout == nullptr) opened.error = object.error();
  if (layout == nullptr) {
    if (make) object.unlink();
    return nullptr;
  }
  if (make) {
    opened.error = state::make_camera(*layout, name, *wanted);
    if (!opened.error.empty()) object.unlink();
  } else if (wanted != nullptr) {
    opened.error = state::disagreement(name, *wanted, state::settings_of(layout->header));
  }
  opened.made = make && opened.error.empty();
  return layout;
}

}  // namespace

OpenedCamera SharedCamera::open(std::string_view name, const WantedSettings* wanted, Role role) {
  OpenedCamera opened;
  using Missing = state::Object::Missing;
  state::Object object(name, wanted != nullptr ? Missing::is_made : Missing::is_an_error);
  opened.error = object.error();
  if (!opened.error.empty()) return opened;
  state::Layout* const layout = fit_memory(object, name, wanted, opened);
  if (layout == nullptr) return opened;
  // It owns the memory from here on, whatever was wrong with it.
  auto attachment =
      std::make_unique<state::Attachment>(object.open_for_locks(), *layout, role == Role::observer);
  if (opened.error.empty() && !attachment->attached()) {
    opened.error = "camera \"" + std::string(name) + "\" is used by " +
                   std::to_string(state::most_processes) +
                   " processes, and more cannot: end some of them";
  }
  if (opened.error.empty()) {
    opened.camera.reset(new SharedCamera(std::string(name), std::move(attachment)));
  }
  return opened;
}

OpenedCamera SharedCamera::open_or_make(std::string_view name, const WantedSettings& wanted,
                                        Role role) {
  return open(name, &wanted, role);
}

OpenedCamera SharedCamera::open(std::string_view name, Role role) {
  return open(name, nullptr, role);
}

SharedCamera::SharedCamera(std::string name, std::unique_ptr<state::Attachment> attachment)
    : name_(std::move(name)),
      settings_(state::settings_of(attachment->layout().header)),
      attachment_(std::move(attachment)) {}

SharedCamera::~SharedCamera() = default;

state::Layout& SharedCamera::layout() const { return attachment_->layout(); }

std::chrono::system_clock::time_point SharedCamera::made() const {
  return state::made(layout().header);
}

std::chrono::steady_clock::time_point SharedCamera::begun() const {
  return std::chrono::steady_clock::time_point(std::chrono::nanoseconds(layout().header.begun));
}

int SharedCamera::descriptor() const { return attachment_->descriptor(); }

key_t SharedCamera::bus_key() const { return bus_key_of(settings_.files); }

pid_t SharedCamera::lock_holder() const {
  const pid_t entered = layout().bus_lock_holder.load();
  if (entered == 0) return 0;
  const std::vector<AttachedProcess> living = processes();
  const bool lives = std::any_of(living.begin(), living.end(),
                                 [&](const auto& one) { return one.process == entered; });
  return lives ? entered : 0;
}

std::atomic<std::int32_t>& SharedCamera::lock_holder_entry() { return layout().bus_lock_holder; }

SharedCamera::Change::Change(SharedCamera& shared, Extent extent)
    : shared_(shared), camera_(shared.layout().camera) {
  shared_.begin_change(extent);
}

SharedCamera::Change::~Change() { shared_.end_change(); }

void SharedCamera::Change::take_back() { state::put_back(shared_.layout()); }

void SharedCamera::Change::record(trace::Event event) {
  trace::Ring& ring = shared_.layout().trace;
  state::Slot& slot = shared_.attachment_->slot();
  if (slot.traced_as.load() == 0) slot.traced_as.store(ring.next_process());
  event.process = slot.traced_as.load();
  event.pid = slot.process.load();
  ring.add(event);
}

const trace::Ring& SharedCamera::trace() const { return layout().trace; }
fault::FaultTable& SharedCamera::Change::faults() const { return shared_.layout().faults; }

void SharedCamera::begin_change(Extent extent) {
  attachment_->lock();
  state::begin_change(layout(), parts_of(layout().camera, extent));
  bring_up_to_date();
}

void SharedCamera::end_change() {
  state::commit(layout());
  if (settings_.clock.mode == ClockMode::sleep) state::wake_sleepers(layout());
  attachment_->unlock();
}

void SharedCamera::bring_up_to_date() {
  if (settings_.clock.mode == ClockMode::sleep) return state::touch(*attachment_);
  layout().camera.clock.reach(passed(settings_.clock, std::chrono::steady_clock::now() - begun()));
}

std::string SharedCamera::power_off() {
  const Change camera = change();
  if (!camera->powered()) return {};
  camera->power_off();
  const std::error_code error = storage::cut(settings_.files);
  if (!error) return {};
  return "camera \"" + name_ + "\", folder " + settings_.files + ": " + error.message() +
         ": not all files are as they were synchronised";
}

camera::Camera SharedCamera::snapshot() {
  const Change change(*this, Extent::one_call);
  return *change;
}

fault::FaultTable SharedCamera::faults() { return change(Extent::one_call).faults(); }

int SharedCamera::sleep(camera::Time time) {
  if (settings_.clock.mode != ClockMode::sleep) return sleep_by(settings_.clock, time);
  state::sleep_together(*attachment_, time);
  return 0;
}

}  // namespace kelvo::sim
