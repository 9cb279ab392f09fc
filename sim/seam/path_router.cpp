// The calls that go by a path.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "sim/seam/camera_paths.h"
#include "sim/seam/descriptors.h"
#include "sim/seam/installed.h"
#include "sim/seam/open_files.h"
#include "sim/seam/real.h"
#include "sim/seam/router.h"

namespace kelvo::sim::router {
namespace {

/// The camera's own spelling of a path that is the host's to answer, or null.
const char* claimed_path(const Host* host, int folder, const char* path) {
  const char* const known = host != nullptr ? camera_path(folder, path) : nullptr;
  return known != nullptr && !OwnFiles::in_use() ? known : nullptr;
}

FILE* remembered(FILE* stream, const char* path) {
  if (stream != nullptr) remember_file(fileno(stream), path);
  return stream;
}

/// The stream lets go of its descriptor.
void forget(Host& host, FILE* stream) {
  const int descriptor = fileno(stream);
  const std::string path = forget_file(descriptor);
  if (!path.empty()) host.file_closed(path.c_str());
  const Device device = opened_at(descriptor).device;
  set_opened(descriptor, {});
  if (device != Device::none) host.close(device);
}

int real_open(int folder, const char* path, int flags, mode_t mode) {
  if (folder == AT_FDCWD) return real().open(path, flags, mode);
  return real().openat(folder, path, flags, mode);
}

/// The host may do as it likes with errno.
void tell_opened(Host& host, Device device, int descriptor) {
  const int error = errno;
  host.opened(device, descriptor < 0 ? -error : 0);
  errno = error;
}

int open_device(Host& host, Device device, int flags, mode_t mode) {
  const Answer answer = host.open(device);
  if (answer && *answer < 0) return libc_result(*answer);
  const int descriptor = answer ? open_placeholder(device, (flags & O_CLOEXEC) != 0)
                                : real().open(path_of(device), flags, mode);
  set_opened(descriptor, {device, answer.has_value()});
  if (!answer) tell_opened(host, device, descriptor);
  return descriptor;
}

/// The mode in which fopen() would open a file like that.
const char* mode_of(int flags) {
  const bool reads = (flags & O_ACCMODE) == O_RDWR;
  if ((flags & O_ACCMODE) == O_RDONLY) return "r";
  if ((flags & O_APPEND) != 0) return reads ? "a+" : "a";
  if ((flags & O_TRUNC) != 0) return reads ? "w+" : "w";
  return "r+";
}

int flags_of(const char* mode) {
  const bool both = std::string(mode).find('+') != std::string::npos;
  const int close_on_exec = std::string(mode).find('e') != std::string::npos ? O_CLOEXEC : 0;
  if (both) return O_RDWR | close_on_exec;
  return (mode[0] == 'r' ? O_RDONLY : O_WRONLY) | close_on_exec;
}

FILE* fopen_device(Host& host, Device device, const char* mode) {
  const int descriptor = open_device(host, device, flags_of(mode), 0);
  return descriptor < 0 ? nullptr : ::fdopen(descriptor, mode);
}

/// Where a file of the camera lies for somebody who means to use it.
std::optional<FileAnswer> opened_place(Host* host, const Path& path) {
  const char* const known = claimed_path(host, path.folder, path.path);
  if (known == nullptr) return {};
  if (device_at(known) != Device::none) return find_file(path.folder, path.path);
  return host->file(known, "r");
}

}  // namespace

int open(int folder, const char* path, int flags, mode_t mode) {
  Host* const host = installed();
  const char* const known = claimed_path(host, folder, path);
  if (known == nullptr) return real_open(folder, path, flags, mode);
  const Device device = device_at(known);
  if (device != Device::none) return open_device(*host, device, flags, mode);
  const std::optional<FileAnswer> answer = host->file(known, mode_of(flags));
  if (!answer) return real_open(folder, path, flags, mode);
  if (answer->error < 0) return libc_result(answer->error);
  const int descriptor = real().open(answer->real_path.c_str(), flags, mode);
  remember_file(descriptor, known);
  return descriptor;
}

FILE* fopen(const char* path, const char* mode) {
  Host* const host = installed();
  const char* const known = claimed_path(host, AT_FDCWD, path);
  if (known == nullptr) return real().fopen(path, mode);
  const Device device = device_at(known);
  if (device != Device::none) return fopen_device(*host, device, mode);
  const std::optional<FileAnswer> answer = host->file(known, mode);
  if (!answer) return real().fopen(path, mode);
  if (libc_result(answer->error) < 0) return nullptr;
  return remembered(real().fopen(answer->real_path.c_str(), mode), known);
}

FILE* freopen(const char* path, const char* mode, FILE* stream) {
  Host* const host = installed();
  const char* const known = claimed_path(host, AT_FDCWD, path);
  if (host != nullptr) forget(*host, stream);
  if (known == nullptr) return real().freopen(path, mode, stream);
  const bool is_device = device_at(known) != Device::none;
  // A stream cannot be made to lead to a device that is none.
  const std::optional<FileAnswer> answer =
      is_device ? FileAnswer{-EOPNOTSUPP, {}} : host->file(known, mode);
  if (!answer) return real().freopen(path, mode, stream);
  if (answer->error == 0) {
    return remembered(real().freopen(answer->real_path.c_str(), mode, stream), known);
  }
  real().fclose(stream);
  libc_result(answer->error);
  return nullptr;
}

int fclose(FILE* stream) {
  Host* const host = installed();
  if (host != nullptr) forget(*host, stream);
  return real().fclose(stream);
}

std::optional<FileAnswer> find_place(int folder, const char* path) {
  Host* const host = installed();
  const char* const known = claimed_path(host, folder, path);
  return known != nullptr ? host->real_place(known) : std::optional<FileAnswer>{};
}

std::optional<FileAnswer> find_file(int folder, const char* path) {
  const std::optional<FileAnswer> place = find_place(folder, path);
  const bool device = place && device_at(camera_path(folder, path)) != Device::none;
  return device && place->error == 0 ? FileAnswer{-EPERM, {}} : place;
}

bool refuses_making(int folder, const char* path) {
  const std::optional<FileAnswer> place = find_place(folder, path);
  if (!place) return false;
  const bool there = place->error == 0 && real().access(place->real_path.c_str(), F_OK) == 0;
  const bool missing = place->error == 0 || place->error == -ENOENT;
  libc_result(there ? -EEXIST : missing ? -EPERM : place->error);
  return true;
}

bool refuses_name(Path of, Path made) {
  const std::optional<FileAnswer> place = find_place(of.folder, of.path);
  if (!place) return refuses_making(made.folder, made.path);
  libc_result(place->error < 0 ? place->error : -EPERM);
  return true;
}

char* realpath(const char* path, char* buffer) {
  const std::optional<FileAnswer> place = find_place(AT_FDCWD, path);
  if (!place) return real().realpath(path, buffer);
  if (libc_result(place->error) < 0) return nullptr;
  if (real().access(place->real_path.c_str(), F_OK) != 0) return nullptr;
  const char* const known = camera_path(AT_FDCWD, path);
  if (buffer == nullptr) return strdup(known);
  std::memcpy(buffer, known, std::strlen(known) + 1);
  return buffer;
}

int rename(Path from, Path to, const std::function<int(const char*, const char*)>& call) {
  Host* const host = installed();
  const std::optional<FileAnswer> source = opened_place(host, from);
  const std::optional<FileAnswer> target = opened_place(host, to);
  for (const std::optional<FileAnswer>& place : {source, target}) {
    if (place && place->error < 0) return libc_result(place->error);
  }
  const int result = call(source ? source->real_path.c_str() : from.path,
                          target ? target->real_path.c_str() : to.path);
  if (result == 0 && target) host->file_synchronised(claimed_path(host, to.folder, to.path));
  return result;
}

}  // namespace kelvo::sim::router
