#include "sim/wrapper/camera_host.h"

#include <sys/ipc.h>
#include <sys/sem.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "sim/wrapper/carried_images.h"

namespace kelvo::sim {
namespace {

constexpr int lock_key_project = 'k';  // anything but 0, so that the key is never IPC_PRIVATE

/// Null buffers are refused as the kernel refuses them.
bool readable(std::span<const std::uint8_t> bytes) {
  return bytes.data() != nullptr || bytes.empty();
}

}  // namespace

CameraHost::CameraHost(const Settings& settings)
    : settings_(settings),
      owner_(getpid()),
      begun_(std::chrono::steady_clock::now()),
      files_(settings.files) {
  camera_.fit_head(settings.head);
  for (const std::uint32_t number : settings.corrupt) camera_.corrupt_download(number);
}

CameraHost::~CameraHost() { end(); }

camera::Camera& CameraHost::up_to_date() {
  if (settings_.clock == ClockMode::real) {
    camera_.clock.reach(std::chrono::steady_clock::now() - begun_);
  }
  return camera_;
}

Answer CameraHost::open(Device /*device*/) {
  const Guard guard(mutex_);
  used_ = true;
  return 0;
}

Answer CameraHost::close(Device /*device*/) { return 0; }

Answer CameraHost::transfer(Device device, int /*descriptor*/, std::span<const std::uint8_t> sent,
                            std::span<std::uint8_t> received) {
  if (device == Device::none) return {};
  if (device == Device::i2c_2) return -ENOTTY;
  if (!readable(sent) || !readable(received)) return -EFAULT;
  const Guard guard(mutex_);
  camera::Camera& camera = up_to_date();
  if (device == Device::spi_pt5111) return camera.transfer_pt5111(sent, received);
  return camera.transfer_lens(sent, received, carried_images());
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
  const Guard guard(mutex_);
  return up_to_date().transfer_pan_tilt(request);
}

Answer CameraHost::delay(SleepCall /*call*/, std::chrono::nanoseconds time) {
  if (settings_.clock == ClockMode::real) return {};
  const Guard guard(mutex_);
  camera_.clock.advance(time);
  return 0;
}

Answer CameraHost::shell(const char* command) {
  const Guard guard(mutex_);
  used_ = true;
  return up_to_date().shell(command);
}

Answer CameraHost::semaphore_key(const char* /*path*/, int /*project*/) {
  if (const std::error_code error = files_.prepare()) return -error.value();
  const Guard guard(mutex_);
  if (!lock_key_) {
    const key_t key = ftok(files_.folder().c_str(), lock_key_project);
    if (key == -1) return -errno;
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
  if (lock_key_ && lock_key_maker_ == getpid()) {
    const int set = semget(*lock_key_, 0, 0);
    if (set >= 0) semctl(set, 0, IPC_RMID);
    lock_key_.reset();
  }
  files_.remove();
}

camera::Camera CameraHost::camera() {
  const Guard guard(mutex_);
  return up_to_date();
}

bool CameraHost::used() {
  const Guard guard(mutex_);
  return used_;
}

bool CameraHost::owned() const { return getpid() == owner_; }

}  // namespace kelvo::sim
