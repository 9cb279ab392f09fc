// The way to a camera that has faults. Results are the driver's; a negative one is an error number.
#ifndef KELVO_SIM_WRAPPER_FAULTY_H
#define KELVO_SIM_WRAPPER_FAULTY_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "sim/camera/camera.h"
#include "sim/fault/fault_table.h"
#include "sim/seam/host.h"

namespace kelvo::sim::faulty {

int open(fault::FaultTable& faults, Device device);
int transfer(camera::Camera& camera, fault::FaultTable& faults, Device device,
             std::span<const std::uint8_t> sent, std::span<std::uint8_t> received);
int i2c(camera::Camera& camera, fault::FaultTable& faults,
        std::span<const camera::BusMessage> messages);
int shell(camera::Camera& camera, fault::FaultTable& faults, std::string_view command);
/// A file that really lies elsewhere: a fault may put another in its place.
int file(fault::FaultTable& faults, std::string_view path, const char* mode,
         std::string& real_path);
/// Whether a device or a file would not be there if it were opened now. Nothing is counted.
bool missing(fault::FaultTable faults, const char* path);

}  // namespace kelvo::sim::faulty

#endif
