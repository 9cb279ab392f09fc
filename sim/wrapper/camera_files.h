#ifndef KELVO_SIM_WRAPPER_CAMERA_FILES_H
#define KELVO_SIM_WRAPPER_CAMERA_FILES_H

#include <sys/types.h>

#include <filesystem>
#include <mutex>
#include <string>
#include <system_error>

namespace kelvo::sim {

/// The camera's calibration files: real files under the same paths below a folder. A folder that was
/// named is kept and made if it is missing; else there is a private one, made when it is first needed.
class CameraFiles {
 public:
  /// `kept` empty: a private folder.
  explicit CameraFiles(std::filesystem::path kept);

  /// Whether the camera has a file of this name.
  static bool claims(const std::string& path);

  /// Makes the folder with what belongs into it, the first time.
  std::error_code prepare();
  /// Where a file really lies, once the folder is prepared.
  std::filesystem::path real_path(const std::string& path) const;
  bool kept() const { return kept_; }
  const std::filesystem::path& folder() const { return folder_; }

  /// Takes a private folder away that this process has made.
  void remove();

 private:
  std::error_code make_private_folder();
  std::error_code fill() const;

  std::mutex mutex_;
  bool kept_;
  bool prepared_ = false;
  pid_t maker_ = 0;  // of a private folder
  std::filesystem::path folder_;
};

}  // namespace kelvo::sim

#endif
