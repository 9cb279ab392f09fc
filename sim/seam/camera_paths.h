// Which paths are the camera's, however a program spells them.
#ifndef KELVO_SIM_SEAM_CAMERA_PATHS_H
#define KELVO_SIM_SEAM_CAMERA_PATHS_H

#include <functional>

#include "sim/seam/host.h"

namespace kelvo::sim {

/// The camera's own spelling of the path of a device, a calibration file or a file of its reset line; null
/// for any other path.
/// `folder` is what a relative path begins at, as openat() takes it.
const char* camera_path(int folder, const char* path);

/// By the camera's own spelling; `none` for a file.
Device device_at(const char* path);
/// The camera's own spelling; null for `none`.
const char* path_of(Device device);
/// By the camera's own spellings.
void for_each_camera_path(const std::function<void(const char* path)>& act);

}  // namespace kelvo::sim

#endif
