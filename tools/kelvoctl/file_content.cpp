#include "tools/kelvoctl/file_content.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tools/kelvoctl/exit_code.h"

namespace kelvo::ctl {

std::string content_of(const std::string& path) {
  std::FILE* const file = path == "-" ? stdin : std::fopen(path.c_str(), "re");
  if (file == nullptr) {
    throw Failure(ExitCode::wrong_arguments, path + ": " + std::strerror(errno));
  }
  std::string content;
  std::array<char, 4096> part{};
  std::size_t length = 0;
  while ((length = std::fread(part.data(), 1, part.size(), file)) > 0) {
    content.append(part.data(), length);
  }
  const bool failed = std::ferror(file) != 0;
  const int error = errno;
  if (file != stdin) std::fclose(file);
  if (failed) throw Failure(ExitCode::wrong_arguments, path + ": " + std::strerror(error));
  return content;
}

}  // namespace kelvo::ctl
