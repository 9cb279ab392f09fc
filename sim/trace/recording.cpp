#include "sim/trace/recording.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace kelvo::sim::trace {

struct Recording::Memory {
  static constexpr std::uint64_t known = 0x4B54524143450001;  // grows with every change

  std::atomic<std::uint64_t> version = 0;
  Situation situation;
  Ring ring;
};

namespace {

OpenedRecording failure(const std::string& name, const std::string& reason) {
  return {nullptr, "shared memory " + name + ": " + reason};
}

}  // namespace

OpenedRecording Recording::make() {
  std::string name = "/kelvo-trace-" + std::to_string(geteuid()) + "-" + std::to_string(getpid());
  // One that is left has no owner any more: its number is this process's.
  shm_unlink(name.c_str());
  const int descriptor = shm_open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (descriptor < 0) return failure(name, std::strerror(errno));
  const int error = posix_fallocate(descriptor, 0, sizeof(Memory));
  if (error == 0) return map(std::move(name), descriptor, true);
  close(descriptor);
  shm_unlink(name.c_str());
  return failure(name, std::strerror(error));
}

OpenedRecording Recording::open(const std::string& name) {
  const int descriptor = shm_open(name.c_str(), O_RDWR | O_CLOEXEC, 0);
  if (descriptor < 0) return failure(name, std::strerror(errno));
  return map(name, descriptor, false);
}

OpenedRecording Recording::map(std::string name, int descriptor, bool own) {
  struct stat status {};
  const bool whole = fstat(descriptor, &status) == 0 && status.st_size == sizeof(Memory);
  void* const place =
      whole ? mmap(nullptr, sizeof(Memory), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0)
            : MAP_FAILED;
  const int error = errno;
  close(descriptor);
  if (!whole) return failure(name, "it is no recording");
  if (place == MAP_FAILED) return failure(name, std::strerror(error));
  auto* const memory = static_cast<Memory*>(place);
  if (own) memory->version.store(Memory::known);
  OpenedRecording opened{std::unique_ptr<Recording>(new Recording(std::move(name), memory, own)),
                         ""};
  if (memory->version.load() == Memory::known) return opened;
  return failure(opened.recording->name(), "it is a recording of another version");
}

Recording::Recording(std::string name, Memory* memory, bool own)
    : name_(std::move(name)), memory_(memory), own_(own) {}

Recording::~Recording() {
  munmap(memory_, sizeof *memory_);
  if (own_) shm_unlink(name_.c_str());
}

const Ring& Recording::ring() const { return memory_->ring; }

void Recording::record(Event event) {
  event.pid = getpid();
  event.process = process(event.pid);
  memory_->situation.follow(event);
  memory_->ring.add(event);
}

/// A forked process gets a number of its own. Of two threads that come first, one's number stays unused.
std::uint32_t Recording::process(std::int32_t pid) {
  const auto high = static_cast<std::uint64_t>(pid) << 32;
  std::uint64_t numbered = numbered_.load();
  if (numbered >> 32 != high >> 32) {
    const std::uint64_t mine = high | memory_->ring.next_process();
    if (numbered_.compare_exchange_strong(numbered, mine)) numbered = mine;
  }
  return static_cast<std::uint32_t>(numbered);
}

}  // namespace kelvo::sim::trace
