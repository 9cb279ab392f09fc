// The private folder of a shared camera's calibration files.
#ifndef KELVO_SIM_STATE_FOLDER_H
#define KELVO_SIM_STATE_FOLDER_H

#include <functional>
#include <string>
#include <string_view>

namespace kelvo::sim::state {

/// Where it lies: below $XDG_RUNTIME_DIR, or else /tmp.
std::string private_folder_of(std::string_view name);

/// Makes it anew, for its user alone; what is wrong, or nothing. What an earlier camera of the name
/// left there goes. While `taken` says that another camera has what identifies the folder, a new one is
/// made in its place.
std::string make_private_folder(const std::string& folder,
                                const std::function<bool(const std::string& folder)>& taken);

/// Removes it, if it is the user's own.
void remove_private_folder(const std::string& folder);

}  // namespace kelvo::sim::state

#endif
