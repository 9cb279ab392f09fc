#include "sim/head/head_registers.h"

namespace kelvo::sim::camera {

const wire::ControllerRegister* RegisterFile::find(std::uint8_t number) const {
  const auto rows = registers_of(family_);
  const auto row = std::find_if(rows.begin(), rows.end(),
                                [&](const auto& candidate) { return candidate.number == number; });
  return row == rows.end() ? nullptr : &*row;
}

/// Of a register that there is.
std::size_t RegisterFile::index(std::uint8_t number) const {
  return static_cast<std::size_t>(find(number) - registers_of(family_).data());
}

}  // namespace kelvo::sim::camera
