#include "sim/state/folder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

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

std::string make_private_folder(const std::string& folder) {
  constexpr mode_t for_its_user = 0700;
  remove_private_folder(folder);
  if (mkdir(folder.c_str(), for_its_user) == 0) return {};
  const int error = errno;
  return "cannot make its folder " + folder + ": " + std::strerror(error) +
         ": make way for it, or name another place with XDG_RUNTIME_DIR";
}

void remove_private_folder(const std::string& folder) {
  std::error_code ignored;
  if (is_own_folder(folder)) std::filesystem::remove_all(folder, ignored);
}

}  // namespace kelvo::sim::state
