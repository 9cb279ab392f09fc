#ifndef KELVO_SIM_WRAPPER_CAMERA_HOST_H
#define KELVO_SIM_WRAPPER_CAMERA_HOST_H

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>

#include "sim/camera/camera.h"
#include "sim/fault/fault_table.h"
#include "sim/seam/host.h"
#include "sim/state/shared_camera.h"
#include "sim/wrapper/bus_lock.h"
#include "sim/wrapper/camera_files.h"
#include "sim/wrapper/settings.h"

namespace kelvo::sim {

/// One simulated camera in the place of the kernel. The bus lock's semaphores stay the kernel's own,
/// under a key that belongs to this camera's folder.
class CameraHost final : public Host {
 public:
  /// Without a shared camera it is this process's own.
  explicit CameraHost(const Settings& settings, std::unique_ptr<SharedCamera> shared = nullptr);
  ~CameraHost() override;
  CameraHost(const CameraHost&) = delete;
  CameraHost& operator=(const CameraHost&) = delete;

  Answer open(Device device) override;
  Answer close(Device device) override;
  Answer transfer(Device device, int descriptor, std::span<const std::uint8_t> sent,
                  std::span<std::uint8_t> received) override;
  Answer set_speed(Device device, int descriptor, std::uint32_t hertz) override;
  Answer i2c(Device device, int descriptor, std::span<i2c_msg> messages) override;
  Answer delay(SleepCall call, std::chrono::nanoseconds time) override;
  double speed() const override { return clock_.speed; }
  void refused(Device device, const char* what) override;
  Answer shell(const char* command) override;
  Answer semaphore_key(const char* path, int project) override;
  Answer semaphore_get(std::uint32_t key, int members, int flags) override;
  Answer semaphore_operate(int semid, std::span<const sembuf> operations) override;
  std::optional<FileAnswer> file(const char* path, const char* mode) override;
  std::optional<FileAnswer> real_place(const char* path) override;
  int own_descriptor(int first) const override;
  void file_synchronised(const char* path) override;

  /// Cuts the camera's power, and gives it back.
  void power_off();
  void power_on();

  /// Makes the folder of the files now instead of when it is needed.
  std::error_code prepare_files() { return files_.prepare(); }

  /// Removes what this process has made for a camera of its own: a private folder, the semaphore set.
  void end();

  /// The camera at this moment.
  camera::Camera camera();
  /// Changes the camera while nobody else does.
  void change(const std::function<void(camera::Camera&)>& act);
  /// Its faults at this moment; adding one gives its number, or nothing when there is no room.
  fault::FaultTable faults();
  std::optional<std::uint32_t> add(const fault::Fault& fault);
  bool remove_fault(std::uint32_t number);
  /// Of a shared camera; empty: its own.
  const std::string& name() const { return settings_.name; }
  /// Whether anybody of this process has opened a device or touched the reset line.
  bool used() const { return used_; }
  /// The living process that holds the bus lock; 0: none.
  pid_t lock_holder() const;
  /// Whether this is the process that made the camera.
  bool owned() const;
  const CameraFiles& files() const { return files_; }

 private:
  using Guard = std::scoped_lock<std::mutex>;
  /// What a transfer occupies, and for how long.
  struct Passage {
    camera::Bus bus;
    camera::Time duration;
  };
  /// What a clock that goes by itself says without regard to transfers.
  camera::Time real_time() const;
  camera::Camera& up_to_date();
  bool powered();
  std::atomic<std::int32_t>& lock_entry();
  /// Acts on the camera while nobody else does.
  template <typename Act>
  auto with_camera(Act act);
  /// The same with its faults.
  template <typename Act>
  auto with_faults(Act act);
  /// Lets the caller act on the camera, in the way that `run` does it, and judges him.
  template <typename Act, typename Run>
  Answer judged(Act act, Run run);
  template <typename Act>
  Answer as_caller(Act act);
  /// The same, and of a shared camera it goes into the trace: what is known before, and what `note` adds
  /// when it is over. With nothing as its result it has not happened yet.
  template <typename Act, typename Note>
  Answer traced(trace::Event event, Act act, Note note);
  /// The same for a transfer that begins now, with its effect when it is over.
  template <typename Act, typename Note>
  Answer on_wire(Passage passage, const trace::Event& event, Act act, Note note);

  Settings settings_;
  ClockSetting clock_;
  std::unique_ptr<SharedCamera> shared_;
  std::atomic<bool> used_ = false;
  std::atomic<camera::Time> latest_call_{};  // when it was over, by the camera's clock
  pid_t owner_;
  std::chrono::steady_clock::time_point begun_;
  CameraFiles files_;
  BusLock bus_lock_;
  std::atomic<std::int32_t> own_lock_entry_ = 0;
  std::mutex mutex_;  // of all that follows
  camera::Camera camera_;
  fault::FaultTable faults_;
  std::optional<key_t> lock_key_;
  pid_t lock_key_maker_ = 0;
};

/// The shared camera that the settings name, made if there is none; neither camera nor error without a
/// name.
OpenedCamera open_shared(const Settings& settings);

}  // namespace kelvo::sim

#endif
