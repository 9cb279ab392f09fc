#include "sim/lens/dc_iris.h"

#include <algorithm>

namespace kelvo::sim::camera {

namespace commands = wire::command;

void DcIris::fit(std::uint16_t rest) {
  *this = DcIris{};
  place_.put(rest);
}

void DcIris::obey(std::uint8_t command, Time now, const CommandValues& values) {
  switch (command) {
    case commands::dc_iris: aimed_ = true; break;
    case commands::loop_ready:
    case commands::hall_offset_x:
    case commands::travel_min_x:
    case commands::travel_max_x: break;
    default: return;
  }
  std::uint16_t goal = low_word(values[commands::hall_offset_x]);
  if (aimed_ && values[commands::loop_ready] != 0) {
    const std::uint16_t low = low_word(values[commands::travel_min_x]);
    const std::uint16_t high = std::max(low, low_word(values[commands::travel_max_x]));
    goal = std::clamp(low_word(values[commands::dc_iris]), low, high);
  }
  if (goal != place_.goal()) place_.go(now, goal);
}

void DcIris::release(Time now, std::uint16_t rest) {
  aimed_ = false;
  place_.go(now, rest);
}

}  // namespace kelvo::sim::camera
