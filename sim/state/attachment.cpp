#include "sim/state/attachment.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <mutex>
#include <utility>
#include <vector>

#include "sim/state/byte_lock.h"
#include "sim/state/futex.h"
#include "sim/state/undo.h"

namespace kelvo::sim::state {
namespace {

constexpr std::uint32_t somebody_waits = 1U << 31;

/// How long to wait for the lock before asking whether its holder lives.
constexpr std::chrono::milliseconds patience{20};
/// So often before saying who holds it.
constexpr int rounds_in_silence = 50;

/// All attachments of this process, for a fork. Kept for good: threads may outlive every destructor.
struct Registry {
  std::mutex mutex;
  std::vector<Attachment*> attachments;
};
Registry& registry() {
  static auto* const all = [] {
    auto* const made = new Registry;
    pthread_atfork([] { registry().mutex.lock(); }, [] { registry().mutex.unlock(); },
                   [] {
                     for (Attachment* const attachment : registry().attachments) {
                       attachment->renew();
                     }
                     registry().mutex.unlock();
                   });
    return made;
  }();
  return *all;
}

/// The same file, opened once more: locks belong to the open file.
int open_again(int descriptor) {
  char path[32];
  std::snprintf(path, sizeof path, "/proc/self/fd/%d", descriptor);
  return open(path, O_RDWR | O_CLOEXEC);
}

/// A process that somebody has stopped may have the lock, and nobody can take it away: it may go on.
void tell_of(const Slot& holder) {
  std::fprintf(stderr,
               "KELVO_SIM: process %d has had the camera to itself for a second: let it go on "
               "(kill -CONT), or end it\n",
               static_cast<int>(holder.process.load()));
}

}  // namespace

Attachment::Attachment(int descriptor, Layout& layout, bool observes)
    : descriptor_(descriptor), layout_(layout), observes_(observes) {
  attach();
  const std::scoped_lock guard(registry().mutex);
  registry().attachments.push_back(this);
}

Attachment::~Attachment() {
  {
    const std::scoped_lock guard(registry().mutex);
    std::erase(registry().attachments, this);
  }
  detach();
  munmap(&layout_, sizeof layout_);
  // Nobody's any more before it goes: what stands in the place of close() spares those that are needed.
  close(std::exchange(descriptor_, -1));
}

void Attachment::attach() {
  for (std::uint32_t i = 0; i < most_processes; ++i) {
    if (!lock_byte(descriptor_, i, Wait::no)) continue;
    constexpr std::uint32_t counts = somebody_waits / most_processes - 1;
    const std::uint32_t count = 1 + layout_.next_number.fetch_add(1) % counts;
    number_ = count * most_processes + i;
    slot().observes.store(observes_);
    slot().last_call.store(0);
    slot().traced_as.store(0);
    slot().process.store(getpid());
    slot().number.store(number_);
    return;
  }
}

void Attachment::detach() {
  if (!attached()) return;
  slot().number.store(0);
  unlock_byte(descriptor_, slot_of(number_));
  number_ = 0;
}

void Attachment::renew() {
  const int inherited = descriptor_;
  descriptor_ = open_again(inherited);
  close(inherited);
  number_ = 0;
  attach();
}

bool Attachment::alive(std::uint32_t number) const {
  if (number == number_) return true;
  const std::uint32_t place = slot_of(number);
  return layout_.slots[place].number.load() == number && any_locked(descriptor_, place, 1);
}

/// A forked process may have found no slot, or no /proc to open the file by.
void Attachment::attach_at_last() {
  constexpr timespec moment{0, 1'000'000};
  while (!attached()) {
    if (descriptor_ < 0) {
      std::fputs("KELVO_SIM: a forked process cannot open the camera: it needs /proc\n", stderr);
      _exit(2);
    }
    attach();
    if (!attached()) syscall(SYS_clock_nanosleep, CLOCK_MONOTONIC, 0, &moment, nullptr);
  }
}

void Attachment::lock() {
  if (!attached()) attach_at_last();
  std::uint32_t free = 0;
  if (!layout_.lock.compare_exchange_strong(free, number_, std::memory_order_acquire)) {
    wait_for_lock();
  }
  recover(layout_);
}

void Attachment::wait_for_lock() {
  const std::uint32_t mine = number_ | somebody_waits;
  std::uint32_t waited_for = 0;
  int rounds = 0;
  while (true) {
    std::uint32_t seen = layout_.lock.load();
    if (seen == 0) {
      if (layout_.lock.compare_exchange_strong(seen, mine)) return;
      continue;
    }
    const std::uint32_t holder = seen & ~somebody_waits;
    if (seen == holder && !layout_.lock.compare_exchange_strong(seen, holder | somebody_waits)) {
      continue;
    }
    seen = holder | somebody_waits;
    if (wait_while(layout_.lock, seen, patience)) continue;
    if (alive(holder)) {
      rounds = holder == waited_for ? rounds + 1 : 1;
      waited_for = holder;
      if (rounds == rounds_in_silence) tell_of(layout_.slots[slot_of(holder)]);
      continue;
    }
    if (layout_.lock.compare_exchange_strong(seen, mine)) return;
  }
}

void Attachment::unlock() {
  const std::uint32_t mine = layout_.lock.exchange(0, std::memory_order_release);
  if ((mine & somebody_waits) != 0) wake_one(layout_.lock);
}

}  // namespace kelvo::sim::state
