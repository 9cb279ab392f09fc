// What lies where in the memory of a shared camera.
#ifndef KELVO_SIM_STATE_LAYOUT_H
#define KELVO_SIM_STATE_LAYOUT_H

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "sim/camera/camera.h"
#include "sim/fault/fault_table.h"
#include "sim/lens/boot_loader.h"
#include "sim/state/shared_settings.h"
#include "sim/trace/ring.h"

namespace kelvo::sim::state {

/// Grows with every change of what lies where around the camera.
inline constexpr std::uint32_t own_layout_version = 3;
inline constexpr std::uint32_t layout_version =
    camera::Camera::layout_version << 16 | own_layout_version;
inline constexpr std::uint32_t magic = 0x4B43414D;

/// The first members stay where they are in every version, so that any of them can be removed.
struct Header {
  static constexpr std::size_t longest_folder = 1023;

  std::atomic<std::uint32_t> magic = 0;  // set last, when all the rest is there
  std::uint32_t version = layout_version;
  std::uint64_t size = 0;
  bool private_folder = false;
  std::array<char, longest_folder + 1> files{};

  std::int64_t made = 0;   // nanoseconds of the calendar
  std::int64_t begun = 0;  // and of the steady clock, at which the camera's own began
  std::uint64_t seed = 0;
  std::optional<wire::LensModule> module;
  ClockSetting clock;
  wire::HeadFamily head = wire::HeadFamily::tasmere;
  std::uint32_t corrupt_count = 0;
  std::array<std::uint32_t, camera::BootLoader::most_corrupt_downloads> corrupt{};
};

/// A process that uses the camera. It holds the byte of its slot's number of the memory's file locked, and
/// the kernel lets go of it when it dies. Its number is never given twice and has the slot in it.
inline constexpr std::uint32_t most_processes = 256;
struct Slot {
  std::atomic<std::uint32_t> number = 0;  // 0: free
  std::atomic<std::int32_t> process = 0;
  std::atomic<bool> observes = false;
  std::atomic<std::int64_t> last_call = 0;   // nanoseconds of the steady clock
  std::atomic<std::uint32_t> traced_as = 0;  // its number in the trace; 0: it has done nothing yet
};
constexpr std::uint32_t slot_of(std::uint32_t number) { return number % most_processes; }

/// Somebody who sleeps on the sleep clock, or did until it came to `wake_up`.
struct Sleeper {
  std::uint32_t number = 0;  // of the process; 0: free
  std::int64_t wake_up = 0;  // nanoseconds of the camera's clock
};
inline constexpr std::size_t most_sleepers = 64;

/// The parts of the camera that are being changed, as they were.
struct UndoPart {
  std::uint32_t offset;
  std::uint32_t length;
};
struct UndoLog {
  std::atomic<std::uint32_t> count = 0;  // 0: nothing is being changed
  std::array<UndoPart, camera::Parts::most> parts{};
  alignas(64) std::array<std::byte, sizeof(camera::Camera)> bytes{};
};

struct Layout {
  Header header;
  alignas(64) std::atomic<std::uint32_t> lock = 0;
  alignas(64) std::atomic<std::int32_t> bus_lock_holder = 0;  // 0: nobody, or it died
  alignas(64) std::atomic<std::uint32_t> next_number = 0;
  std::array<Slot, most_processes> slots{};

  // The rest belongs to whoever has the lock.
  std::array<Sleeper, most_sleepers> sleepers{};
  std::atomic<std::uint32_t> wake_ups = 0;  // how often sleepers were woken up; they wait on it
  std::int64_t woken_up_to = 0;             // the moment up to which sleepers were woken up
  fault::FaultTable faults;                 // never undone: one that kills a process has happened
  UndoLog undo;
  alignas(64) camera::Camera camera;
  alignas(64) trace::Ring trace;
};

// Atomics in shared memory must not need a lock of the process.
static_assert(std::atomic<std::uint32_t>::is_always_lock_free);
static_assert(std::atomic<std::int64_t>::is_always_lock_free);

}  // namespace kelvo::sim::state

#endif
