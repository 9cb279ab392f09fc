// How the command-line programs end. Help, manual page and docs/simulator.md show this table.
#ifndef KELVO_TOOLS_COMMON_EXIT_CODE_H
#define KELVO_TOOLS_COMMON_EXIT_CODE_H

#include <array>
#include <cstdint>
#include <string>

namespace kelvo::tools {

enum class ExitCode : std::uint8_t {
  done = 0,
  violations = 1,
  wrong_arguments = 2,
  no_camera = 3,
  unusable_camera = 4,
  camera_in_use = 5,
  no_output = 6,
  no_fault = 7,
  refused = 8,
  stopped = 123,
  no_library = 124,
  out_of_reach = 125,
  not_executable = 126,
  no_program = 127,
};

struct ExitCodeRow {
  ExitCode code;
  const char* meaning;
};

// Those from 123 on are the launcher's, where few programs have codes of their own.
inline constexpr std::array exit_codes{
    ExitCodeRow{ExitCode::done, "done"},
    ExitCodeRow{ExitCode::violations, "violations: there are some"},
    ExitCodeRow{ExitCode::wrong_arguments, "wrong arguments or settings"},
    ExitCodeRow{ExitCode::no_camera, "there is no camera of this name"},
    ExitCodeRow{ExitCode::unusable_camera, "the camera cannot be used"},
    ExitCodeRow{ExitCode::camera_in_use, "remove: programs use the camera"},
    ExitCodeRow{ExitCode::no_output, "the output could not be written"},
    ExitCodeRow{ExitCode::no_fault, "fault remove: there is no fault of this number"},
    ExitCodeRow{ExitCode::refused,
                "peek, poke, push: the camera does not have that, or refuses it"},
    ExitCodeRow{ExitCode::stopped, "run: stopped at a violation"},
    ExitCodeRow{ExitCode::no_library, "run, trace: the preload library is missing or unfit"},
    ExitCodeRow{ExitCode::out_of_reach,
                "run, trace: the simulated camera cannot reach the program"},
    ExitCodeRow{ExitCode::not_executable, "run, trace: the program is not executable"},
    ExitCodeRow{ExitCode::no_program, "run, trace: the program is not found"},
};

/// The table as lines of text under a heading.
std::string exit_codes_text();

}  // namespace kelvo::tools

#endif
