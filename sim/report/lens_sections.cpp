// How the lens side stands now.
#include <array>

#include "sim/lens/sensors.h"
#include "sim/lens/wiring.h"
#include "sim/report/sections.h"
#include "wire/lens_program.h"

namespace kelvo::sim {
namespace {

using camera::Camera;
using camera::LensController;
using camera::LensModule;
using camera::LensProgram;
using camera::name_of;
using camera::Wire;

const char* state_of(const Camera& camera) {
  if (!camera.powered()) return "without power";
  switch (camera.lens().state()) {
    case LensController::State::reset: return "held in reset";
    case LensController::State::boot_loader: return "in its boot loader";
    case LensController::State::running: return "runs a program";
    case LensController::State::dead: return "dead: started without a program";
  }
  return "";
}

Value module_name(std::optional<LensModule> module) {
  return module ? Value(name_of(*module)) : Value();
}

/// The program, while one runs.
const LensProgram* running(const Camera& camera) {
  return camera.lens().module() ? &camera.lens().program() : nullptr;
}

constexpr std::array output_names{"zoom-1 block", "zoom-3 block", "focus channel",
                                  "zoom channel", "PT5111 A",     "PT5111 B"};
static_assert(output_names.size() == camera::outputs);

const char* filter_drive(LensModule module) {
  switch (module) {
    case LensModule::de015: return "motor at PT5111 A";
    case LensModule::df033: return "pulse of the PT5111";
    case LensModule::t5391: return "coil of the motor block";
  }
  return "";
}

const char* calibration_text(std::uint32_t state) {
  if (state == wire::calibration_idle) return "not under way";
  return state == wire::calibration_finished ? "finished" : "under way";
}

}  // namespace

Section controller_section(const Camera& camera) {
  Section section{"controller",
                  {{"state", "lens controller"},
                   {"module", "program"},
                   {"version", "version", Format::hex4},
                   {"lens", "lens that stays"},
                   {"reset_line", "reset line"},
                   {"powered", "camera powered"}}};
  const LensProgram* const program = running(camera);
  section.rows.push_back({state_of(camera), module_name(camera.lens().module()),
                          program != nullptr ? Value(number(program->version())) : Value(),
                          module_name(camera.lens().lens()),
                          camera.reset_line().high() ? "high" : "low", camera.powered()});
  return section;
}

/// The motors of the lens, whether or not a program drives them.
Section motors_section(const Camera& camera) {
  Section section{"motors",
                  {{"motor", "motor"},
                   {"output", "at"},
                   {"position", "position", Format::position},
                   {"target", "target", Format::position},
                   {"running", "running"},
                   {"rate", "counts a second"},
                   {"powered", "powered"},
                   {"counter", "counter"},
                   {"in", "in"}}};
  const camera::Time now = camera.clock.now();
  const LensProgram& program = camera.lens().program();
  const camera::MotorStates states = program.motors(now, camera.pt5111());
  const LensProgram* const driven = running(camera);
  for (const Wire& wire : camera::wiring) {
    if (camera.lens().motors_of() != wire.module) continue;
    const camera::Stepper& motor = program.motor(wire.output, camera.pt5111());
    const bool counted = wire.counted && driven != nullptr && program.module() == wire.module;
    section.rows.push_back(
        {wire.motor, output_names[index(wire.output)], number(motor.position(now)),
         number(motor.target(now)), motor.running(now), motor.rate(now),
         driven != nullptr && program.energised(wire.output, camera.pt5111()),
         counted ? Value(number(program.counters().count(wire.output, states))) : Value(),
         wire.count});
  }
  return section;
}

Section interrupters_section(const Camera& camera) {
  Section section{"interrupters",
                  {{"sensor", "photo-interrupter"},
                   {"motor", "of"},
                   {"edge", "edge", Format::position},
                   {"supplied", "supplied"},
                   {"interrupted", "interrupted"},
                   {"calibrated", "calibrated"},
                   {"offset", "offset"}}};
  const LensProgram* const program = running(camera);
  for (int sensor = 0; program != nullptr && sensor < number(camera::Sensors::most); ++sensor) {
    const Wire* const wire = camera::find_sensor(program->module(), sensor);
    const auto seen = program->interrupter(sensor, camera.clock.now(), camera.pt5111());
    if (wire == nullptr || !seen) continue;
    section.rows.push_back({number(sensor), wire->motor, number(wire->edge), seen->supplied,
                            seen->interrupted, seen->calibrated, number(seen->offset)});
  }
  return section;
}

/// Filter, iris, heater, converter: all that is neither a motor nor the stabiliser's.
Section devices_section(const Camera& camera) {
  Section section{"devices", {{"device", "device"}, {"kind", "kind"}, {"state", "state"}}};
  const LensProgram* const program = running(camera);
  if (program == nullptr) return section;
  const camera::LensSummary lens = camera.lens_summary();
  section.rows.push_back({"IR-cut filter", filter_drive(program->module()), name_of(lens.filter)});
  if (program->module() == LensModule::de015) {
    section.rows.push_back(
        {"P-iris", "motor at PT5111 B", number(lens.positions[index(camera::Output::pt5111_b)])});
  }
  if (program->module() != LensModule::de015) {
    section.rows.push_back({"DC iris", "place, by its Hall sensor", number(lens.iris)});
  }
  section.rows.push_back({"DC iris", "target", number(lens.iris_target)});
  if (const auto state = camera.peek_query(wire::query::calibration_state, 0)) {
    section.rows.push_back({program->module() == LensModule::de015 ? "stabiliser" : "DC iris",
                            "calibration run", calibration_text(*state)});
  }
  section.rows.push_back({"heater", "level", number(lens.heater)});
  section.rows.push_back({"heater", "warmth at the converter", number(lens.warmth)});
  for (std::uint8_t i = 0; i < camera::Sensors::converter_channels; ++i) {
    section.rows.push_back({"converter", "channel " + std::to_string(i),
                            number(program->converter(i, camera.clock.now(), camera.pt5111()))});
  }
  return section;
}

/// What its program can be asked for, by name: settings that are read back, and what is measured.
Section stabiliser_section(const Camera& camera) {
  Section section{"stabiliser",
                  {{"setting", "stabiliser and calibration"},
                   {"value", "value"},
                   {"query", "query", Format::hex2},
                   {"meaning", "meaning"}}};
  const LensProgram* const program = running(camera);
  if (program == nullptr) return section;
  section.rows.push_back(
      {"on", program->stabiliser_on() ? "yes" : "no", Value(), "stabilises now"});
  for (const wire::LensCode& row : wire::query::table) {
    if (!knows(row.programs, program->module())) continue;
    const bool measured = row.code >= wire::query::hall_xy;
    if (!measured && !camera::read_back(row.code, program->values())) continue;
    if (const auto value = camera.peek_query(row.code, 0)) {
      section.rows.push_back({row.name, number(*value), number(row.code), row.meaning});
    }
  }
  return section;
}

}  // namespace kelvo::sim
