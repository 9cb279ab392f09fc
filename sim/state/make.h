// A camera as it is made, and what is kept of its settings.
#ifndef KELVO_SIM_STATE_MAKE_H
#define KELVO_SIM_STATE_MAKE_H

#include <chrono>
#include <string>
#include <string_view>

#include "sim/state/layout.h"

namespace kelvo::sim::state {

/// Lays a camera out in reserved memory, with its folder; what is wrong, or nothing.
std::string make_camera(Layout& layout, std::string_view name, const WantedSettings& wanted);

/// When it was made, by the calendar.
std::chrono::system_clock::time_point made(const Header& header);

SharedSettings settings_of(const Header& header);

/// What does not agree with the settings that a camera has, or nothing.
std::string disagreement(std::string_view name, const WantedSettings& wanted,
                         const SharedSettings& settings);

}  // namespace kelvo::sim::state

#endif
