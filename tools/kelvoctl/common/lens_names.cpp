#include "tools/kelvoctl/common/lens_names.h"

#include <algorithm>

namespace kelvo::ctl {

std::string name_of(wire::LensModule module) {
  return std::string(std::ranges::find(lens_table, module, &LensName::module)->name);
}

std::optional<wire::LensModule> lens_of(std::string_view name) {
  const auto* const found = std::ranges::find(lens_table, name, &LensName::name);
  if (found == lens_table.end()) return {};
  return found->module;
}

std::string lens_names() {
  std::string names;
  for (const LensName& lens : lens_table) {
    names += (names.empty() ? "" : "|") + std::string(lens.name);
  }
  return names;
}

}  // namespace kelvo::ctl
