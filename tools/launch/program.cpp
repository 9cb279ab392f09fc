#include "tools/launch/program.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <optional>
#include <sstream>

#include "tools/common/failure.h"
#include "tools/launch/elf_file.h"

namespace kelvo::tools {
namespace {

namespace fs = std::filesystem;

constexpr int most_interpreters = 5;  // one script behind the other, as in the kernel

/// 0, or the error number that keeps a file from being executed.
int obstacle(const fs::path& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return errno;
  if (S_ISDIR(status.st_mode)) return EISDIR;
  return access(path.c_str(), X_OK) == 0 ? 0 : errno;
}

Failure refusal(const fs::path& path, int error) {
  if (error == ENOENT || error == ENOTDIR) {
    return {ExitCode::no_program, path.string() + ": there is no such program: check its name"};
  }
  return {ExitCode::not_executable,
          path.string() + ": " + std::strerror(error) + ": name a file that you may execute"};
}

fs::path search(const std::string& name) {
  const char* const value = std::getenv("PATH");
  std::istringstream folders(value != nullptr ? value : "/bin:/usr/bin");
  std::optional<fs::path> forbidden;
  for (std::string folder; std::getline(folders, folder, ':');) {
    fs::path candidate = fs::path(folder.empty() ? "." : folder) / name;
    const int error = obstacle(candidate);
    if (error == 0) return candidate;
    if (error == EACCES && !forbidden) forbidden = candidate;
  }
  if (forbidden) throw refusal(*forbidden, EACCES);
  throw Failure(ExitCode::no_program,
                name + ": there is no such program in PATH: name it with its folder");
}

/// The interpreter that a script names in its first line.
std::optional<std::string> interpreter_of(const fs::path& script) {
  std::ifstream file(script);
  std::string line;
  if (!std::getline(file, line) || !line.starts_with("#!")) return {};
  const std::size_t begin = line.find_first_not_of(" \t", 2);
  if (begin == std::string::npos) return "";
  return line.substr(begin, line.find_first_of(" \t\r", begin) - begin);
}

/// The binary that the kernel loads in the end.
fs::path binary_of(const fs::path& program) {
  fs::path binary = program;
  for (int i = 0; i < most_interpreters; ++i) {
    const std::optional<std::string> interpreter = interpreter_of(binary);
    if (!interpreter) return binary;
    if (const int error = obstacle(*interpreter)) {
      throw Failure(ExitCode::not_executable, binary.string() + ": its interpreter \"" +
                                                  *interpreter + "\" cannot be executed (" +
                                                  std::strerror(error) +
                                                  "): correct its first line");
    }
    binary = *interpreter;
  }
  throw Failure(
      ExitCode::not_executable,
      program.string() + ": too many scripts interpret each other: name the program itself");
}

bool changes_user(const fs::path& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && (status.st_mode & (S_ISUID | S_ISGID)) != 0;
}

bool has_capabilities(const fs::path& path) {
  return getxattr(path.c_str(), "security.capability", nullptr, 0) > 0;
}

}  // namespace

fs::path find_program(const std::string& name) {
  if (name.find('/') == std::string::npos) return search(name);
  if (const int error = obstacle(name)) throw refusal(name, error);
  return name;
}

void check_reach(const fs::path& program) {
  const fs::path binary = binary_of(program);
  const std::string name = binary.string();
  const std::optional<ElfFile> elf = read_elf_file(binary);
  if (!elf) {
    throw Failure(ExitCode::not_executable,
                  name + ": is no program or script that can be read: begin a script with #!");
  }
  if (elf->architecture != own_architecture()) {
    throw Failure(ExitCode::out_of_reach, name + ": is a program for " +
                                              name_of(elf->architecture) +
                                              ", the simulated camera is for " +
                                              name_of(own_architecture()) + ": build it for that");
  }
  if (!elf->has_interpreter) {
    throw Failure(
        ExitCode::out_of_reach,
        name + ": is linked statically, and takes no preload library: link it dynamically");
  }
  if (changes_user(binary)) {
    throw Failure(
        ExitCode::out_of_reach,
        name +
            ": changes its user or group when it starts (set-user-id or set-group-id), and "
            "takes no preload library: run a copy without that");
  }
  if (has_capabilities(binary)) {
    throw Failure(ExitCode::out_of_reach,
                  name +
                      ": has capabilities of its own, and takes no preload library: run a copy "
                      "without them");
  }
}

}  // namespace kelvo::tools
