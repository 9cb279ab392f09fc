#include "tools/launch/preload_library.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <system_error>

#include "tools/common/failure.h"
#include "tools/launch/elf_file.h"

namespace kelvo::tools {
namespace {

namespace fs = std::filesystem;

// Seen from the tool's folder: as it is installed, and as it is built.
constexpr std::array places{"../lib/kelvo/libkelvo-sim.so", "../sim/libkelvo-sim.so"};

Failure failure(const std::string& line) { return {ExitCode::no_library, line}; }

fs::path beside_the_tool() {
  std::error_code error;
  const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
  for (const char* const place : places) {
    fs::path candidate = (folder / place).lexically_normal();
    if (fs::exists(candidate, error)) return candidate;
  }
  throw failure((folder / places[0]).lexically_normal().string() +
                ": there is no preload library: install it there, or name it in " +
                library_variable);
}

fs::path named_or_own() {
  const char* const named = std::getenv(library_variable);
  if (named == nullptr || *named == '\0') return beside_the_tool();
  std::error_code error;
  if (!fs::exists(named, error)) {
    throw failure(std::string(named) + ": there is no such preload library: correct " +
                  library_variable);
  }
  return fs::absolute(named);
}

/// Every build of the library bears its own name.
bool is_preload_library(const std::string& path) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(path, error);
  if (error) return false;
  std::string content(size, '\0');
  std::ifstream file(path, std::ios::binary);
  file.read(content.data(), static_cast<std::streamsize>(size));
  return content.find("libkelvo-sim.so") != std::string::npos;
}

}  // namespace

std::string find_preload_library() {
  std::string path = named_or_own().string();
  const std::optional<ElfFile> elf = read_elf_file(path);
  if (!elf || (elf->architecture == own_architecture() && !elf->shared)) {
    throw failure(path + ": is no shared library that can be read: build or install it anew");
  }
  if (elf->architecture != own_architecture()) {
    throw failure(path + ": is a library for " + name_of(elf->architecture) +
                  ", this machine's are for " + name_of(own_architecture()) +
                  ": name another one in " + library_variable);
  }
  if (!is_preload_library(path)) {
    throw failure(path + ": is another library than libkelvo-sim.so: correct " + library_variable);
  }
  // They separate the names in LD_PRELOAD, and the loader knows no way to quote them.
  if (path.find_first_of(": \t") != std::string::npos) {
    throw failure(path +
                  ": the loader takes no path with blanks or colons: put the library elsewhere "
                  "and name it in " +
                  library_variable);
  }
  return path;
}

}  // namespace kelvo::tools
