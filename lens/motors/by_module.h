#ifndef KELVO_LENS_MOTORS_BY_MODULE_H
#define KELVO_LENS_MOTORS_BY_MODULE_H

#include "lens/variant/variant.h"

namespace kelvo::lens {

/// What an operation is on each lens module; an empty row sends nothing.
template <typename Row>
struct ByModule {
  Row de015{};
  Row df033{};
  Row t5391{};
  Row other{};

  /// The fitted module's.
  const Row& fitted() const {
    switch (lens_module()) {
      case LensModule::de015: return de015;
      case LensModule::df033: return df033;
      case LensModule::t5391: return t5391;
    }
    return other;
  }
};

}  // namespace kelvo::lens

#endif
