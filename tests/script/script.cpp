#include "script/script.h"

#include <gtest/gtest.h>
#include <sys/ipc.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <span>
#include <utility>

#include "script/calloc_shim.h"
#include "script/capture.h"
#include "script/transcript.h"
#include "sim/seam/host.h"
#include "sim/seam/real.h"

namespace kelvo::test {
namespace {

using sim::Answer;
using sim::Device;

constexpr std::size_t call_kinds = 16;
constexpr std::size_t longest_shown = 32;
constexpr std::uint32_t lock_key = 0x4b454c56;
constexpr int lock_set = 7;

const char* name_of(Device device) {
  switch (device) {
    case Device::spi_renesas: return "/dev/spi_renesas";
    case Device::spi_pt5111: return "/dev/spi_pt5111";
    case Device::i2c_2: return "/dev/i2c-2";
    case Device::none: break;
  }
  return "none";
}

std::string place(Device device, int descriptor) {
  if (device == Device::none) return format("fd %d: ", descriptor);
  const std::string path = name_of(device);
  return path.substr(path.rfind('/') + 1) + ": ";
}

bool begins_with(std::span<const std::uint8_t> bytes, const Bytes& prefix) {
  return prefix.size() <= bytes.size() && std::equal(prefix.begin(), prefix.end(), bytes.begin());
}

struct Reply {
  Bytes sent;
  Bytes received;
};

/// The fate of a call: nothing, or a result that the test has set.
struct Fate {
  int value = 0;     // a negative one is an error number
  std::string note;  // " -> EIO"
};

}  // namespace

class Script::Impl final : public sim::Host {
 public:
  Impl() : out_(1), err_(2) {
    std::string pattern = (std::filesystem::temp_directory_path() / "kelvo-script-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) std::abort();
    folder_ = pattern;
    current = this;
    allocation_fails = [] { return current->take_fate(Call::calloc).has_value(); };
    sim::install(this);
  }

  ~Impl() override {
    sim::install(nullptr);
    allocation_fails = nullptr;
    if (testing::Test::HasFailure()) out_.show_all();
    std::filesystem::remove_all(folder_);
  }
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  // ---- Host ----------------------------------------------------------------------------------

  Answer open(Device device) override {
    return finish(Call::open, format("open %s", name_of(device)), 0);
  }

  Answer close(Device device) override {
    return finish(Call::close, format("close %s", name_of(device)), 0);
  }

  Answer transfer(Device device, int descriptor, std::span<const std::uint8_t> sent,
                  std::span<std::uint8_t> received) override {
    const bool shown = sent.size() <= longest_shown;
    if (!shown) payloads_.emplace_back(sent.begin(), sent.end());
    const std::string line =
        place(device, descriptor) + (shown ? hex(sent) : format("%zu bytes", sent.size()));
    const int result = finish(Call::transfer, line, foreign(device, descriptor));
    if (result >= 0) answer(sent, received);
    return result;
  }

  Answer set_speed(Device device, int descriptor, std::uint32_t hertz) override {
    return finish(Call::speed, place(device, descriptor) + format("speed %u", hertz),
                  foreign(device, descriptor));
  }

  Answer i2c(Device device, int descriptor, std::span<i2c_msg> messages) override {
    std::string line = device == Device::i2c_2 ? "" : place(device, descriptor);
    line += messages.empty() ? std::string("i2c:") : format("i2c %d:", messages[0].addr);
    for (const i2c_msg& message : messages) {
      if ((message.flags & I2C_M_RD) != 0) {
        line += format(" r %d", message.len);
      } else {
        const std::string bytes = hex({message.buf, message.len});
        line += bytes.empty() ? " w" : " w " + bytes;
      }
    }
    const int error = foreign(device, descriptor);
    const int result =
        finish(Call::i2c, line, error != 0 ? error : static_cast<int>(messages.size()));
    if (result > 0) read_register(messages);
    return result;
  }

  Answer delay(sim::SleepCall call, std::chrono::nanoseconds time) override {
    if (call == sim::SleepCall::sleep) {
      return finish(Call::sleep,
                    format("sleep %ld", static_cast<long>(time.count() / 1'000'000'000)), 0);
    }
    return finish(Call::usleep, format("usleep %ld", static_cast<long>(time.count() / 1000)), 0);
  }

  Answer shell(const char* command) override {
    return finish(Call::system, format("system %s", command), 0);
  }

  Answer semaphore_key(const char* path, int project) override {
    return finish(Call::ftok, format("ftok %s %d", path, project), lock_key);
  }

  Answer semaphore_get(std::uint32_t key, int members, int flags) override {
    const bool create = (flags & IPC_CREAT) != 0;
    const std::string flag_text = flags == 0 ? "0" : format("0%o", flags);
    const int result =
        finish(Call::semget, format("semget 0x%x %d %s", key, members, flag_text.c_str()),
               semaphore_exists_ || create ? lock_set : -ENOENT);
    if (result >= 0 && !semaphore_exists_) semaphore_exists_ = true;
    return result;
  }

  Answer semaphore_control(int semid, int /*member*/, int command, int value) override {
    const int error = semid == lock_set ? 0 : -EINVAL;
    if (command == GETVAL) {
      return finish(Call::semctl, "semctl GETVAL", error != 0 ? error : semaphore_value_);
    }
    const int result = finish(Call::semctl, format("semctl SETVAL %d", value), error);
    if (result == 0) semaphore_value_ = value;
    return result;
  }

  Answer semaphore_operate(int semid, std::span<const sembuf> operations) override {
    std::string line = "semop";
    int value = semaphore_value_;
    int error = semid == lock_set ? 0 : -EINVAL;
    for (const sembuf& operation : operations) {
      line += format(operation.sem_op == 0 ? " %d" : " %+d", operation.sem_op);
      if ((operation.sem_flg & SEM_UNDO) != 0) line += "/UNDO";
      const bool blocks = operation.sem_op == 0 ? value != 0 : value + operation.sem_op < 0;
      // A wait that nobody would end: the test must not hang.
      if (blocks && error == 0) error = -EDEADLK;
      value += operation.sem_op;
    }
    const int result = finish(Call::semop, line, error);
    if (result == 0) semaphore_value_ = value;
    return result;
  }

  std::optional<sim::FileAnswer> file(const char* path, const char* mode) override {
    const std::string name = path;
    if (!name.starts_with("/bin/") && !name.starts_with("/mnt/nand/") &&
        !name.starts_with("/tmp/")) {
      return {};
    }
    if (name.find("_Cali") == std::string::npos) return {};
    const bool writing = mode[0] != 'r';
    std::string shown_mode = mode;
    std::erase(shown_mode, 'b');
    const bool known = writing || std::filesystem::exists(real_path(name));
    const int result =
        finish(Call::fopen, format("fopen %s %s", path, shown_mode.c_str()), known ? 0 : -ENOENT);
    if (result < 0) return sim::FileAnswer{result, {}};
    ++open_files_;
    return sim::FileAnswer{0, real_path(name)};
  }

  void file_closed(const char* path) override {
    --open_files_;
    record(format("fclose %s", path));
  }

  Answer sync(int /*descriptor*/) override { return finish(Call::fsync, "fsync", 0); }

  // ---- the test's side -----------------------------------------------------------------------

  std::string real_path(const std::string& path) const {
    std::string name = path;
    std::replace(name.begin(), name.end(), '/', '_');
    return (folder_ / name).string();
  }

  void drain_output() {
    for (const auto& [word, capture] : {std::pair{"out", &out_}, std::pair{"err", &err_}}) {
      const std::string text = capture->take();
      for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t newline = text.find('\n', begin);
        const std::size_t end = newline == std::string::npos ? text.size() : newline + 1;
        lines_.push_back(std::string(word) + " " + quoted(text.substr(begin, end - begin)));
        begin = end;
      }
    }
  }

  void record(const std::string& line) {
    drain_output();
    lines_.push_back(line);
  }

  /// Counts a call and says what the test has planned for it.
  std::optional<Fate> take_fate(Call call) {
    const int number = ++counts_[static_cast<std::size_t>(call)];
    for (const Plan& plan : plans_) {
      const bool due = plan.call == call && number >= plan.first &&
                       (plan.times == forever || number < plan.first + plan.times);
      if (due) return plan.fate;
    }
    return std::nullopt;
  }

  /// Records the call with its fate; the result is that, or the given one.
  int finish(Call call, const std::string& line, int result) {
    const std::optional<Fate> fate = take_fate(call);
    if (fate) {
      record(line + fate->note);
    } else {
      record(result < 0 ? line + " -> " + strerrorname_np(-result) : line);
    }
    take_action(call);
    return fate ? fate->value : result;
  }

  void take_action(Call call) {
    const int number = counts_[static_cast<std::size_t>(call)];
    for (const Moment& moment : moments_) {
      if (moment.call == call && moment.number == number) moment.action();
    }
  }

  static int foreign(Device device, int descriptor) {
    if (device != Device::none) return 0;
    return descriptor < 0 ? -EBADF : -ENOTTY;
  }

  void answer(std::span<const std::uint8_t> sent, std::span<std::uint8_t> received) {
    const auto deliver = [&](const Bytes& bytes) {
      std::copy_n(bytes.begin(), std::min(bytes.size(), received.size()), received.begin());
    };
    const auto once = std::find_if(once_.begin(), once_.end(), [&](const Reply& reply) {
      return begins_with(sent, reply.sent);
    });
    if (once != once_.end()) {
      deliver(once->received);
      once_.erase(once);
      return;
    }
    const Reply* best = nullptr;
    for (const Reply& reply : lasting_) {
      if (begins_with(sent, reply.sent) &&
          (best == nullptr || reply.sent.size() >= best->sent.size())) {
        best = &reply;
      }
    }
    if (best != nullptr) deliver(best->received);
  }

  void read_register(std::span<i2c_msg> messages) {
    if (messages.size() != 2 || messages[0].len == 0) return;
    const auto found = registers_.find({messages[0].addr, messages[0].buf[0]});
    if (found == registers_.end()) return;
    std::copy_n(found->second.begin(), std::min<std::size_t>(found->second.size(), messages[1].len),
                messages[1].buf);
  }

  struct Plan {
    Call call;
    int first;
    int times;
    Fate fate;
  };

  struct Moment {
    Call call;
    int number;
    std::function<void()> action;
  };

  static inline Impl* current = nullptr;

  Capture out_;
  Capture err_;
  std::filesystem::path folder_;
  std::vector<std::string> lines_;
  std::vector<Plan> plans_;
  std::vector<Moment> moments_;
  std::array<int, call_kinds> counts_{};
  std::vector<Reply> once_;
  std::vector<Reply> lasting_;
  std::map<std::pair<int, std::uint8_t>, Bytes> registers_;
  std::vector<Bytes> payloads_;
  bool semaphore_exists_ = true;
  int semaphore_value_ = 0;
  int open_files_ = 0;
};

Script::Script() : impl_(std::make_unique<Impl>()) {}
Script::~Script() = default;

std::string Script::transcript() { return transcript_without({}); }

std::string Script::transcript_without(const std::vector<std::string>& words) {
  impl_->drain_output();
  std::string text;
  for (const std::string& line : with_lock_words(std::exchange(impl_->lines_, {}))) {
    const bool left_out = std::any_of(words.begin(), words.end(), [&](const std::string& word) {
      return line == word || line.starts_with(word + " ") || line.starts_with(word + ":");
    });
    if (!left_out) text += line + "\n";
  }
  return text;
}

void Script::reply(const Bytes& sent, const Bytes& received) {
  impl_->lasting_.push_back({sent, received});
}

void Script::reply_once(const Bytes& sent, const Bytes& received) {
  impl_->once_.push_back({sent, received});
}

namespace {

Bytes query_frame(const Bytes& four) {
  Bytes received(7 + four.size(), 0);
  std::copy(four.begin(), four.end(), received.begin() + 7);
  return received;
}

}  // namespace

void Script::query_reply(std::uint8_t code, const Bytes& four) { reply({code}, query_frame(four)); }

void Script::query_reply_once(std::uint8_t code, const Bytes& four) {
  reply_once({code}, query_frame(four));
}

void Script::i2c_register(int slave, std::uint8_t reg, const Bytes& bytes) {
  impl_->registers_[{slave, reg}] = bytes;
}

void Script::file(const std::string& path, const Bytes& content) {
  std::ofstream stream(impl_->real_path(path), std::ios::binary);
  stream.write(reinterpret_cast<const char*>(content.data()),
               static_cast<std::streamsize>(content.size()));
}

void Script::unreadable_file(const std::string& path) {
  // A folder opens for reading, and every read of it fails.
  std::filesystem::create_directory(impl_->real_path(path));
}

void Script::full_file(const std::string& path) {
  std::filesystem::create_symlink("/dev/full", impl_->real_path(path));
}

Bytes Script::written(const std::string& path) const {
  std::ifstream stream(impl_->real_path(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void Script::semaphore(bool exists, int value) {
  impl_->semaphore_exists_ = exists;
  impl_->semaphore_value_ = value;
}

int Script::semaphore_value() const { return impl_->semaphore_value_; }

void Script::fail(Call call, int nth, int times, int error) {
  const int first = count(call) + nth;
  impl_->plans_.push_back(
      {call, first, times, {-error, std::string(" -> ") + strerrorname_np(error)}});
}

void Script::result(Call call, int nth, int value) {
  const int first = count(call) + nth;
  impl_->plans_.push_back({call, first, 1, {value, " -> " + std::to_string(value)}});
}

void Script::at(Call call, int nth, std::function<void()> action) {
  impl_->moments_.push_back({call, count(call) + nth, std::move(action)});
}

int Script::count(Call call) const { return impl_->counts_[static_cast<std::size_t>(call)]; }

const std::vector<Bytes>& Script::payloads() const { return impl_->payloads_; }

int Script::open_files() const { return impl_->open_files_; }

}  // namespace kelvo::test
