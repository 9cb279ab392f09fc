#include "tools/kelvoctl/prompt/history_file.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace kelvo::ctl {
namespace {

namespace fs = std::filesystem;

fs::path chosen() {
  if (const char* const named = std::getenv(history_variable)) return named;
  const char* const state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && *state == '/') return fs::path(state) / "kelvoctl/history";
  const char* const home = std::getenv("HOME");
  if (home == nullptr || *home == '\0') return {};
  return fs::path(home) / ".local/state/kelvoctl/history";
}

}  // namespace

std::string history_file() {
  const fs::path path = chosen();
  std::error_code error;
  if (path.has_parent_path()) fs::create_directories(path.parent_path(), error);
  return error ? "" : path.string();
}

}  // namespace kelvo::ctl
