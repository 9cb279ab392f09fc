#ifndef KELVO_TOOLS_KELVOCTL_COMMON_LENS_NAMES_H
#define KELVO_TOOLS_KELVOCTL_COMMON_LENS_NAMES_H

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "wire/lens_module.h"

namespace kelvo::ctl {

/// Names the fitted lens module where --lens does not.
inline constexpr char lens_variable[] = "KELVO_LENS";

/// A lens module as it is typed and as it is shown.
struct LensName {
  wire::LensModule module;
  std::string_view name;
};

inline constexpr std::array lens_table{LensName{wire::LensModule::de015, "de015"},
                                       LensName{wire::LensModule::df033, "df033"},
                                       LensName{wire::LensModule::t5391, "t5391"}};

std::string name_of(wire::LensModule module);
std::optional<wire::LensModule> lens_of(std::string_view name);
/// All of them, with | between.
std::string lens_names();

/// The family of the head's controllers, by the library's number: 1 vetra, 2 tasmere.
inline const char* head_name(int family) { return family == 1 ? "vetra" : "tasmere"; }

}  // namespace kelvo::ctl

#endif
