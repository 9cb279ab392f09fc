#ifndef KELVO_SIM_LENS_FILTER_COIL_H
#define KELVO_SIM_LENS_FILTER_COIL_H

#include <cstdint>

#include "sim/common/clock.h"

namespace kelvo::sim::camera {

/// Where an IR-cut filter is: out of the light, in it, or neither.
enum class FilterPlace : std::uint8_t { off, on, between };

const char* name_of(FilterPlace place);

/// An IR-cut filter that a coil throws over: it has moved when the coil was driven long enough, and stays
/// where it is when the coil is released.
class FilterCoil {
 public:
  static constexpr Time throw_time = std::chrono::milliseconds(100);

  /// Another filter takes this one's place.
  void fit(FilterPlace place);
  /// Whether the filter is where the coil's current comes out; if not, it stays as it is.
  void connect(Time now, bool connected);

  void drive(Time now, FilterPlace towards);
  void release(Time now);

  FilterPlace place(Time now) const;

 private:
  bool connected_ = true;
  bool driven_ = false;
  FilterPlace towards_ = FilterPlace::off;
  Time since_{};
  FilterPlace place_ = FilterPlace::off;
};

}  // namespace kelvo::sim::camera

#endif
