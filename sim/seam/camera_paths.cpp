#include "sim/seam/camera_paths.h"

#include <fcntl.h>
#include <limits.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>

#include "sim/seam/real.h"
#include "wire/paths.h"

namespace kelvo::sim {
namespace {

/// The file that a shell command writes to: its last word.
constexpr const char* target_of(const char* command) {
  const char* word = command;
  for (const char* place = command; *place != '\0'; ++place) {
    if (*place == ' ') word = place + 1;
  }
  return word;
}

struct CameraPath {
  const char* path;
  Device device;
};
constexpr CameraPath camera_paths[] = {
    {wire::lens_controller_device, Device::spi_renesas},
    {wire::pt5111_device, Device::spi_pt5111},
    {wire::pan_tilt_device, Device::i2c_2},
    {wire::iris_record_copies[0], Device::none},
    {wire::iris_record_copies[1], Device::none},
    {wire::iris_record_copies[2], Device::none},
    {wire::iris_default_record, Device::none},
    {wire::stabiliser_record_copies[0], Device::none},
    {wire::stabiliser_record_copies[1], Device::none},
    {wire::stabiliser_record_copies[2], Device::none},
    {target_of(wire::reset_line_export), Device::none},
    {target_of(wire::reset_line_output), Device::none},
    {target_of(wire::reset_line_assert), Device::none},
};
static_assert(std::size(wire::iris_record_copies) == 3);
static_assert(std::size(wire::stabiliser_record_copies) == 3);

std::string_view name_in(std::string_view path) { return path.substr(path.rfind('/') + 1); }
std::string_view folder_in(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string resolved(const std::string& path) {
  std::array<char, PATH_MAX> result{};
  return real().realpath(path.c_str(), result.data()) != nullptr ? result.data() : "";
}

/// The folder that a path leads to, without links and detours; empty if there is none.
std::string folder_of(int folder, std::string_view path) {
  const bool named = path.find('/') != std::string_view::npos;
  const std::string own = named ? std::string(folder_in(path)) : ".";
  if (path.starts_with('/') || folder == AT_FDCWD) return resolved(own);
  return resolved("/proc/self/fd/" + std::to_string(folder) + "/" + own);
}

bool leads_to(int folder, std::string_view path, std::string_view known) {
  if (path == known) return true;
  if (name_in(path) != name_in(known)) return false;
  const int error = errno;
  const std::string there = folder_of(folder, path);
  const std::string_view wanted = folder_in(known);
  const bool same = !there.empty() && (there == wanted || there == resolved(std::string(wanted)));
  errno = error;
  return same;
}

/// What will take a record's place lies beside it until then.
const char* part_of_record(int folder, std::string_view path) {
  using Parts = std::array<std::string, std::size(camera_paths)>;
  static const Parts* const parts = [] {
    auto* const made = new Parts;
    for (std::size_t i = 0; i < made->size(); ++i) {
      (*made)[i] = std::string(camera_paths[i].path) + wire::record_part;
    }
    return made;
  }();
  if (!path.ends_with(wire::record_part)) return nullptr;
  const std::string_view record = path.substr(0, path.size() - std::strlen(wire::record_part));
  for (std::size_t i = 0; i < parts->size(); ++i) {
    const CameraPath& entry = camera_paths[i];
    if (entry.device == Device::none && leads_to(folder, record, entry.path)) {
      return (*parts)[i].c_str();
    }
  }
  return nullptr;
}

}  // namespace

const char* camera_path(int folder, const char* path) {
  if (path == nullptr) return nullptr;
  for (const CameraPath& entry : camera_paths) {
    if (leads_to(folder, path, entry.path)) return entry.path;
  }
  return part_of_record(folder, path);
}

void for_each_camera_path(const std::function<void(const char* path)>& act) {
  for (const CameraPath& entry : camera_paths) act(entry.path);
}

Device device_at(const char* path) {
  for (const CameraPath& entry : camera_paths) {
    if (std::strcmp(entry.path, path) == 0) return entry.device;
  }
  return Device::none;
}

const char* path_of(Device device) {
  for (const CameraPath& entry : camera_paths) {
    if (device != Device::none && entry.device == device) return entry.path;
  }
  return nullptr;
}

}  // namespace kelvo::sim
