#ifndef KELVO_LENS_VARIANT_VARIANT_H
#define KELVO_LENS_VARIANT_VARIANT_H

#include "kelvo/bus.h"
#include "wire/lens_module.h"

namespace kelvo::lens {

using wire::LensModule;

/// The fitted module; a code outside 7 to 9 is none of the enumerators.
inline LensModule lens_module() { return static_cast<LensModule>(gi30516Ver); }

/// Sets the module and makes the link usable: every operation from here on serves this module.
void select_lens_module(LensModule module);

}  // namespace kelvo::lens

#endif
