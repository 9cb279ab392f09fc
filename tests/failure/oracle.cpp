#include "failure/oracle.h"

#include <cerrno>
#include <cstddef>
#include <cstring>

#include "script/transcript.h"

namespace kelvo::test::failure {
namespace {

constexpr int scripted_set = 7;  // the identifier of the scripted host's semaphore set
constexpr std::uint32_t lock_key = 0x4b454c56;

}  // namespace

Oracle::Oracle(const Setting& setting, const Fault& fault, const std::vector<std::string>& frames,
               const Carried& carried)
    : variant(setting.variant == 0 ? 7 : setting.variant),
      latch(setting.variant == 0 ? -1 : 0),
      setting_(setting),
      fault_(fault),
      carried_(carried),
      frames_(frames),
      semaphore_exists_(setting.semaphore) {}

bool Oracle::fails(Call call) {
  const int number = ++counts_[static_cast<std::size_t>(call)];
  if (fault_.nth == 0 || fault_.call != call) return false;
  return fault_.for_good ? number >= fault_.nth : number == fault_.nth;
}

bool Oracle::happens(Call call, const std::string& line, int own_error) {
  const int error = fails(call) ? EIO : own_error;
  lines_.push_back(error == 0 ? line : line + " -> " + strerrorname_np(error));
  return error == 0;
}

// ---- bus lock and waits ------------------------------------------------------------------------

std::int32_t Oracle::make_sem(std::uint32_t key) {
  if (happens(Call::semget, format("semget 0x%x 0 0", key), semaphore_exists_ ? 0 : ENOENT)) {
    return scripted_set;
  }
  if (!happens(Call::semget, format("semget 0x%x 1 01666", key))) return -1;
  semaphore_exists_ = true;
  if (!happens(Call::semctl, "semctl SETVAL 0")) return -1;
  semaphore_value_ = 0;
  return scripted_set;
}

int Oracle::lock_sem(std::int32_t set) {
  // A wait that nobody would end is refused by the scripted host.
  const int error = set < 0 ? EINVAL : semaphore_value_ != 0 ? EDEADLK : 0;
  if (!happens(Call::semop, "semop 0/UNDO +1/UNDO", error)) return -1;
  semaphore_value_ = 1;
  return 0;
}

int Oracle::unlock_sem(std::int32_t set) {
  if (!happens(Call::semctl, "semctl GETVAL", set < 0 ? EINVAL : 0)) return -1;
  if (semaphore_value_ <= 0) return -1;
  if (!happens(Call::semop, "semop -1/UNDO")) return -1;
  semaphore_value_ = 0;
  return 0;
}

std::uint32_t Oracle::bus_key() {
  return happens(Call::ftok, "ftok /lib/libkelvo.so 0") ? lock_key : 0xffffffffU;
}

void Oracle::take_bus() { lock_sem(make_sem(bus_key())); }
void Oracle::release_bus() { unlock_sem(make_sem(bus_key())); }

int Oracle::wait(int microseconds) {
  return happens(Call::usleep, format("usleep %d", microseconds)) ? 0 : -1;
}

void Oracle::pause(int seconds) { happens(Call::sleep, format("sleep %d", seconds)); }

void Oracle::settle(int milliseconds) {
  if (!carried_.moved) wait(milliseconds * 1'000);
}

// ---- link to the lens controller -----------------------------------------------------------------

int Oracle::init_spi() {
  if (lens_open_) return 0;
  lens_open_ = happens(Call::open, "open /dev/spi_renesas", setting_.devices ? 0 : ENOENT);
  if (!lens_open_) lines_.push_back(R"(err "Open /dev/spi_renesas fail\n")");
  return lens_open_ ? 0 : -1;
}

void Oracle::close_spi() {
  if (lens_open_) happens(Call::close, "close /dev/spi_renesas");
  lens_open_ = false;
}

void Oracle::set_speed(int hertz) {
  init_spi();
  if (lens_open_) return;
  take_bus();
  happens(Call::speed, format("fd -1: speed %d", hertz), EBADF);
  release_bus();
}

int Oracle::reset_controller() {
  happens(Call::system, "system echo 33 > /sys/class/gpio/export");
  happens(Call::system, "system echo \"out\" > /sys/class/gpio/gpio33/direction");
  happens(Call::system, "system echo 0 > /sys/class/gpio/gpio33/value");
  wait(500'000);
  happens(Call::system, "system echo 1 > /sys/class/gpio/gpio33/value");
  return wait(100'000);
}

int Oracle::transfer() {
  const auto at = static_cast<std::size_t>(frame_);
  const std::string frame = at < frames_.size() ? frames_[at] : "?";
  const std::string place = lens_open_ ? "spi_renesas: " : "fd -1: ";
  return happens(Call::transfer, place + frame, lens_open_ ? 0 : EBADF) ? 0 : -1;
}

int Oracle::boot_command(int count) {
  int result = 0;
  for (int i = 0; i < count; ++i, ++frame_) {
    init_spi();
    take_bus();
    result = transfer();
    release_bus();
  }
  return result;
}

int Oracle::payload() {
  const bool room_to_send = memory();
  const bool room_to_receive = memory();
  init_spi();
  wait(100'000);
  take_bus();
  header_arrived = transfer() == 0;
  ++frame_;
  release_bus();
  wait(100'000);
  int result = -1;
  if (room_to_send && room_to_receive) {
    take_bus();
    result = transfer();
    release_bus();
  }
  ++frame_;
  return result;
}

int Oracle::boot_read(std::uint8_t code, Bytes& received, const Bytes& answer) {
  init_spi();
  take_bus();
  const bool answered = transfer() == 0 || transfer() == 0;
  if (answered) {
    answers_.push_back({code, answer});
    received = answer;
  } else {
    print("ReadSpi Error -1");
  }
  release_bus();
  ++frame_;
  return latch;
}

std::uint8_t Oracle::command(int count) {
  for (int i = 0; i < count; ++i, ++frame_) {
    init_spi();
    take_bus();
    if (latch == 0) {
      const bool sent = transfer() == 0 || transfer() == 0;
      if (!sent) print("SendCommand Error -1");
      latch = sent ? 0 : -1;
    }
    release_bus();
  }
  return static_cast<std::uint8_t>(latch & 0xFF);
}

Oracle::Query Oracle::query() {
  init_spi();
  const bool sent = latch == 0;
  if (sent) latch = transfer();
  ++frame_;
  return {static_cast<std::uint8_t>(latch & 0xFF), sent, sent && latch == 0};
}

// ---- stepping-motor driver -----------------------------------------------------------------------

std::int64_t Oracle::driver_word(int count) {
  if (variant == 8) return command(count);
  if (variant != 7) return variant;
  const std::string complaint = "Open /dev/spi_pt5111 fail\n";
  std::int64_t result = 0;
  for (int i = 0; i < count; ++i, ++frame_) {
    if (!carried_.driver_open) {
      carried_.driver_open =
          happens(Call::open, "open /dev/spi_pt5111", setting_.devices ? 0 : ENOENT);
    }
    if (!carried_.driver_open) {
      lines_.push_back("err " + quoted(complaint));
      result = static_cast<std::int64_t>(complaint.size());
      continue;
    }
    const auto at = static_cast<std::size_t>(frame_);
    const std::string word = at < frames_.size() ? frames_[at] : "?";
    result = happens(Call::transfer, "spi_pt5111: " + word) ? 0 : -1;
  }
  return result;
}

// ---- pan/tilt link -------------------------------------------------------------------------------

int Oracle::init_i2c() {
  const bool open = happens(Call::open, "open /dev/i2c-2", setting_.devices ? 0 : ENOENT);
  pan_tilt = open ? 1 : -1;
  if (!open) print("open /dev/i2c-2 error");
  return open ? 0 : -1;
}

void Oracle::release_i2c() {
  if (pan_tilt > 0) happens(Call::close, "close /dev/i2c-2");
  pan_tilt = -1;
}

bool Oracle::memory() { return !fails(Call::calloc); }

int Oracle::i2c_request(int messages) {
  const auto at = static_cast<std::size_t>(frame_++);
  return happens(Call::i2c, at < frames_.size() ? frames_[at] : "?") ? messages : -1;
}

// ---- files -----------------------------------------------------------------------------------------

bool Oracle::open_file(const std::string& path, const std::string& mode) {
  const bool open = happens(Call::fopen, "fopen " + path + " " + mode);
  open_files_ += open ? 1 : 0;
  return open;
}

void Oracle::close_file(const std::string& path) {
  --open_files_;
  lines_.push_back("fclose " + path);
}

void Oracle::synchronise() { happens(Call::fsync, "fsync"); }

void Oracle::carries_zero() {
  const auto at = static_cast<std::size_t>(frame_);
  if (at >= frames_.size()) return;
  const std::string code = frames_[at].substr(0, 2);
  frames_[at] = code + " 00 00 00 00 " + code + " 00";
}

// ---- what has come of it -------------------------------------------------------------------------

std::string Oracle::transcript() const {
  std::string text;
  for (const std::string& line : with_lock_words(lines_)) text += line + "\n";
  return text;
}

std::string Oracle::state() const {
  return format("variant %d\nlatch %d\nlens link %s\npan/tilt link %d\nlock %d\nopen files %d\n",
                variant, latch, lens_open_ ? "open" : "closed", pan_tilt, semaphore_value_,
                open_files_);
}

}  // namespace kelvo::test::failure
