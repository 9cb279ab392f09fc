#ifndef KELVO_TOOLS_LAUNCH_ELF_FILE_H
#define KELVO_TOOLS_LAUNCH_ELF_FILE_H

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace kelvo::tools {

/// What programs and libraries must share to run in one process.
struct Architecture {
  std::uint8_t width = 0;  // EI_CLASS
  std::uint8_t order = 0;  // EI_DATA
  std::uint16_t machine = 0;

  bool operator==(const Architecture&) const = default;
};

std::string name_of(const Architecture& architecture);

/// The header of an ELF file. What lies behind it is told for this tool's own architecture alone.
struct ElfFile {
  Architecture architecture;
  bool shared = false;           // of the type of shared objects and position-independent programs
  bool has_interpreter = false;  // a program that is linked dynamically
};

/// Nothing for a file that cannot be read or is none.
std::optional<ElfFile> read_elf_file(const std::filesystem::path& path);

/// That of this very program.
Architecture own_architecture();

}  // namespace kelvo::tools

#endif
