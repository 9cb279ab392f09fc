#ifndef KELVO_SIM_COMMON_EXCHANGE_H
#define KELVO_SIM_COMMON_EXCHANGE_H

#include <array>
#include <cstdint>
#include <span>

#include "sim/common/clock.h"
#include "sim/common/violations.h"
#include "wire/lens_program.h"

namespace kelvo::sim::camera {

/// One full-duplex transfer as a model sees it: when, what came, what goes back, where to complain.
/// The reply lies in the first received bytes; every other received byte is 0.
struct Exchange {
  Time now;
  Unit unit;
  std::span<const std::uint8_t> sent;
  Violations& violations;
  std::array<std::uint8_t, wire::query_frame_length> reply{};

  /// The reason is a printf format.
  [[gnu::format(printf, 2, 3)]] void violation(const char* reason, ...);
};

}  // namespace kelvo::sim::camera

#endif
