#ifndef KELVO_LENS_MOTORS_REGISTER_MOVE_H
#define KELVO_LENS_MOTORS_REGISTER_MOVE_H

#include <cstdint>

#include "lens/motors/motor_state.h"

namespace kelvo::lens {

/// The operations that reach a motor through the registers of its channel.
enum class RegisterOperation : std::uint8_t { zoom1, focus, zoom2, zoom2_micro_steps };

/// Programs and starts the move that the fitted module has for this operation; the status of the last
/// register write, or 0 where the module has none.
std::uint32_t run_register_move(RegisterOperation operation, Direction direction,
                                std::uint8_t speed, std::uint32_t steps);

}  // namespace kelvo::lens

#endif
