#include "sim/state/sleepers.h"

#include <time.h>

#include <algorithm>
#include <chrono>
#include <optional>

#include "sim/state/futex.h"

namespace kelvo::sim::state {
namespace {

/// The steady clock, a few milliseconds coarse and cheap.
std::int64_t coarse_now() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
  return now.tv_sec * 1'000'000'000LL + now.tv_nsec;
}

/// Whether this is somebody's entry who has not left without a word.
bool taken(const Layout& layout, const Sleeper& sleeper) {
  return sleeper.number != 0 &&
         layout.slots[slot_of(sleeper.number)].number.load() == sleeper.number;
}

bool still_asleep(const Layout& layout, const Sleeper& sleeper) {
  return taken(layout, sleeper) && sleeper.wake_up > layout.camera.clock.now().count();
}

/// A place that nobody has, or else that of somebody who was killed in his sleep.
Sleeper* find_free(const Attachment& attachment) {
  Layout& layout = attachment.layout();
  for (Sleeper& sleeper : layout.sleepers) {
    if (!taken(layout, sleeper)) return &sleeper;
  }
  for (Sleeper& sleeper : layout.sleepers) {
    if (!attachment.alive(sleeper.number)) return &sleeper;
  }
  return nullptr;
}

bool must_wait_for(const Layout& layout, const Slot& slot, std::int64_t now) {
  const std::uint32_t number = slot.number.load();
  const std::int64_t longest = std::chrono::nanoseconds(longest_wait).count();
  return number != 0 && !slot.observes.load() && now - slot.last_call.load() < longest &&
         !asleep(layout, number);
}

bool all_asleep(const Attachment& attachment) {
  const Layout& layout = attachment.layout();
  const std::int64_t now = coarse_now();
  return std::none_of(layout.slots.begin(), layout.slots.end(), [&](const Slot& slot) {
    return &slot != &attachment.slot() && must_wait_for(layout, slot, now);
  });
}

/// On to the next moment at which somebody wakes up.
void move_clock(Layout& layout) {
  std::optional<std::int64_t> earliest;
  for (const Sleeper& sleeper : layout.sleepers) {
    if (!still_asleep(layout, sleeper)) continue;
    earliest = std::min(earliest.value_or(sleeper.wake_up), sleeper.wake_up);
  }
  if (earliest) layout.camera.clock.reach(camera::Time(*earliest));
  wake_sleepers(layout);
}

/// Enters a sleeper, or lets the time pass at once if there is no place for one.
Sleeper* fall_asleep(Attachment& attachment, camera::Time time) {
  Layout& layout = attachment.layout();
  const camera::Time wake_up = layout.camera.clock.now() + time;
  Sleeper* const own = find_free(attachment);
  if (own == nullptr) {
    layout.camera.clock.reach(wake_up);
    wake_sleepers(layout);
  } else {
    own->wake_up = wake_up.count();
    own->number = attachment.number();
  }
  return own;
}

}  // namespace

void touch(Attachment& attachment) { attachment.slot().last_call.store(coarse_now()); }

/// Who wakes up is waited for from now on.
void wake_sleepers(Layout& layout) {
  const std::int64_t now = layout.camera.clock.now().count();
  const auto due = [&](const Sleeper& sleeper) {
    return sleeper.wake_up > layout.woken_up_to && sleeper.wake_up <= now && taken(layout, sleeper);
  };
  if (now == layout.woken_up_to) return;
  bool any = false;
  for (const Sleeper& sleeper : layout.sleepers) {
    if (!due(sleeper)) continue;
    layout.slots[slot_of(sleeper.number)].last_call.store(coarse_now());
    any = true;
  }
  layout.woken_up_to = now;
  if (!any) return;
  layout.wake_ups.fetch_add(1);
  wake_all(layout.wake_ups);
}

bool asleep(const Layout& layout, std::uint32_t number) {
  return std::any_of(layout.sleepers.begin(), layout.sleepers.end(), [&](const Sleeper& sleeper) {
    return sleeper.number == number && still_asleep(layout, sleeper);
  });
}

void sleep_together(Attachment& attachment, camera::Time time) {
  constexpr std::chrono::milliseconds look_again = longest_wait / 4;
  Layout& layout = attachment.layout();
  attachment.lock();
  touch(attachment);
  Sleeper* const own = fall_asleep(attachment, time);
  while (own != nullptr && still_asleep(layout, *own)) {
    if (all_asleep(attachment)) {
      move_clock(layout);
      continue;
    }
    const std::uint32_t wake_ups = layout.wake_ups.load();
    attachment.unlock();
    wait_while(layout.wake_ups, wake_ups, look_again);
    attachment.lock();
  }
  if (own != nullptr) own->number = 0;
  touch(attachment);
  attachment.unlock();
}

}  // namespace kelvo::sim::state
