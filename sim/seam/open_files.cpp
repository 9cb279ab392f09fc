#include "sim/seam/open_files.h"

#include <atomic>
#include <map>
#include <mutex>

namespace kelvo::sim {
namespace {

struct OpenFiles {
  std::mutex mutex;
  std::map<int, std::string> paths;
};
OpenFiles& open_files() {
  static auto* const files = new OpenFiles;
  return *files;
}

/// So that most calls need no lock.
std::atomic<bool> any_opened{false};

}  // namespace

void remember_file(int descriptor, const char* path) {
  if (descriptor < 0) return;
  any_opened = true;
  const std::scoped_lock guard(open_files().mutex);
  open_files().paths[descriptor] = path;
}

std::string file_at(int descriptor) {
  if (!any_opened) return {};
  const std::scoped_lock guard(open_files().mutex);
  const auto found = open_files().paths.find(descriptor);
  return found != open_files().paths.end() ? found->second : "";
}

std::string forget_file(int descriptor) {
  std::string path = file_at(descriptor);
  if (path.empty()) return path;
  const std::scoped_lock guard(open_files().mutex);
  open_files().paths.erase(descriptor);
  return path;
}

}  // namespace kelvo::sim
