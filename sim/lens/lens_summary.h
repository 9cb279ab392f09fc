#ifndef KELVO_SIM_LENS_LENS_SUMMARY_H
#define KELVO_SIM_LENS_LENS_SUMMARY_H

#include <cstdint>

#include "sim/lens/filter_coil.h"
#include "sim/lens/wiring.h"

namespace kelvo::sim::camera {

class LensProgram;
class Pt5111;

/// How the lens side stands at one moment, for the report.
struct LensSummary {
  Positions positions{};  // of the motors
  Positions counts{};     // of their counters
  FilterPlace filter = FilterPlace::off;
  bool stabiliser_on = false;
  std::uint16_t iris_target = 0;
  std::uint16_t iris = 0;    // where a DC iris is, as its Hall sensor sees it
  std::uint16_t warmth = 0;  // of the heater, in counts of the converter
  std::uint8_t heater = 0;
};

LensSummary summarise(const LensProgram& program, const Pt5111& pt5111, Time now);

}  // namespace kelvo::sim::camera

#endif
