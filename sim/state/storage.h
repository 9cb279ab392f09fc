// What a camera's files hold when its power is cut: of each what was last synchronised, and nothing of one
// that never was. What was synchronised is kept as a copy in a hidden folder beside them.
#ifndef KELVO_SIM_STATE_STORAGE_H
#define KELVO_SIM_STATE_STORAGE_H

#include <filesystem>
#include <string>
#include <system_error>

namespace kelvo::sim::storage {

/// Whether the camera has a file of this name.
bool has(const std::string& path);

/// Where a file really lies below the camera's folder.
std::filesystem::path place_of(const std::filesystem::path& folder, const std::string& path);

/// A camera begins with the files that lie in its folder: they count as synchronised.
std::error_code begin(const std::filesystem::path& folder);

/// A file is synchronised, under the name that the camera has for it.
std::error_code synchronise(const std::filesystem::path& folder, const std::string& path);

/// The power is cut. Who has a file open keeps what is no longer there.
std::error_code cut(const std::filesystem::path& folder);

}  // namespace kelvo::sim::storage

#endif
