#include "sim/wrapper/camera_host.h"

#include <unistd.h>

#include <cerrno>
#include <utility>
#include <vector>

#include "sim/state/bus_key.h"
#include "sim/state/pacing.h"
#include "sim/wrapper/carried_images.h"

namespace kelvo::sim {
namespace {

/// Null buffers are refused as the kernel refuses them.
bool readable(std::span<const std::uint8_t> bytes) {
  return bytes.data() != nullptr || bytes.empty();
}

}  // namespace

OpenedCamera open_shared(const Settings& settings) {
  if (settings.name.empty()) return {};
  return SharedCamera::open_or_make(settings.name, settings.camera, Role::program);
}

CameraHost::CameraHost(const Settings& settings, std::unique_ptr<SharedCamera> shared)
    : settings_(settings),
      clock_(shared ? shared->settings().clock : settings.camera.clock.value_or(ClockSetting{})),
      shared_(std::move(shared)),
      owner_(getpid()),
      begun_(std::chrono::steady_clock::now()),
      files_(shared_ ? shared_->settings().files : settings.camera.files.value_or("")) {
  if (settings.camera.head) camera_.fit_head(*settings.camera.head);
  if (!settings.camera.corrupt) return;
  for (const std::uint32_t number : *settings.camera.corrupt) camera_.corrupt_download(number);
}

CameraHost::~CameraHost() { end(); }

camera::Camera& CameraHost::up_to_date() {
  if (clock_.mode != ClockMode::sleep) {
    camera_.clock.reach(passed(clock_, std::chrono::steady_clock::now() - begun_));
  }
  return camera_;
}

template <typename Act>
auto CameraHost::with_camera(Act act) {
  if (shared_) return act(*shared_->change(Extent::one_call));
  const Guard guard(mutex_);
  return act(up_to_date());
}

Answer CameraHost::open(Device /*device*/) {
  used_ = true;
  return 0;
}

Answer CameraHost::close(Device /*device*/) { return 0; }

Answer CameraHost::transfer(Device device, int /*descriptor*/, std::span<const std::uint8_t> sent,
                            std::span<std::uint8_t> received) {
  if (device == Device::none) return {};
  if (device == Device::i2c_2) return -ENOTTY;
  if (!readable(sent) || !readable(received)) return -EFAULT;
  return with_camera([&](camera::Camera& camera) -> Answer {
    if (device == Device::spi_pt5111) return camera.transfer_pt5111(sent, received);
    return camera.transfer_lens(sent, received, carried_images());
  });
}

Answer CameraHost::set_speed(Device device, int /*descriptor*/, std::uint32_t /*hertz*/) {
  if (device == Device::none) return {};
  return device == Device::i2c_2 ? -ENOTTY : 0;
}

Answer CameraHost::i2c(Device device, int /*descriptor*/, std::span<i2c_msg> messages) {
  if (device == Device::none) return {};
  if (device != Device::i2c_2) return -ENOTTY;
  if (messages.empty()) return -EINVAL;
  std::vector<camera::BusMessage> request;
  for (const i2c_msg& message : messages) {
    // The adapter does not do anything but plain messages to addresses of seven bits.
    if ((message.flags & ~I2C_M_RD) != 0) return -EOPNOTSUPP;
    if (message.buf == nullptr && message.len != 0) return -EFAULT;
    request.push_back({message.addr, (message.flags & I2C_M_RD) != 0, {message.buf, message.len}});
  }
  return with_camera([&](camera::Camera& camera) { return camera.transfer_pan_tilt(request); });
}

Answer CameraHost::delay(SleepCall /*call*/, std::chrono::nanoseconds time) {
  if (clock_.mode == ClockMode::real) return {};
  if (shared_) return shared_->sleep(time);
  if (clock_.mode == ClockMode::scaled) return sleep_by(clock_, time);
  const Guard guard(mutex_);
  camera_.clock.advance(time);
  return 0;
}

Answer CameraHost::shell(const char* command) {
  used_ = true;
  return with_camera([&](camera::Camera& camera) { return camera.shell(command); });
}

Answer CameraHost::semaphore_key(const char* /*path*/, int /*project*/) {
  if (const std::error_code error = files_.prepare()) return -error.value();
  const Guard guard(mutex_);
  if (!lock_key_) {
    const key_t key = bus_key_of(files_.folder());
    if (key < 0) return key;
    lock_key_ = key;
    lock_key_maker_ = getpid();
  }
  return *lock_key_;
}

std::optional<FileAnswer> CameraHost::file(const char* path, const char* /*mode*/) {
  if (!CameraFiles::claims(path)) return {};
  if (const std::error_code error = files_.prepare()) return FileAnswer{-error.value(), {}};
  return FileAnswer{0, files_.real_path(path).string()};
}

void CameraHost::end() {
  const Guard guard(mutex_);
  if (lock_key_ && lock_key_maker_ == getpid() && !shared_) {
    remove_bus_lock(*lock_key_);
    lock_key_.reset();
  }
  files_.remove();
}

camera::Camera CameraHost::camera() {
  return with_camera([](const camera::Camera& camera) { return camera; });
}

bool CameraHost::owned() const { return getpid() == owner_; }

}  // namespace kelvo::sim
