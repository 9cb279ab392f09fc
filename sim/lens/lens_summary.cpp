#include "sim/lens/lens_summary.h"

#include "sim/lens/lens_program.h"

namespace kelvo::sim::camera {
namespace {

/// DE015's filter has a stepping motor, which stands in the middle of its travel at first.
FilterPlace filter_by_motor(std::int32_t position) {
  if (position == 0) return FilterPlace::between;
  return position > 0 ? FilterPlace::on : FilterPlace::off;
}

FilterPlace filter_of(const LensProgram& program, const Pt5111& pt5111, Time now) {
  switch (program.module()) {
    case LensModule::de015: return filter_by_motor(pt5111.motor_a().position(now));
    case LensModule::df033: return pt5111.filter().place(now);
    case LensModule::t5391: return program.motor_block().filter().place(now);
  }
  return FilterPlace::between;
}

}  // namespace

LensSummary summarise(const LensProgram& program, const Pt5111& pt5111, Time now) {
  const MotorStates motors = program.motors(now, pt5111);
  LensSummary summary;
  summary.positions = motors.position;
  for (const Wire& wire : wiring) {
    summary.counts[index(wire.output)] = program.counters().count(wire.output, motors);
  }
  summary.filter = filter_of(program, pt5111, now);
  summary.stabiliser_on = program.stabiliser_on();
  summary.iris_target = low_word(program.value(wire::command::dc_iris));
  summary.iris = program.iris(now);
  summary.warmth = program.warmth(now);
  summary.heater = static_cast<std::uint8_t>(program.value(wire::command::heater));
  return summary;
}

}  // namespace kelvo::sim::camera
