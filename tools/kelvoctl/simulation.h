#ifndef KELVO_TOOLS_KELVOCTL_SIMULATION_H
#define KELVO_TOOLS_KELVOCTL_SIMULATION_H

#include <string>

namespace kelvo::ctl {

/// Executes this program once more, on a simulated camera that stays between commands; returns when it
/// runs there already. Without a name the camera is the one that KELVO_SIM names, else "kelvoctl". A
/// camera that is made goes by the sleep clock, unless KELVO_SIM says otherwise. Throws a Failure.
void go_to_simulation(const std::string& name, char** argv);

}  // namespace kelvo::ctl

#endif
