#include "sim/state/folder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

namespace kelvo::sim::state {
namespace {

/// Neither a link nor somebody else's.
bool is_own_folder(const std::string& folder) {
  struct stat status {};
  return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == geteuid();
}

}  // namespace

std::string private_folder_of(std::string_view name) {
  const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
  const std::string parent = runtime != nullptr && runtime[0] == '/' ? runtime : "/tmp";
  return parent + "/kelvo-sim-" + std::to_string(geteuid()) + "-" + std::string(name);
}

std::string make_private_folder(const std::string& folder,
                                const std::function<bool(const std::string& folder)>& taken) {
  constexpr mode_t for_its_user = 0700;
  constexpr std::size_t most_others = 16;
  remove_private_folder(folder);
  // They keep their identities until one is found that nobody has. No camera has a ~ in its name.
  std::vector<std::string> others;
  int error = 0;
  for (;;) {
    if (mkdir(folder.c_str(), for_its_user) != 0) error = errno;
    if (error != 0 || others.size() == most_others || !taken(folder)) break;
    others.push_back(folder + "~" + std::to_string(others.size()));
    if (rename(folder.c_str(), others.back().c_str()) != 0) error = errno;
  }
  for (const std::string& other : others) rmdir(other.c_str());
  if (error == 0) return {};
  return "cannot make its folder " + folder + ": " + std::strerror(error) +
         ": make way for it, or name another place with XDG_RUNTIME_DIR";
}

void remove_private_folder(const std::string& folder) {
  std::error_code ignored;
  if (is_own_folder(folder)) std::filesystem::remove_all(folder, ignored);
}

}  // namespace kelvo::sim::state
