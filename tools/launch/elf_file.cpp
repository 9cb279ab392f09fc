#include "tools/launch/elf_file.h"

#include <elf.h>
#include <link.h>

#include <array>
#include <cstring>
#include <fstream>

namespace kelvo::tools {
namespace {

using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);

struct MachineName {
  std::uint16_t machine;
  const char* name;
};

constexpr std::array machine_names{
    MachineName{EM_X86_64, "x86-64"},   MachineName{EM_AARCH64, "aarch64"},
    MachineName{EM_386, "i386"},        MachineName{EM_ARM, "arm"},
    MachineName{EM_RISCV, "riscv"},     MachineName{EM_MIPS, "mips"},
    MachineName{EM_PPC64, "powerpc64"}, MachineName{EM_S390, "s390"},
};

template <typename T>
bool read(std::ifstream& file, T& value) {
  return static_cast<bool>(file.read(reinterpret_cast<char*>(&value), sizeof value));
}

/// The fields up to the machine lie at the same places in every ELF file, in its own byte order.
Architecture architecture_of(const Header& header) {
  std::array<std::uint8_t, 2> machine{};
  std::memcpy(machine.data(), &header.e_machine, machine.size());
  const bool high_first = header.e_ident[EI_DATA] == ELFDATA2MSB;
  return {
      header.e_ident[EI_CLASS], header.e_ident[EI_DATA],
      static_cast<std::uint16_t>(machine[high_first ? 1 : 0] | machine[high_first ? 0 : 1] << 8U)};
}

bool find_interpreter(std::ifstream& file, const Header& header) {
  for (std::size_t i = 0; i < header.e_phnum; ++i) {
    Segment segment{};
    file.seekg(static_cast<std::streamoff>(header.e_phoff + i * header.e_phentsize));
    if (!read(file, segment)) return false;
    if (segment.p_type == PT_INTERP) return true;
  }
  return false;
}

std::optional<Header> read_header(std::ifstream& file) {
  Header header{};
  if (!read(file, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) return {};
  return header;
}

}  // namespace

std::string name_of(const Architecture& architecture) {
  for (const MachineName& row : machine_names) {
    if (row.machine != architecture.machine) continue;
    const bool half_width = architecture.width == ELFCLASS32 && row.machine == EM_X86_64;
    return half_width ? std::string(row.name) + " with 32-bit addresses" : row.name;
  }
  return "machine " + std::to_string(architecture.machine);
}

std::optional<ElfFile> read_elf_file(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::optional<Header> header = read_header(file);
  if (!header) return {};
  ElfFile elf{architecture_of(*header), false, false};
  if (elf.architecture == own_architecture()) {
    elf.shared = header->e_type == ET_DYN;
    elf.has_interpreter = find_interpreter(file, *header);
  }
  return elf;
}

Architecture own_architecture() {
  std::ifstream file("/proc/self/exe", std::ios::binary);
  const std::optional<Header> header = read_header(file);
  return header ? architecture_of(*header) : Architecture{};
}

}  // namespace kelvo::tools
