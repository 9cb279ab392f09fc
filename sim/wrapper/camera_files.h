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
  /// `kept` empty: a private folder. Files that a camera shares with others have begun with it.
  explicit CameraFiles(std::filesystem::path kept, bool shared = false);

  /// The record that a file is written for, beside its place; every other file is its own.
  static std::string record_of(std::string path);
  /// Whether the camera has a file of this name.
  static bool claims(const std::string& path);

  /// Makes the folder with what belongs into it, the first time.
  std::error_code prepare();
  /// Where a file really lies, once the folder is prepared.
  std::filesystem::path real_path(const std::string& path) const;
  bool kept() const { return kept_; }
  const std::filesystem::path& folder() const { return folder_; }

  /// A file is synchronised, under the name that the camera has for it.
  void synchronise(const std::string& path);
  /// The power is cut: each file is what was last synchronised.
  void cut();

  /// Takes a private folder away that this process has made.
  void remove();

 private:
  std::error_code make_private_folder();
  std::error_code fill() const;

  std::mutex mutex_;
  bool kept_;
  bool shared_;
  bool prepared_ = false;
  pid_t maker_ = 0;  // of a private folder
  std::filesystem::path folder_;
};

}  // namespace kelvo::sim

#endif
