// How kelvoctl ends. Help, manual page and docs/kelvoctl.md show this table.
#ifndef KELVO_TOOLS_KELVOCTL_COMMON_EXIT_CODE_H
#define KELVO_TOOLS_KELVOCTL_COMMON_EXIT_CODE_H

#include <array>
#include <cstdint>
#include <string>

#include "tools/common/failure.h"

namespace kelvo::ctl {

using tools::Failure;

enum class ExitCode : std::uint8_t {
  done = 0,
  wrong_arguments = 2,
  no_device = 3,
  link_failed = 4,
  time_out = 5,
  bad_data = 6,
  no_output = 7,
  refused = 8,
  no_simulation = 9,
  interrupted = 130,
};

struct ExitCodeRow {
  ExitCode code;
  const char* meaning;
};

inline constexpr std::array exit_codes{
    ExitCodeRow{ExitCode::done, "done"},
    ExitCodeRow{ExitCode::wrong_arguments, "wrong arguments, or a file that cannot be read"},
    ExitCodeRow{ExitCode::no_device, "a device is absent or cannot be opened"},
    ExitCodeRow{ExitCode::link_failed, "a transfer failed, or the controller does not answer"},
    ExitCodeRow{ExitCode::time_out, "not over in time"},
    ExitCodeRow{ExitCode::bad_data, "a checksum or a calibration failed"},
    ExitCodeRow{ExitCode::no_output, "the output could not be written"},
    ExitCodeRow{ExitCode::refused, "refused: not confirmed, not prepared, or not for this module"},
    ExitCodeRow{ExitCode::no_simulation, "the simulated camera cannot be used"},
    ExitCodeRow{ExitCode::interrupted, "interrupted"},
};

/// The table as lines of text under a heading.
std::string exit_codes_text();

}  // namespace kelvo::ctl

#endif
