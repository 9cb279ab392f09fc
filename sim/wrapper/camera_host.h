#ifndef KELVO_SIM_WRAPPER_CAMERA_HOST_H
#define KELVO_SIM_WRAPPER_CAMERA_HOST_H

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>

#include "sim/camera/camera.h"
#include "sim/seam/host.h"
#include "sim/state/shared_camera.h"
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
  Answer shell(const char* command) override;
  Answer semaphore_key(const char* path, int project) override;
  std::optional<FileAnswer> file(const char* path, const char* mode) override;

  /// Makes the folder of the files now instead of when it is needed.
  std::error_code prepare_files() { return files_.prepare(); }

  /// Removes what this process has made for a camera of its own: a private folder, the semaphore set.
  void end();

  /// The camera at this moment.
  camera::Camera camera();
  /// Of a shared camera; empty: its own.
  const std::string& name() const { return settings_.name; }
  /// Whether anybody of this process has opened a device or touched the reset line.
  bool used() const { return used_; }
  /// Whether this is the process that made the camera.
  bool owned() const;
  const CameraFiles& files() const { return files_; }

 private:
  using Guard = std::scoped_lock<std::mutex>;
  camera::Camera& up_to_date();
  /// Acts on the camera while nobody else does.
  template <typename Act>
  auto with_camera(Act act);

  Settings settings_;
  ClockSetting clock_;
  std::unique_ptr<SharedCamera> shared_;
  std::atomic<bool> used_ = false;
  pid_t owner_;
  std::chrono::steady_clock::time_point begun_;
  CameraFiles files_;
  std::mutex mutex_;  // of all that follows
  camera::Camera camera_;
  std::optional<key_t> lock_key_;
  pid_t lock_key_maker_ = 0;
};

/// The shared camera that the settings name, made if there is none; neither camera nor error without a
/// name.
OpenedCamera open_shared(const Settings& settings);

}  // namespace kelvo::sim

#endif
