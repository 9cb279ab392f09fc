#ifndef KELVO_SIM_WRAPPER_RECORDING_HOST_H
#define KELVO_SIM_WRAPPER_RECORDING_HOST_H

#include "sim/seam/host.h"
#include "sim/trace/recording.h"

namespace kelvo::sim {

/// The pass-through to the real camera that takes down what crosses the wires. Every call gets what the
/// kernel answers; times are those of the steady clock.
class RecordingHost final : public Host {
 public:
  explicit RecordingHost(trace::Recording& recording) : recording_(recording) {}

  void opened(Device device, int error) override;
  Answer close(Device device) override;
  Answer transfer(Device device, int descriptor, std::span<const std::uint8_t> sent,
                  std::span<std::uint8_t> received) override;
  Answer set_speed(Device device, int descriptor, std::uint32_t hertz) override;
  Answer i2c(Device device, int descriptor, std::span<i2c_msg> messages) override;
  Answer shell(const char* command) override;

 private:
  /// Makes the call, and records it with what `note` adds when it is over.
  template <typename Call, typename Note>
  Answer recorded(trace::Event event, Call call, Note note);

  trace::Recording& recording_;
};

}  // namespace kelvo::sim

#endif
