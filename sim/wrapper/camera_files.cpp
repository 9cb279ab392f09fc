#include "sim/wrapper/camera_files.h"

#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>
#include <utility>

#include "sim/seam/installed.h"
#include "sim/seam/real.h"
#include "sim/state/storage.h"
#include "wire/paths.h"

namespace kelvo::sim {
namespace {

namespace fs = std::filesystem;

constexpr std::span<const char* const> record_copies[] = {wire::iris_record_copies,
                                                          wire::stabiliser_record_copies};

/// A plausible iris record: polarity, Hall offset, Hall gain, travel minimum and maximum, sine value.
/// Each is a 32-bit field, low byte first.
constexpr std::array<std::uint8_t, 24> default_iris_record{
    0x01, 0x00, 0, 0, 0x40, 0x08, 0, 0, 0x20, 0x04, 0, 0,
    0x80, 0x01, 0, 0, 0x90, 0x0E, 0, 0, 0x12, 0x02, 0, 0,
};

std::error_code last_error() { return {errno, std::generic_category()}; }

}  // namespace

CameraFiles::CameraFiles(fs::path kept, bool shared)
    : kept_(!kept.empty()),
      shared_(shared),
      folder_(kept_ ? fs::absolute(kept) : std::move(kept)) {}

std::string CameraFiles::record_of(std::string path) {
  if (path.ends_with(wire::record_part)) path.resize(path.size() - std::strlen(wire::record_part));
  return path;
}

bool CameraFiles::claims(const std::string& path) { return storage::has(record_of(path)); }

fs::path CameraFiles::real_path(const std::string& path) const {
  return storage::place_of(folder_, path);
}

std::error_code CameraFiles::prepare() {
  const std::scoped_lock guard(mutex_);
  const OwnFiles own;
  if (prepared_) return {};
  std::error_code error;
  if (!kept_) error = make_private_folder();
  if (!error) error = fill();
  if (!error && !shared_) error = storage::begin(folder_);
  prepared_ = !error;
  return error;
}

std::error_code CameraFiles::make_private_folder() {
  std::error_code error;
  const fs::path parent = fs::temp_directory_path(error);
  if (error) return error;
  std::string pattern = (parent / "kelvo-camera-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) return last_error();
  folder_ = pattern;
  maker_ = getpid();
  return {};
}

std::error_code CameraFiles::fill() const {
  std::error_code error;
  for (const auto copies : record_copies) {
    for (const char* const path : copies) {
      fs::create_directories(real_path(path).parent_path(), error);
      if (error) return error;
    }
  }
  const fs::path default_record = real_path(wire::iris_default_record);
  if (fs::exists(default_record, error)) return {};
  // Not through the seam: a folder of "/" would claim the file for the camera.
  FILE* const stream = real().fopen(default_record.c_str(), "wb");
  if (stream == nullptr) return last_error();
  const std::size_t written =
      std::fwrite(default_iris_record.data(), 1, default_iris_record.size(), stream);
  const bool closed = real().fclose(stream) == 0;
  if (written != default_iris_record.size() || !closed) return last_error();
  return storage::synchronise(folder_, wire::iris_default_record);
}

void CameraFiles::synchronise(const std::string& path) {
  const std::scoped_lock guard(mutex_);
  const OwnFiles own;
  if (prepared_ && storage::has(path)) storage::synchronise(folder_, path);
}

void CameraFiles::cut() {
  const std::scoped_lock guard(mutex_);
  const OwnFiles own;
  if (prepared_) storage::cut(folder_);
}

void CameraFiles::remove() {
  const std::scoped_lock guard(mutex_);
  const OwnFiles own;
  std::error_code ignored;
  if (maker_ != getpid()) return;
  fs::remove_all(folder_, ignored);
  prepared_ = false;
  maker_ = 0;
}

}  // namespace kelvo::sim
