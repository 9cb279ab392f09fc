// The cameras that there are: who uses them, listing and removing them.
#include <dirent.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "sim/state/attachment.h"
#include "sim/state/bus_key.h"
#include "sim/state/byte_lock.h"
#include "sim/state/folder.h"
#include "sim/state/make.h"
#include "sim/state/object.h"
#include "sim/state/shared_camera.h"
#include "sim/state/sleepers.h"

namespace kelvo::sim {
namespace {

constexpr char shared_memory_folder[] = "/dev/shm";
using Missing = state::Object::Missing;

/// `own` is a number that is alive whatever the locks say: they do not stop those who hold them.
std::vector<AttachedProcess> processes_of(const state::Layout& layout, int descriptor,
                                          std::uint32_t own) {
  std::vector<AttachedProcess> processes;
  for (std::uint32_t i = 0; i < state::most_processes; ++i) {
    const state::Slot& slot = layout.slots[i];
    const std::uint32_t number = slot.number.load();
    if (number == 0 || (number != own && !state::any_locked(descriptor, i, 1))) continue;
    processes.push_back({slot.process.load(), slot.observes.load() ? Role::observer : Role::program,
                         state::asleep(layout, number)});
  }
  return processes;
}

CameraEntry entry_of(const std::string& name) {
  CameraEntry entry;
  entry.name = name;
  state::Object object(name, Missing::is_an_error);
  entry.error = object.error();
  if (entry.error.empty()) entry.error = object.check();
  if (!entry.error.empty()) return entry;
  state::Layout* const layout = object.map();
  if (layout == nullptr) {
    entry.error = object.error();
    return entry;
  }
  entry.made = state::made(layout->header);
  entry.processes = processes_of(*layout, object.descriptor(), 0);
  munmap(layout, sizeof *layout);
  return entry;
}

/// Who only looks in keeps no camera from being removed. Of a broken one nobody knows who does.
bool used_by_programs(state::Object& object) {
  state::Layout* const layout = object.check().empty() ? object.map() : nullptr;
  if (layout == nullptr) return object.in_use();
  const std::vector<AttachedProcess> processes = processes_of(*layout, object.descriptor(), 0);
  munmap(layout, sizeof *layout);
  return std::any_of(processes.begin(), processes.end(),
                     [](const AttachedProcess& process) { return process.role == Role::program; });
}

std::string in_use_error(const std::string& name) {
  std::string users;
  for (const AttachedProcess& process : entry_of(name).processes) {
    if (process.role != Role::program) continue;
    users += users.empty() ? " by process " : ", ";
    users += std::to_string(process.process);
  }
  return "camera \"" + name + "\" is in use" + users + ": end that first, or remove it by force";
}

/// What lies outside the memory. A private folder goes, and any that the name alone leads to.
void remove_belongings(const state::Object& object, std::string_view name) {
  if (!object.blank() && object.header()->magic.load() == state::magic) {
    const std::string files = object.header()->files.data();
    const key_t key = bus_key_of(files);
    if (key > 0) remove_bus_lock(key);
    if (object.header()->private_folder) state::remove_private_folder(files);
  } else {
    state::remove_private_folder(state::private_folder_of(name));
  }
}

}  // namespace

std::vector<AttachedProcess> SharedCamera::processes() const {
  const state::Locked locked(*attachment_);
  return processes_of(layout(), attachment_->descriptor(), attachment_->number());
}

bool SharedCamera::exists() const {
  struct stat status {};
  return fstat(attachment_->descriptor(), &status) == 0 && status.st_nlink != 0;
}

std::string SharedCamera::remove(std::string_view name, Removal removal) {
  bool in_use = false;
  {
    state::Object object(name, Missing::is_an_error);
    if (!object.error().empty()) return object.error();
    in_use = removal == Removal::if_unused && used_by_programs(object);
    if (!in_use) {
      remove_belongings(object, name);
      return object.unlink();
    }
  }
  return in_use_error(std::string(name));
}

CameraList SharedCamera::list() {
  CameraList list;
  DIR* const folder = opendir(shared_memory_folder);
  if (folder == nullptr) {
    list.error = std::string("the cameras in ") + shared_memory_folder +
                 " cannot be listed: " + std::strerror(errno) + ": mount it";
    return list;
  }
  const std::string prefix = state::object_prefix().substr(1);
  while (const dirent* const file = readdir(folder)) {
    const std::string_view name = file->d_name;
    if (!name.starts_with(prefix)) continue;
    CameraEntry entry = entry_of(std::string(name.substr(prefix.size())));
    list.cameras.push_back(std::move(entry));
  }
  closedir(folder);
  std::sort(list.cameras.begin(), list.cameras.end(),
            [](const CameraEntry& a, const CameraEntry& b) { return a.name < b.name; });
  return list;
}

}  // namespace kelvo::sim
