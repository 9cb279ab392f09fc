// What a transfer costs on the simulated camera, of this process alone and shared; what an intercepted call
// that is not the camera's costs beside the same call of libc; and what the camera's lock costs beside those
// that the kernel keeps.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "sim/seam/host.h"
#include "sim/seam/real.h"
#include "sim/wrapper/camera_host.h"
#include "wire/paths.h"
#include "wire/spi_device.h"

namespace {

using kelvo::sim::CameraHost;
using kelvo::sim::Extent;
using kelvo::sim::real;
using kelvo::sim::Removal;
using kelvo::sim::SharedCamera;

std::string camera_name() { return "bench-" + std::to_string(getpid()); }

/// A camera in the place of the kernel, with one of its devices open.
class Camera {
 public:
  Camera(const std::string& words, const char* device)
      : settings_(kelvo::sim::parse_settings(words).settings),
        opened_(open_shared(settings_)),
        host_(settings_, std::move(opened_.camera)) {
    if (!opened_.error.empty()) {
      std::fprintf(stderr, "%s\n", opened_.error.c_str());
      std::exit(1);
    }
    kelvo::sim::install(&host_);
    device_ = open(device, O_RDWR);
  }
  ~Camera() {
    close(device_);
    kelvo::sim::install(nullptr);
    if (!settings_.name.empty()) SharedCamera::remove(camera_name(), Removal::even_in_use);
  }
  Camera(const Camera&) = delete;
  Camera& operator=(const Camera&) = delete;

  int device() const { return device_; }

 private:
  kelvo::sim::Settings settings_;
  kelvo::sim::OpenedCamera opened_;
  CameraHost host_;
  int device_;
};

/// The shortest transfer that there is: 16 us on its wire.
void transfer(benchmark::State& state, const std::string& settings) {
  const Camera camera(settings, kelvo::wire::pt5111_device);
  std::array<std::uint8_t, 2> word{0xD5, 0x78};
  std::array<std::uint8_t, 2> received{};
  kelvo::wire::SpiTransfer record{};
  record.transmit = word.data();
  record.receive = received.data();
  record.length = 2;
  for ([[maybe_unused]] auto round : state) {
    if (ioctl(camera.device(), kelvo::wire::spi_transfer_request, &record) != 0) {
      state.SkipWithError("the transfer failed");
    }
  }
}

/// A position of the head: 120 us on its wire, the longest of those that programs repeat.
void head_request(benchmark::State& state, const std::string& settings) {
  constexpr std::uint16_t pan = 40;
  const Camera camera(settings, kelvo::wire::pan_tilt_device);
  std::array<std::uint8_t, 1> position{4};
  std::array<std::uint8_t, 2> value{};
  std::array<i2c_msg, 2> messages{{{pan, 0, 1, position.data()}, {pan, I2C_M_RD, 2, value.data()}}};
  i2c_rdwr_ioctl_data request{messages.data(), messages.size()};
  for ([[maybe_unused]] auto round : state) {
    if (ioctl(camera.device(), I2C_RDWR, &request) != 2) state.SkipWithError("the request failed");
  }
}

void change(benchmark::State& state, Extent extent) {
  auto opened = SharedCamera::open_or_make(camera_name(), {}, kelvo::sim::Role::program);
  for ([[maybe_unused]] auto round : state) {
    auto change = opened.camera->change(extent);
    benchmark::DoNotOptimize(&*change);
  }
  SharedCamera::remove(camera_name(), Removal::even_in_use);
}

/// What is not the camera's: the same call, intercepted and straight to libc.
template <typename Call>
void foreign_call(benchmark::State& state, bool intercepted, Call call) {
  CameraHost host{kelvo::sim::Settings{}};
  if (intercepted) kelvo::sim::install(&host);
  const int device = open("/dev/null", O_RDWR | O_CLOEXEC);
  for ([[maybe_unused]] auto round : state) call(intercepted, device);
  kelvo::sim::install(nullptr);
  close(device);
}

void request_of_a_terminal(bool intercepted, int device) {
  benchmark::DoNotOptimize(intercepted ? ioctl(device, TIOCGWINSZ, nullptr)
                                       : real().ioctl(device, TIOCGWINSZ, nullptr));
}

void close_of_nothing(bool intercepted, int /*device*/) {
  constexpr int never_open = 1000;
  benchmark::DoNotOptimize(intercepted ? close(never_open) : real().close(never_open));
}

/// Fails, so that nothing but the path is looked at.
void open_of_a_file(bool intercepted, int /*device*/) {
  benchmark::DoNotOptimize(intercepted ? open("/proc/no-such-file", O_RDONLY | O_CLOEXEC)
                                       : real().open("/proc/no-such-file", O_RDONLY | O_CLOEXEC));
}

void fopen_of_a_file(bool intercepted, int /*device*/) {
  benchmark::DoNotOptimize(intercepted ? std::fopen("/proc/no-such-file", "re")
                                       : real().fopen("/proc/no-such-file", "re"));
}

void no_sleep(bool intercepted, int /*device*/) {
  constexpr timespec impossible{0, -1};
  benchmark::DoNotOptimize(intercepted ? nanosleep(&impossible, nullptr)
                                       : real().nanosleep(&impossible, nullptr));
}

void kernel_lock(benchmark::State& state, int (*take)(int), int (*give_back)(int)) {
  std::FILE* const file = std::tmpfile();
  if (file == nullptr) return state.SkipWithError("no temporary file");
  for ([[maybe_unused]] auto round : state) {
    take(fileno(file));
    give_back(fileno(file));
  }
  std::fclose(file);
}

int set_record_lock(int file, short type) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_len = 1;
  return fcntl(file, F_OFD_SETLKW, &lock);
}

