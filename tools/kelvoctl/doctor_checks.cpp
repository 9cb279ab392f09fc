#include "tools/kelvoctl/doctor_checks.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/sem.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string_view>

#include "kelvo.h"
#include "tools/kelvoctl/common/bus_lock.h"
#include "tools/kelvoctl/common/signals.h"
#include "tools/kelvoctl/records/record_file.h"
#include "wire/paths.h"

namespace kelvo::ctl {
namespace {

constexpr char reset_line_folder[] = "/sys/class/gpio";
constexpr int lock_samples = 10;  // a lock that is held for so long is stuck
constexpr std::chrono::milliseconds lock_pause(20);

bool is_simulated() {
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    if (line.find("/libkelvo-sim.so") != std::string::npos) return true;
  }
  return false;
}

Finding check_device(const char* path) {
  const int descriptor = open(path, O_RDWR | O_CLOEXEC);
  if (descriptor < 0) {
    const char* const remedy =
        errno == ENOENT ? ": load its driver" : ": ask for the right to use it";
    return {path, Health::bad, std::strerror(errno) + std::string(remedy), ExitCode::no_device};
  }
  close(descriptor);
  return {path, Health::good, "can be opened"};
}

Finding check_reset_line() {
  if (is_simulated()) return {"reset line", Health::good, "simulated"};
  const std::string file = std::string(reset_line_folder) + "/export";
  if (access(file.c_str(), W_OK) == 0) return {"reset line", Health::good, "can be driven"};
  return {"reset line", Health::bad, file + ": " + std::strerror(errno) + ": a boot cannot reset",
          ExitCode::no_device};
}

bool same_file(const char* one, const char* other) {
  struct stat first {};
  struct stat second {};
  return stat(one, &first) == 0 && stat(other, &second) == 0 && first.st_dev == second.st_dev &&
         first.st_ino == second.st_ino;
}

/// The file that the library was loaded from.
std::string loaded_library() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&GetLensType), &info) == 0) return "";
  return info.dli_fname;
}

struct NamedImage {
  const char* module;
  const std::uint8_t* bytes;
  std::size_t size;
};

constexpr std::array images{
    NamedImage{"de015", CORVO_PROGRAM_DATA_DE015, sizeof CORVO_PROGRAM_DATA_DE015},
    NamedImage{"df033", CORVO_PROGRAM_DATA_DF033, sizeof CORVO_PROGRAM_DATA_DF033},
    NamedImage{"t5391", CORVO_PROGRAM_DATA_T5391, sizeof CORVO_PROGRAM_DATA_T5391}};

bool is_placeholder(const NamedImage& image) {
  constexpr std::string_view mark = "libkelvo placeholder image";
  return std::string_view(reinterpret_cast<const char*>(image.bytes), image.size).starts_with(mark);
}

/// What frees it.
std::string how_to_free(int set) {
  const LockHolder holder = lock_holder(set);
  const std::string process = "process " + std::to_string(holder.process);
  if (!holder.has_ended) return process + " used it last: end it";
  return process + " used it last and has ended: remove it with ipcrm -s " + std::to_string(set);
}

/// The member of the set, sampled until it is free.
Finding check_semaphore(int set) {
  int value = 0;
  for (int i = 0; i < lock_samples; ++i) {
    value = semctl(set, 0, GETVAL);
    if (value < 0) {
      return {"bus lock", Health::bad, std::string("cannot be read: ") + std::strerror(errno),
              ExitCode::link_failed};
    }
    if (value == 0) return {"bus lock", Health::good, "free"};
    if (wait_for_signal(lock_pause)) throw Interrupted("interrupted");
  }
  return {"bus lock", Health::bad, "held, and not given back; " + how_to_free(set),
          ExitCode::link_failed};
}

/// A record that a boot of the module loads.
Finding check_record(LensModule module, const std::string& path) {
  try {
    return {path, Health::good, stored_record(kind_of(module), path) ? "there" : "none"};
  } catch (const Failure& failure) {
    const std::string line = failure.what();
    const std::string before = path + ": ";  // which the row begins with anyway
    return {path, Health::bad, line.starts_with(before) ? line.substr(before.size()) : line,
            static_cast<ExitCode>(failure.code())};
  }
}

/// The installed library, from which the bus lock's key is made.
Finding check_installed(const std::string& loaded) {
  constexpr char what[] = "installed library";
  if (is_simulated()) return {what, Health::good, "not used: the bus lock is the camera's own"};
  if (access(wire::lock_key_path, F_OK) != 0) {
    return {what, Health::doubtful,
            std::string("not at ") + wire::lock_key_path +
                ": the bus lock uses a key that it shares with others"};
  }
  if (same_file(loaded.c_str(), wire::lock_key_path)) {
    return {what, Health::good, wire::lock_key_path};
  }
  return {what, Health::doubtful,
          std::string(wire::lock_key_path) + " is another one than the one that is loaded"};
}

}  // namespace

std::vector<Finding> check_camera() {
  if (!is_simulated()) return {{"camera", Health::good, "the real one"}};
  const char* const settings = std::getenv("KELVO_SIM");
  return {{"camera", Health::good,
           "simulated: " + std::string(settings != nullptr ? settings : "no settings")}};
}

std::vector<Finding> check_devices() {
  return {check_device(wire::lens_controller_device), check_device(wire::pt5111_device),
          check_device(wire::pan_tilt_device), check_reset_line()};
}

std::vector<Finding> check_library() {
  const std::string loaded = loaded_library();
  return {{"loaded library", Health::good, loaded}, check_installed(loaded)};
}

std::vector<Finding> check_bus_lock() {
  const key_t key = bus_lock_key();
  if (key == IPC_PRIVATE) {
    return {{"bus lock", Health::bad,
             "the key is 0, and nothing is shared: copy the library, for another inode",
             ExitCode::link_failed}};
  }
  const int set = bus_lock_set(key);
  if (set >= 0) return {check_semaphore(set)};
  if (errno == ENOENT) return {{"bus lock", Health::good, "free; nobody has used it yet"}};
  return {{"bus lock", Health::bad, std::string("cannot be used: ") + std::strerror(errno),
           ExitCode::link_failed}};
}

std::vector<Finding> check_images() {
  std::vector<Finding> findings;
  for (const NamedImage& image : images) {
    const std::string what = std::string("images of ") + image.module;
    if (!is_placeholder(image)) {
      findings.push_back({what, Health::good, "embedded"});
    } else if (is_simulated()) {
      findings.push_back({what, Health::good, "placeholders, which the simulated camera runs"});
    } else {
      findings.push_back(
          {what, Health::doubtful, "placeholders, which no controller runs: build with real ones"});
    }
  }
  return findings;
}

std::vector<Finding> check_records() {
  return {check_record(LensModule::de015, wire::stabiliser_record),
          check_record(LensModule::df033, wire::iris_record),
          check_record(LensModule::t5391, wire::iris_default_record)};
}

}  // namespace kelvo::ctl
