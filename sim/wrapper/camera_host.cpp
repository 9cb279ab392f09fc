#include "sim/wrapper/camera_host.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>
#include <vector>

#include "sim/report/report.h"
#include "sim/state/bus_key.h"
#include "sim/state/pacing.h"
#include "sim/wrapper/carried_images.h"
#include "sim/wrapper/faulty.h"
#include "sim/wrapper/requests.h"

namespace kelvo::sim {
namespace {

/// Null buffers are refused as the kernel refuses them.
bool readable(std::span<const std::uint8_t> bytes) {
  return bytes.data() != nullptr || bytes.empty();
}

/// The reset line is moved by shell commands alone.
bool is_of_line(std::string_view path) { return path.starts_with("/sys/class/gpio/"); }

camera::Unit unit_of(Device device) {
  if (device == Device::i2c_2) return camera::Unit::i2c_bus;
  return device == Device::spi_pt5111 ? camera::Unit::pt5111 : camera::Unit::lens_controller;
}

/// 0, or why the driver of an SPI device refuses a transfer.
int refusal_of(Device device, std::span<const std::uint8_t> sent,
               std::span<const std::uint8_t> received) {
  if (device == Device::i2c_2) return -ENOTTY;
  return readable(sent) && readable(received) ? 0 : -EFAULT;
}

/// 0, or why the adapter refuses them.
int take_messages(std::span<const i2c_msg> messages, std::vector<camera::BusMessage>& request) {
  if (messages.empty()) return -EINVAL;
  for (const i2c_msg& message : messages) {
    // The adapter does not do anything but plain messages to addresses of seven bits.
    if ((message.flags & ~I2C_M_RD) != 0) return -EOPNOTSUPP;
    if (message.buf == nullptr && message.len != 0) return -EFAULT;
    request.push_back({message.addr, (message.flags & I2C_M_RD) != 0, {message.buf, message.len}});
  }
  return 0;
}

/// How the camera stands when something begins.
void note_begin(trace::Event& event, const camera::Camera& camera) {
  event.time = camera.clock.now().count();
  event.violation = static_cast<std::uint32_t>(camera.violations().total());
  event.module = static_cast<std::uint8_t>(camera.lens().module().value_or(wire::LensModule{}));
  event.family = static_cast<std::int8_t>(camera.head().family());
}

void note_end(trace::Event& event, const camera::Camera& camera) {
  event.violations = static_cast<std::uint16_t>(camera.violations().total() - event.violation);
}

/// Not by exit(): other threads may be in the camera, and destructors could wait for them.
[[noreturn]] void end_by(const camera::Violation& violation) {
  std::fprintf(stderr, "%s: %s\n", settings_variable, violation_line(violation).c_str());
  std::fflush(stderr);
  _exit(violation_exit_code);
}

}  // namespace

OpenedCamera open_shared(const Settings& settings) {
  if (settings.name.empty()) return {};
  OpenedCamera opened = SharedCamera::open_or_make(settings.name, settings.camera, Role::program);
  if (opened.camera == nullptr) return opened;
  // Programs start one another with the same settings: what is there is not added again.
  for (const fault::Fault& fault : settings.faults) {
    if (opened.camera->change(Extent::one_call).faults().add_once(fault)) continue;
    opened.camera.reset();
    opened.error = "camera \"" + settings.name + "\": " + fault::table_is_full;
    return opened;
  }
  return opened;
}

CameraHost::CameraHost(const Settings& settings, std::unique_ptr<SharedCamera> shared)
    : settings_(settings),
      clock_(shared ? shared->settings().clock : settings.camera.clock.value_or(ClockSetting{})),
      shared_(std::move(shared)),
      owner_(getpid()),
      begun_(shared_ ? shared_->begun() : std::chrono::steady_clock::now()),
      files_(shared_ ? shared_->settings().files : settings.camera.files.value_or(""),
             shared_ != nullptr) {
  if (settings.camera.head) camera_.fit_head(*settings.camera.head);
  camera_.vary(settings.camera.seed.value_or(0));
  if (settings.camera.module) camera_.fit_module(*settings.camera.module);
  for (const fault::Fault& fault : settings.faults) {
    if (!shared_) faults_.add(fault);
  }
  if (!settings.camera.corrupt) return;
  for (const std::uint32_t number : *settings.camera.corrupt) camera_.corrupt_download(number);
}

CameraHost::~CameraHost() { end(); }

camera::Time CameraHost::real_time() const {
  return passed(clock_, std::chrono::steady_clock::now() - begun_);
}

camera::Camera& CameraHost::up_to_date() {
  if (clock_.mode != ClockMode::sleep) camera_.clock.reach(real_time());
  return camera_;
}

template <typename Act>
auto CameraHost::with_camera(Act act) {
  return with_faults([&](camera::Camera& camera, fault::FaultTable&) { return act(camera); });
}

std::atomic<std::int32_t>& CameraHost::lock_entry() {
  return shared_ ? shared_->lock_holder_entry() : own_lock_entry_;
}

template <typename Act>
auto CameraHost::with_faults(Act act) {
  if (shared_) {
    const SharedCamera::Change change = shared_->change(Extent::one_call);
    return act(*change, change.faults());
  }
  const Guard guard(mutex_);
  return act(up_to_date(), faults_);
}

template <typename Act, typename Run>
Answer CameraHost::judged(Act act, Run run) {
  const camera::Caller caller = BusLock::caller(lock_entry());
  std::optional<camera::Violation> violation;
  const auto watched = [&](camera::Camera& camera, fault::FaultTable& faults) -> Answer {
    const std::uint64_t before = camera.violations().total();
    camera.set_caller(caller);
    const Answer result = act(camera, faults);
    if (camera.violations().total() != before) violation = camera.violations().last();
    latest_call_ = camera.clock.now();
    return result;
  };
  const Answer answer = run(watched);
  if (violation && settings_.violations == ViolationMode::fatal) end_by(*violation);
  return answer;
}

template <typename Act>
Answer CameraHost::as_caller(Act act) {
  const auto without_faults = [&](camera::Camera& camera, fault::FaultTable& /*faults*/) {
    act(camera);
    return 0;
  };
  return judged(without_faults, [this](const auto& watched) { return this->with_faults(watched); });
}

template <typename Act, typename Note>
Answer CameraHost::traced(trace::Event event, Act act, Note note) {
  return judged(act, [&](const auto& watched) -> Answer {
    if (!shared_) return with_faults(watched);
    SharedCamera::Change change = shared_->change(Extent::one_call);
    note_begin(event, *change);
    const Answer result = watched(*change, change.faults());
    if (!result) return result;
    event.result = *result;
    note_end(event, *change);
    note(event);
    change.record(event);
    return result;
  });
}

template <typename Act, typename Note>
Answer CameraHost::on_wire(Passage passage, const trace::Event& event, Act act, Note note) {
  camera::Time begun{};
  camera::Time lead{};
  const auto at_once = [&](camera::Camera& camera, fault::FaultTable& faults) -> Answer {
    begun = camera.clock.now();
    const camera::Time end = camera.occupy(passage.bus, passage.duration);
    if (clock_.mode != ClockMode::sleep) lead = end - real_time();
    if (worth_a_sleep(clock_, lead)) return {};
    camera.clock.reach(end);
    return act(camera, faults);
  };
  if (const Answer answer = traced(event, at_once, note)) return answer;
  sleep_through(clock_, lead);
  return traced(event, act, [&](trace::Event& over) {
    over.time = begun.count();
    note(over);
  });
}

Answer CameraHost::open(Device device) {
  used_ = true;
  const auto act = [device](camera::Camera& /*camera*/, fault::FaultTable& faults) {
    return faults.empty() ? 0 : faulty::open(faults, device);
  };
  return traced(open_event(device), act, nothing_more);
}

Answer CameraHost::close(Device device) {
  return traced(
      close_event(device),
      [](camera::Camera& /*camera*/, fault::FaultTable& /*faults*/) { return 0; }, nothing_more);
}

Answer CameraHost::transfer(Device device, int /*descriptor*/, std::span<const std::uint8_t> sent,
                            std::span<std::uint8_t> received) {
  if (device == Device::none) return {};
  const int refusal = refusal_of(device, sent, received);
  const auto act = [&](camera::Camera& camera, fault::FaultTable& faults) -> int {
    if (refusal != 0) return refusal;
    if (!faults.empty()) return faulty::transfer(camera, faults, device, sent, received);
    if (device == Device::spi_pt5111) return camera.transfer_pt5111(sent, received);
    return camera.transfer_lens(sent, received, carried_images());
  };
  const auto note = [received](trace::Event& event) { note_received(event, received); };
  const trace::Event event = transfer_event(device, sent);
  if (refusal != 0) return traced(event, act, note);
  const camera::Bus bus =
      device == Device::spi_pt5111 ? camera::Bus::pt5111_spi : camera::Bus::lens_spi;
  return on_wire({bus, camera::spi_time(sent.size())}, event, act, note);
}

Answer CameraHost::set_speed(Device device, int /*descriptor*/, std::uint32_t hertz) {
  if (device == Device::none) return {};
  return traced(
      speed_event(device, hertz),
      [device](camera::Camera& /*camera*/, fault::FaultTable& /*faults*/) {
        return device == Device::i2c_2 ? -ENOTTY : 0;
      },
      nothing_more);
}

Answer CameraHost::i2c(Device device, int /*descriptor*/, std::span<i2c_msg> messages) {
  if (device == Device::none) return {};
  std::vector<camera::BusMessage> request;
  const int refusal = device == Device::i2c_2 ? take_messages(messages, request) : -ENOTTY;
  const auto act = [&](camera::Camera& camera, fault::FaultTable& faults) {
    if (refusal != 0) return refusal;
    return faults.empty() ? camera.transfer_pan_tilt(request)
                          : faulty::i2c(camera, faults, request);
  };
  const auto note = [messages](trace::Event& event) { note_received(event, messages); };
  const trace::Event event = i2c_event(device, messages);
  if (refusal != 0) return traced(event, act, note);
  return on_wire({camera::Bus::i2c, camera::wire_time(request)}, event, act, note);
}

Answer CameraHost::delay(SleepCall /*call*/, std::chrono::nanoseconds time) {
  if (clock_.mode != ClockMode::sleep) {
    // It begins when the transfers before it are over.
    const camera::Time lead = std::max(latest_call_.load() - real_time(), camera::Time::zero());
    if (clock_.mode == ClockMode::scaled) return sleep_by(clock_, lead + time);
    sleep_through(clock_, lead);
    return {};
  }
  if (shared_) return shared_->sleep(time);
  const Guard guard(mutex_);
  camera_.clock.advance(time);
  return 0;
}

void CameraHost::refused(Device device, const char* what) {
  as_caller([&](camera::Camera& camera) { camera.refuse(unit_of(device), what); });
}

Answer CameraHost::shell(const char* command) {
  used_ = true;
  const auto act = [command](camera::Camera& camera, fault::FaultTable& faults) {
    return faults.empty() ? camera.shell(command) : faulty::shell(camera, faults, command);
  };
  return traced(shell_event(command), act, nothing_more);
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

/// Others than the bus lock's are left to the kernel.
Answer CameraHost::semaphore_get(std::uint32_t key, int members, int flags) {
  {
    const Guard guard(mutex_);
    if (!lock_key_ || static_cast<std::uint32_t>(*lock_key_) != key) return {};
  }
  return bus_lock_.get(static_cast<key_t>(key), members, flags);
}

Answer CameraHost::semaphore_operate(int semid, std::span<const sembuf> operations) {
  if (!bus_lock_.has(semid)) return {};
  bool foreign = false;
  const Answer answer = bus_lock_.operate(operations, lock_entry(), foreign);
  if (!foreign) return answer;
  as_caller([](camera::Camera& camera) { camera.unlock_for_another(); });
  lock_entry().store(0);
  return answer;
}

std::optional<FileAnswer> CameraHost::file(const char* path, const char* mode) {
  if (is_of_line(path)) {
    as_caller([](camera::Camera& camera) {
      camera.refuse(camera::Unit::reset_line, "opening a file of the line");
    });
    return FileAnswer{-EACCES, {}};
  }
  if (!CameraFiles::claims(path)) return {};
  if (!powered()) return FileAnswer{-EIO, {}};
  if (const std::error_code error = files_.prepare()) return FileAnswer{-error.value(), {}};
  FileAnswer answer{0, files_.real_path(path).string()};
  answer.error = with_faults([&](camera::Camera&, fault::FaultTable& faults) {
    return faults.empty()
               ? 0
               : faulty::file(faults, CameraFiles::record_of(path), mode, answer.real_path);
  });
  return answer;
}

std::optional<FileAnswer> CameraHost::real_place(const char* path) {
  if (is_of_line(path)) return FileAnswer{-EACCES, {}};
  const bool missing = with_faults([path](camera::Camera&, const fault::FaultTable& faults) {
    return !faults.empty() && faulty::missing(faults, path);
  });
  if (missing) return FileAnswer{-ENOENT, {}};
  // What looks like a device node: anybody may read and write it.
  if (!CameraFiles::claims(path)) return FileAnswer{0, "/dev/null"};
  if (!powered()) return FileAnswer{-EIO, {}};
  if (const std::error_code error = files_.prepare()) return FileAnswer{-error.value(), {}};
  return FileAnswer{0, files_.real_path(path).string()};
}

int CameraHost::own_descriptor(int first) const {
  const int own = shared_ ? shared_->descriptor() : -1;
  return own >= first ? own : -1;
}

void CameraHost::file_synchronised(const char* path) {
  if (powered()) files_.synchronise(path);
}

void CameraHost::power_off() {
  if (shared_) {
    shared_->power_off();
    return;
  }
  if (!powered()) return;
  with_camera([](camera::Camera& camera) { camera.power_off(); });
  files_.cut();
}

void CameraHost::power_on() {
  if (shared_) return shared_->power_on();
  with_camera([](camera::Camera& camera) { camera.power_on(); });
}

bool CameraHost::powered() {
  return with_camera([](const camera::Camera& camera) { return camera.powered(); });
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

void CameraHost::change(const std::function<void(camera::Camera&)>& act) {
  if (shared_) return act(*shared_->change());
  const Guard guard(mutex_);
  act(up_to_date());
}

fault::FaultTable CameraHost::faults() {
  return with_faults([](camera::Camera&, const fault::FaultTable& faults) { return faults; });
}

std::optional<std::uint32_t> CameraHost::add(const fault::Fault& fault) {
  return with_faults([&](camera::Camera&, fault::FaultTable& faults) { return faults.add(fault); });
}

bool CameraHost::remove_fault(std::uint32_t number) {
  return with_faults(
      [&](camera::Camera&, fault::FaultTable& faults) { return faults.remove(number); });
}

pid_t CameraHost::lock_holder() const {
  return shared_ ? shared_->lock_holder() : own_lock_entry_.load();
}

bool CameraHost::owned() const { return getpid() == owner_; }

}  // namespace kelvo::sim
