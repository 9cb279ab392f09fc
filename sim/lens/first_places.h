// Where the parts of a lens stand when it is put on.
#ifndef KELVO_SIM_LENS_FIRST_PLACES_H
#define KELVO_SIM_LENS_FIRST_PLACES_H

#include "sim/common/variety.h"
#include "sim/lens/filter_coil.h"
#include "sim/lens/stepper.h"
#include "sim/lens/wiring.h"

namespace kelvo::sim::camera {

/// The motor that a module has at an output: in the middle of its travel, or anywhere in it.
inline void fit_motor(Stepper& motor, LensModule module, Output output, const Variety& variety) {
  const std::int32_t travel = end_stop(module, output);
  const std::int64_t place = variety.around(Subject::motor, index(output), travel);
  motor.fit(travel, static_cast<std::int32_t>(place));
}

/// An IR-cut filter with a coil: off, or either.
inline FilterPlace first_filter_place(const Variety& variety) {
  return variety.around(Subject::filter, 0, 1) > 0 ? FilterPlace::on : FilterPlace::off;
}

}  // namespace kelvo::sim::camera

#endif
