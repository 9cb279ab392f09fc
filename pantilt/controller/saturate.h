#ifndef KELVO_PANTILT_CONTROLLER_SATURATE_H
#define KELVO_PANTILT_CONTROLLER_SATURATE_H

#include <algorithm>
#include <limits>

namespace kelvo::pantilt {

/// The integer towards zero; what the type cannot hold becomes its nearest value, on every machine alike.
/// Integers have at most 32 bits, so that a double holds each of them. Never called with a NaN.
template <typename Integer>
constexpr Integer saturate(double value) {
  using Limits = std::numeric_limits<Integer>;
  static_assert(Limits::digits <= 32);
  return static_cast<Integer>(std::clamp(value, double{Limits::min()}, double{Limits::max()}));
}

}  // namespace kelvo::pantilt

#endif
