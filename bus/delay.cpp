#include <unistd.h>

#include <cstdint>

#include "kelvo/bus.h"

std::int32_t delay_ms(std::uint32_t ms) { return usleep(ms * 1000U); }
