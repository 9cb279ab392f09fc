#ifndef KELVO_TOOLS_KELVOCTL_COMMON_BY_MODULE_H
#define KELVO_TOOLS_KELVOCTL_COMMON_BY_MODULE_H

#include "wire/lens_module.h"

namespace kelvo::ctl {

using wire::LensModule;

/// What something is on each lens module.
template <typename Value>
struct ByModule {
  Value de015{};
  Value df033{};
  Value t5391{};

  constexpr const Value& on(LensModule module) const {
    switch (module) {
      case LensModule::de015: return de015;
      case LensModule::df033: return df033;
      case LensModule::t5391: break;
    }
    return t5391;
  }
};

using Fitted = ByModule<bool>;
inline constexpr Fitted everywhere{true, true, true};

}  // namespace kelvo::ctl

#endif
