#ifndef KELVO_WIRE_LENS_MODULE_H
#define KELVO_WIRE_LENS_MODULE_H

#include <cstdint>

namespace kelvo::wire {

/// The lens modules, by the code that tells which one is fitted.
enum class LensModule : std::int32_t { de015 = 7, df033 = 8, t5391 = 9 };

}  // namespace kelvo::wire

#endif
