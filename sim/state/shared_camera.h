// A camera with a name, in memory that all processes of a user share.
//
// It lies in the POSIX shared memory object /kelvo-sim-UID-NAME (on Linux a file in /dev/shm), which
// only its user can open, and it lasts until it is removed. Every function here is for any number of
// processes at once, and of threads. None of them throws.
//
//   OpenedCamera opened = SharedCamera::open("desk", Role::observer);
//   if (opened.camera == nullptr) return complain(opened.error);
//   const camera::Camera now = opened.camera->snapshot();          // to look at
//   opened.camera->change()->fit_head(wire::HeadFamily::vetra);    // to change, all or nothing
#ifndef KELVO_SIM_STATE_SHARED_CAMERA_H
#define KELVO_SIM_STATE_SHARED_CAMERA_H

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "sim/camera/camera.h"
#include "sim/fault/fault_table.h"
#include "sim/state/shared_settings.h"
#include "sim/trace/ring.h"

namespace kelvo::sim {

namespace state {
struct Layout;
class Attachment;
}  // namespace state

class SharedCamera;

/// Programs are what the camera is there for: the sleep clock waits for them, and they are counted.
/// Observers look in or change something from outside, and no clock waits for them.
enum class Role : std::uint8_t { program, observer };

/// How much a change may touch: what one call of the camera does (a transfer, a shell command, a move
/// of the clock), or anything. The first is cheap.
enum class Extent : std::uint8_t { one_call, anything };

/// Whether a camera is removed under the feet of programs that use it.
enum class Removal : std::uint8_t { if_unused, even_in_use };

/// A camera, or one line that says what is wrong, where, and what to do.
struct OpenedCamera {
  std::unique_ptr<SharedCamera> camera;
  bool made = false;  // by this call
  std::string error;
};

/// A living process that uses a camera now.
struct AttachedProcess {
  pid_t process = 0;
  Role role = Role::program;
  bool asleep = false;  // on the sleep clock
};

/// A camera that there is.
struct CameraEntry {
  std::string name;
  std::chrono::system_clock::time_point made;
  std::vector<AttachedProcess> processes;  // of both roles
  std::string error;  // why it cannot be opened; then nothing but the name is known
};

/// All cameras of this user in the order of their names, or why they cannot be listed.
struct CameraList {
  std::vector<CameraEntry> cameras;
  std::string error;
};

class SharedCamera {
 public:
  /// Opens the camera of this name, and makes it if there is none. Of several processes that do so at
  /// the same time one makes it. A setting that is given and that the camera has otherwise is an error.
  static OpenedCamera open_or_make(std::string_view name, const WantedSettings& wanted, Role role);

  /// Opens a camera that there is.
  static OpenedCamera open(std::string_view name, Role role);

  /// Makes a name free: the shared memory, the semaphore set of the bus lock, the private folder. A
  /// folder that `files` named is left alone. Processes that have the camera open keep it to themselves.
  /// Nothing, or one line that says why it could not be removed; a camera that is broken or has another
  /// layout is removed like any other.
  static std::string remove(std::string_view name, Removal removal);

  static CameraList list();

  ~SharedCamera();
  SharedCamera(const SharedCamera&) = delete;
  SharedCamera& operator=(const SharedCamera&) = delete;

  const std::string& name() const { return name_; }
  const SharedSettings& settings() const { return settings_; }
  /// When it was made, by the calendar.
  std::chrono::system_clock::time_point made() const;
  /// And when its clock began.
  std::chrono::steady_clock::time_point begun() const;
  /// Whether it still goes by its name: nobody has removed it.
  bool exists() const;
  /// The living processes that use it now, this one too.
  std::vector<AttachedProcess> processes() const;
  /// By which this process keeps its place among them. It must stay open.
  int descriptor() const;
  /// The key of the bus lock's semaphore set, the same in every process; or a negative error number.
  key_t bus_key() const;

  /// The living process that holds the bus lock; 0: none.
  pid_t lock_holder() const;
  /// What tells it: whoever takes the lock writes itself down, and takes itself away before it gives it back.
  std::atomic<std::int32_t>& lock_holder_entry();

  /// Exclusive access to the camera for as long as it lives; others wait. The camera's clock is up to
  /// date when it begins. What was changed counts when it ends. A process that dies before leaves the
  /// camera as it was, free for the others.
  ///
  /// Keep it short, and do not nest it: a second one of the same thread waits for ever.
  class Change {
   public:
    ~Change();
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

    camera::Camera& operator*() const { return camera_; }
    camera::Camera* operator->() const { return &camera_; }
    /// The camera's faults. What is done to them counts at once, whatever becomes of the change.
    fault::FaultTable& faults() const;
    /// Puts back what was changed.
    void take_back();
    /// Adds to the trace what this process has done.
    void record(trace::Event event);

   private:
    friend class SharedCamera;
    Change(SharedCamera& shared, Extent extent);

    SharedCamera& shared_;
    camera::Camera& camera_;
  };
  Change change(Extent extent = Extent::anything) { return {*this, extent}; }

  /// Cuts the power: the camera's own state, and what its files hold that was not synchronised. Without
  /// power already it does nothing. Nothing, or one line that says what is wrong with the files.
  std::string power_off();
  void power_on() { change()->power_on(); }
  /// What crossed the wires, of all programs.
  const trace::Ring& trace() const;
  /// A copy of its faults.
  fault::FaultTable faults();

  /// A copy of the camera at this moment.
  camera::Camera snapshot();

  /// Sleeps for so long on the camera's clock: by the real or the scaled clock in fact, by the sleep
  /// clock together with the other programs (each wakes up at the moment at which it fell asleep plus
  /// its time; the clock goes on to the earliest of these once no program is left to wait for). 0, or
  /// -EINTR when a signal ended it early.
  int sleep(camera::Time time);

 private:
  SharedCamera(std::string name, std::unique_ptr<state::Attachment> attachment);
  static OpenedCamera open(std::string_view name, const WantedSettings* wanted, Role role);

  state::Layout& layout() const;
  void begin_change(Extent extent);
  void end_change();
  void bring_up_to_date();

  std::string name_;
  SharedSettings settings_;
  std::unique_ptr<state::Attachment> attachment_;
};

}  // namespace kelvo::sim

#endif
