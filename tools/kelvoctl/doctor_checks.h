// What the doctor looks at. Nothing is changed by it, and nothing is sent.
#ifndef KELVO_TOOLS_KELVOCTL_DOCTOR_CHECKS_H
#define KELVO_TOOLS_KELVOCTL_DOCTOR_CHECKS_H

#include <cstdint>
#include <string>
#include <vector>

#include "tools/kelvoctl/common/session.h"

namespace kelvo::ctl {

enum class Health : std::uint8_t { good, doubtful, bad };

/// One row of the doctor's table: what it found, and what to do about it.
struct Finding {
  std::string what;
  Health health = Health::good;
  std::string detail;
  ExitCode code = ExitCode::done;  // of a bad one
};

/// The simulated camera, if this process runs on one.
std::vector<Finding> check_camera();
/// The device nodes and the reset line.
std::vector<Finding> check_devices();
/// The library that is loaded, and the one that the bus lock's key is made from.
std::vector<Finding> check_library();
/// The semaphore of the bus lock.
std::vector<Finding> check_bus_lock();
/// Whether the lens modules' programs are real ones.
std::vector<Finding> check_images();
/// The calibration records that a boot reads.
std::vector<Finding> check_records();

}  // namespace kelvo::ctl

#endif
