#ifndef KELVO_SIM_STATE_ATTACHMENT_H
#define KELVO_SIM_STATE_ATTACHMENT_H

#include <cstdint>

#include "sim/state/layout.h"

namespace kelvo::sim::state {

/// A process's part in a shared camera: the memory, a slot of its own, and the lock. A forked process
/// gets a slot of its own at once.
class Attachment {
 public:
  /// Takes the memory over, and a descriptor by which nothing is mapped.
  Attachment(int descriptor, Layout& layout, bool observes);
  ~Attachment();
  Attachment(const Attachment&) = delete;
  Attachment& operator=(const Attachment&) = delete;

  Layout& layout() const { return layout_; }
  int descriptor() const { return descriptor_; }
  std::uint32_t number() const { return number_; }
  Slot& slot() const { return layout_.slots[slot_of(number_)]; }
  /// Whether it has a slot: there may be none left.
  bool attached() const { return number_ != 0; }
  /// Whether the process of this number lives.
  bool alive(std::uint32_t number) const;

  /// The lock of all that belongs to the camera. It goes over to the next when its holder dies.
  void lock();
  void unlock();

  /// In a forked process.
  void renew();

 private:
  void attach();
  void attach_at_last();
  void detach();
  void wait_for_lock();

  int descriptor_;
  Layout& layout_;
  bool observes_;
  std::uint32_t number_ = 0;
};

/// The lock for as long as it lives.
class Locked {
 public:
  explicit Locked(Attachment& attachment) : attachment_(attachment) { attachment_.lock(); }
  ~Locked() { attachment_.unlock(); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;

 private:
  Attachment& attachment_;
};

}  // namespace kelvo::sim::state

#endif
