#include "sim/state/object.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "sim/state/byte_lock.h"

namespace kelvo::sim::state {
namespace {

/// Out of the way of programs that count on low numbers, or close them.
int moved_up(int descriptor) {
  constexpr int high = 500;
  const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, high);
  if (moved < 0) return descriptor;
  close(descriptor);
  return moved;
}

std::string in_quotes(std::string_view text) { return '"' + std::string(text) + '"'; }

}  // namespace

std::string object_prefix() { return "/kelvo-sim-" + std::to_string(geteuid()) + "-"; }

std::string object_name(std::string_view name) { return object_prefix() + std::string(name); }

Object::Object(std::string_view name, Missing missing) : name_(name), object_(object_name(name)) {
  if (!is_camera_name(name)) {
    error_ = "there is no camera of the name " + in_quotes(name) + ": a name has " +
             std::string(camera_name_values);
    return;
  }
  while (!open_once(missing)) {
  }
}

/// True when there is nothing more to try: it may be removed between opening and locking it.
bool Object::open_once(Missing missing) {
  constexpr mode_t for_its_user = 0600;
  descriptor_ = shm_open(object_.c_str(), O_RDWR | O_CLOEXEC, 0);
  if (descriptor_ < 0 && errno == ENOENT && missing == Missing::is_made) {
    descriptor_ = shm_open(object_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, for_its_user);
    if (descriptor_ < 0 && errno == EEXIST) return false;
  }
  if (descriptor_ < 0) {
    const int reason = errno;
    error_ = reason == ENOENT ? "there is no camera " + in_quotes(name_) +
                                    ": a program makes it that runs with name=" + name_
                              : complaint(std::strerror(reason), "choose another name");
    return true;
  }
  error_ = owner_error();
  if (!error_.empty()) return true;
  lock_byte(descriptor_, makers_byte, Wait::yes);
  struct stat status {};
  if (fstat(descriptor_, &status) == 0 && status.st_nlink == 0) {
    close(descriptor_);
    descriptor_ = -1;
    return false;
  }
  map_header();
  return true;
}

std::string Object::owner_error() const {
  struct stat status {};
  if (fstat(descriptor_, &status) != 0) return complaint(std::strerror(errno), "try again");
  if (status.st_uid != geteuid()) {
    return complaint("it belongs to another user", "choose another name");
  }
  return {};
}

void Object::map_header() {
  struct stat status {};
  if (fstat(descriptor_, &status) != 0) return;
  if (static_cast<std::size_t>(status.st_size) < sizeof(Header)) return;
  void* const place =
      mmap(nullptr, sizeof(Header), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor_, 0);
  if (place != MAP_FAILED) header_ = static_cast<Header*>(place);
}

Object::~Object() {
  if (header_ != nullptr) munmap(header_, sizeof(Header));
  if (descriptor_ < 0) return;
  // Closing would not do: what is mapped keeps the file open.
  unlock_byte(descriptor_, makers_byte);
  close(descriptor_);
}

std::string Object::complaint(const std::string& what, const std::string& advice) const {
  return "camera " + in_quotes(name_) + ", shared memory " + object_ + ": " + what + ": " + advice;
}

bool Object::blank() const { return header_ == nullptr || header_->magic.load() == 0; }

std::string Object::check() const {
  const std::string advice =
      "remove it with kelvo-sim remove " + name_ + ", or choose another name";
  if (blank()) return complaint("it is not finished", advice);
  if (header_->magic.load() != magic) return complaint("it is no camera", advice);
  if (header_->version != layout_version || header_->size != sizeof(Layout)) {
    return complaint("another version of the simulated camera has made it", advice);
  }
  return {};
}

bool Object::in_use() const { return any_locked(descriptor_, 0, most_processes); }

std::string Object::reserve() {
  // Only what is reserved cannot fail later, when it is first written.
  if (ftruncate(descriptor_, 0) != 0) return complaint(std::strerror(errno), "try again");
  const int error = posix_fallocate(descriptor_, 0, sizeof(Layout));
  if (error == 0) return {};
  return complaint(
      "no room for " + std::to_string(sizeof(Layout)) + " bytes (" + std::strerror(error) + ")",
      "make room in /dev/shm");
}

Layout* Object::map() {
  void* const place =
      mmap(nullptr, sizeof(Layout), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor_, 0);
  if (place != MAP_FAILED) return static_cast<Layout*>(place);
  error_ = complaint(std::strerror(errno), "free some memory");
  return nullptr;
}

std::string Object::unlink() {
  if (shm_unlink(object_.c_str()) == 0) return {};
  return complaint(std::strerror(errno), "try again");
}

int Object::open_for_locks() const {
  return moved_up(shm_open(object_.c_str(), O_RDWR | O_CLOEXEC, 0));
}

}  // namespace kelvo::sim::state
