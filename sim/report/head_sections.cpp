// How the pan/tilt head stands now. Positions are those of the interface, counts the controllers' own.
#include <array>

#include "sim/report/report.h"
#include "sim/report/sections.h"

namespace kelvo::sim {
namespace {

using camera::Camera;
using camera::HeadAxis;
using camera::HeadController;
using camera::HeadFamily;
using camera::name_of;
namespace tasmere = wire::tasmere;
namespace vetra = wire::vetra;

constexpr std::array both_axes{HeadAxis::pan, HeadAxis::tilt};

const HeadController& controller_of(const Camera& camera, HeadAxis axis) {
  return axis == HeadAxis::pan ? camera.head().pan() : camera.head().tilt();
}

Value register_value(const Camera& camera, HeadAxis axis, std::uint8_t reg) {
  const auto value = camera.peek_head(axis, reg);
  return value ? Value(number(*value)) : Value();
}

/// A bit of the status on Vetra, a register on Tasmere.
Value calibrated(const Camera& camera, HeadAxis axis) {
  constexpr std::uint32_t state_bits = 3;
  constexpr std::uint32_t vetra_calibrated = 2;
  const bool is_vetra = camera.head().family() == HeadFamily::vetra;
  const auto value = camera.peek_head(axis, is_vetra ? vetra::status : tasmere::calibration);
  if (!value) return {};
  return is_vetra ? (*value & state_bits) == vetra_calibrated : *value == 1;
}

/// Only Tasmere controllers can tell.
Value temperature(const Camera& camera, HeadAxis axis) {
  if (camera.head().family() == HeadFamily::vetra) return {};
  return register_value(camera, axis, tasmere::temperature);
}

}  // namespace

Section head_section(const Camera& camera) {
  Section section{"head",
                  {{"axis", "head"},
                   {"family", "family"},
                   {"position", "position"},
                   {"count", "count"},
                   {"limits", "limits"},
                   {"state", "state"}}};
  const camera::Time now = camera.clock.now();
  for (const HeadAxis axis : both_axes) {
    const HeadController& controller = controller_of(camera, axis);
    section.rows.push_back({name_of(axis), name_of(camera.head().family()),
                            number(controller.common_position(now)),
                            number(controller.axis().position(now)),
                            controller.axis().bound() ? "on" : "off", state_of(controller, now)});
  }
  return section;
}

Section head_moves_section(const Camera& camera) {
  Section section{"head_axes",
                  {{"axis", "axis"},
                   {"target", "target count"},
                   {"speed", "counts a second"},
                   {"asleep", "asleep"},
                   {"calibrated", "calibrated"},
                   {"temperature", "temperature"}}};
  const camera::Time now = camera.clock.now();
  for (const HeadAxis axis : both_axes) {
    const HeadController& controller = controller_of(camera, axis);
    const auto goal = controller.axis().goal();
    const bool moves = controller.axis().moving(now);
    section.rows.push_back({name_of(axis), moves && goal ? Value(number(*goal)) : Value(),
                            moves ? controller.axis().speed(now) : 0.0, controller.asleep(),
                            calibrated(camera, axis), temperature(camera, axis)});
  }
  return section;
}

/// Those that hold something.
Section head_registers_section(const Camera& camera) {
  Section section{"head_registers",
                  {{"register", "register"},
                   {"name", "name"},
                   {"pan", "pan"},
                   {"tilt", "tilt"},
                   {"meaning", "meaning"}}};
  for (const wire::ControllerRegister& row : camera::registers_of(camera.head().family())) {
    const auto pan = camera.peek_head(HeadAxis::pan, row.number);
    const auto tilt = camera.peek_head(HeadAxis::tilt, row.number);
    if (row.width == 0 || pan.value_or(0) + tilt.value_or(0) == 0) continue;
    section.rows.push_back({number(row.number), row.name,
                            register_value(camera, HeadAxis::pan, row.number),
                            register_value(camera, HeadAxis::tilt, row.number), row.meaning});
  }
  return section;
}

std::vector<Section> all_sections(const Camera& camera) {
  std::vector<Section> sections;
  for (Section (*const make)(const Camera&) :
       {controller_section, motors_section, interrupters_section, devices_section,
        stabiliser_section, head_section, head_moves_section, head_registers_section, boots_section,
        frames_section, images_section, boot_motors_section, boot_devices_section}) {
    sections.push_back(make(camera));
  }
  return sections;
}

}  // namespace kelvo::sim
