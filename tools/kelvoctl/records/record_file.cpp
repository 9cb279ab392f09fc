#include "tools/kelvoctl/records/record_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "wire/paths.h"

namespace kelvo::ctl {
namespace {

/// Where a file is written before it takes its name.
std::string beside(const std::string& path) { return path + wire::record_part; }

Failure not_written(const std::string& path) {
  return {ExitCode::no_output, path + ": cannot be written: " + std::strerror(errno)};
}

/// A device or a pipe, which is written to and never replaced.
bool is_special(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

enum class Survive { no, power_cut };

/// With errno where it is false.
bool write_whole(const std::string& path, const std::string& bytes, Survive survive) {
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() &&
                       std::fflush(file) == 0 &&
                       (survive == Survive::no || fsync(fileno(file)) == 0);
  const int error = errno;
  const bool closed = std::fclose(file) == 0;
  if (!written) errno = error;
  return written && closed;
}

/// So that the new name survives as well.
void synchronise_folder(const std::string& path) {
  const std::string folder = path.substr(0, path.rfind('/'));
  const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  fsync(descriptor);
  close(descriptor);
}

}  // namespace

std::optional<std::string> stored_bytes(const std::string& path) {
  std::FILE* const file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) {
    if (errno == ENOENT) return {};
    throw Failure(ExitCode::wrong_arguments, path + ": " + std::strerror(errno));
  }
  std::array<char, 4096> part{};
  const std::size_t length = std::fread(part.data(), 1, part.size(), file);
  std::fclose(file);
  return std::string(part.data(), length);
}

std::optional<RecordValues> stored_record(const RecordKind& kind, const std::string& path) {
  const std::optional<std::string> bytes = stored_bytes(path);
  if (!bytes) return {};
  return parse_bytes(kind, *bytes, path);
}

bool would_replace(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

void replace_file(const std::string& path, const std::string& bytes) {
  if (is_special(path)) {
    if (!write_whole(path, bytes, Survive::no)) throw not_written(path);
    return;
  }
  const std::string part = beside(path);
  if (!write_whole(part, bytes, Survive::power_cut) ||
      std::rename(part.c_str(), path.c_str()) != 0) {
    const int reason = errno;
    std::remove(part.c_str());
    errno = reason;
    throw not_written(path);
  }
  synchronise_folder(path);
}

}  // namespace kelvo::ctl
