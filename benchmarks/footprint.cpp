// What the library takes of a disk and of a process's memory.
#include <dlfcn.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "kelvo.h"

namespace {

constexpr std::size_t data_size =
    sizeof CORVO_PROGRAM_DATA_DE015 + sizeof CORVO_PROGRAM3_DATA_DE015 +
    sizeof CORVO_PROGRAM2_DATA_DE015 + sizeof CORVO_PROGRAM_DATA_DF033 +
    sizeof CORVO_PROGRAM3_DATA_DF033 + sizeof CORVO_PROGRAM2_DATA_DF033 +
    sizeof CORVO_PROGRAM_DATA_T5391 + sizeof CORVO_PROGRAM3_DATA_T5391 +
    sizeof CORVO_PROGRAM2_DATA_T5391 + 5 * sizeof PPS_2_2Phase + sizeof SpeedTable;

/// KiB of the pages of this file that no other process shares; -1 when they cannot be told.
long private_dirty(const std::string& file) {
  std::ifstream maps("/proc/self/smaps");
  long kibibytes = -1;
  bool ours = false;
  for (std::string line; std::getline(maps, line);) {
    if (line.find(" kB") == std::string::npos && line.find('-') < line.find(' ')) {
      ours = line.ends_with(file);
      if (ours && kibibytes < 0) kibibytes = 0;
    }
    if (ours && line.starts_with("Private_Dirty:")) kibibytes += std::stol(line.substr(14));
  }
  return kibibytes;
}

}  // namespace

int main() {
  Dl_info library{};
  if (dladdr(reinterpret_cast<const void*>(&Init30516), &library) == 0) {
    std::fputs("kelvo_footprint: the library cannot be found in this process\n", stderr);
    return 1;
  }
  const std::string path = std::filesystem::canonical(library.dli_fname).string();
  const auto size = static_cast<double>(std::filesystem::file_size(path));
  std::printf("%-40s %12.0f bytes\n", "library file", size);
  std::printf("%-40s %12zu bytes\n", "images and tables in it", data_size);
  std::printf("%-40s %12.0f bytes\n", "file over its data", size - static_cast<double>(data_size));
  std::printf("%-40s %12ld KiB\n", "private dirty memory after load", private_dirty(path));
  return 0;
}
