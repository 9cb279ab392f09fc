#include "sim/state/storage.h"

#include <unistd.h>

#include <algorithm>
#include <array>

#include "wire/paths.h"

namespace kelvo::sim::storage {
namespace {

namespace fs = std::filesystem;

constexpr std::array paths{
    wire::iris_record_copies[0],       wire::iris_record_copies[1],
    wire::iris_record_copies[2],       wire::stabiliser_record_copies[0],
    wire::stabiliser_record_copies[1], wire::stabiliser_record_copies[2],
    wire::iris_default_record,
};
static_assert(paths.size() ==
              std::size(wire::iris_record_copies) + std::size(wire::stabiliser_record_copies) + 1);

fs::path copies_of(const fs::path& folder) { return folder / ".synchronised"; }

/// Makes one file what another is, wholly or not at all. Where there is nothing to copy there is nothing
/// afterwards.
std::error_code replace(const fs::path& from, const fs::path& to) {
  std::error_code error;
  if (!fs::exists(from, error)) {
    if (!error) fs::remove(to, error);
    return error;
  }
  const fs::path part = to.string() + ".part-" + std::to_string(getpid());
  fs::create_directories(to.parent_path(), error);
  if (!error) fs::copy_file(from, part, fs::copy_options::overwrite_existing, error);
  if (!error) fs::rename(part, to, error);
  return error;
}

std::error_code replace_all(const fs::path& from, const fs::path& to) {
  std::error_code first;
  for (const char* const path : paths) {
    const std::error_code error = replace(place_of(from, path), place_of(to, path));
    if (error && !first) first = error;
  }
  return first;
}

}  // namespace

bool has(const std::string& path) {
  return std::find(paths.begin(), paths.end(), path) != paths.end();
}

fs::path place_of(const fs::path& folder, const std::string& path) {
  return folder / fs::path(path).relative_path();
}

std::error_code begin(const fs::path& folder) { return replace_all(folder, copies_of(folder)); }

std::error_code synchronise(const fs::path& folder, const std::string& path) {
  return replace(place_of(folder, path), place_of(copies_of(folder), path));
}

std::error_code cut(const fs::path& folder) { return replace_all(copies_of(folder), folder); }

}  // namespace kelvo::sim::storage