BENCHMARK_CAPTURE(transfer, own_camera_sleep_clock, "clock=sleep");
BENCHMARK_CAPTURE(transfer, own_camera_real_clock, "clock=real");
BENCHMARK_CAPTURE(transfer, shared_camera_sleep_clock, "clock=sleep name=" + camera_name());
BENCHMARK_CAPTURE(transfer, shared_camera_real_clock, "clock=real name=" + camera_name());
BENCHMARK_CAPTURE(transfer, shared_camera_clock_10, "clock=10 name=" + camera_name());
BENCHMARK_CAPTURE(head_request, shared_camera_sleep_clock, "clock=sleep name=" + camera_name());
BENCHMARK_CAPTURE(head_request, shared_camera_real_clock, "clock=real name=" + camera_name());
BENCHMARK_CAPTURE(change, of_one_call, Extent::one_call);
BENCHMARK_CAPTURE(change, of_anything, Extent::anything);
BENCHMARK_CAPTURE(foreign_call, ioctl, true, request_of_a_terminal);
BENCHMARK_CAPTURE(foreign_call, ioctl_directly, false, request_of_a_terminal);
BENCHMARK_CAPTURE(foreign_call, close, true, close_of_nothing);
BENCHMARK_CAPTURE(foreign_call, close_directly, false, close_of_nothing);
BENCHMARK_CAPTURE(foreign_call, open, true, open_of_a_file);
BENCHMARK_CAPTURE(foreign_call, open_directly, false, open_of_a_file);
BENCHMARK_CAPTURE(foreign_call, fopen, true, fopen_of_a_file);
BENCHMARK_CAPTURE(foreign_call, fopen_directly, false, fopen_of_a_file);
BENCHMARK_CAPTURE(foreign_call, nanosleep, true, no_sleep);
BENCHMARK_CAPTURE(foreign_call, nanosleep_directly, false, no_sleep);
BENCHMARK_CAPTURE(
    kernel_lock, flock, [](int file) { return flock(file, LOCK_EX); },
    [](int file) { return flock(file, LOCK_UN); });
BENCHMARK_CAPTURE(
    kernel_lock, record, [](int file) { return set_record_lock(file, F_WRLCK); },
    [](int file) { return set_record_lock(file, F_UNLCK); });

}  // namespace
