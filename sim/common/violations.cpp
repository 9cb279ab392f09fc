#include "sim/common/violations.h"

#include <algorithm>
#include <cstdio>

namespace kelvo::sim::camera {

const char* name_of(Unit unit) {
  switch (unit) {
    case Unit::lens_controller: return "lens controller";
    case Unit::pt5111: return "PT5111";
    case Unit::reset_line: return "reset line";
    case Unit::i2c_bus: return "I2C bus";
    case Unit::pan_controller: return "pan controller";
    case Unit::tilt_controller: return "tilt controller";
    case Unit::bus_lock: return "bus lock";
  }
  return "";
}

void Violations::record(Time time, Unit unit, std::span<const std::uint8_t> frame,
                        const char* reason, ...) {
  std::va_list arguments;
  va_start(arguments, reason);
  record_list(time, unit, frame, reason, arguments);
  va_end(arguments);
}

void Violations::record_list(Time time, Unit unit, std::span<const std::uint8_t> frame,
                             const char* reason, std::va_list arguments) {
  Violation& violation = last_;
  const std::size_t shown = std::min(frame.size(), Violation::most_frame_bytes);
  violation.time = time;
  violation.unit = unit;
  violation.shown = static_cast<std::uint8_t>(shown);
  violation.length = static_cast<std::uint32_t>(frame.size());
  violation.process = process_;
  violation.frame = {};
  std::copy_n(frame.begin(), shown, violation.frame.begin());
  std::vsnprintf(violation.reason.data(), violation.reason.size(), reason, arguments);
  if (total_++ < capacity) kept_[total_ - 1] = violation;
}

std::span<const Violation> Violations::listed() const {
  return {kept_.data(), static_cast<std::size_t>(std::min<std::uint64_t>(total_, capacity))};
}

}  // namespace kelvo::sim::camera
